// SPDX-License-Identifier: Apache-2.0
// orvex_local as a person at a terminal meets it.
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "core/entry_list.h"
#include "core/store.h"
#include "local_store.h"
#include "service/exectl.h"
#include "service/log.h"
#include "service/paths.h"
#include "service/status.h"
#include "tool_run.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

TEST_F(tool, explains_itself) {
    EXPECT_EQ(run("--help"), 0);
    for (const char* word :
         {"show", "load", "restart", "reset", "scene", "roles", "label", "blacklist", "log", "fail", "run", "trace"}) {
        EXPECT_THAT(output(), HasSubstr(word));
    }
    EXPECT_EQ(errors(), "");
}

TEST_F(tool, names_what_is_wrong_with_a_command_line) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "A subcommand is required"},
        {"shwo", "unknown command 'shwo', did you mean 'show'?"},
        {"something", "unknown command 'something'"},
        {"scene onn", "unknown command 'onn', did you mean 'on'?"},
        {"scene", "A subcommand is required"},
        {"--hlep", "unknown option '--hlep', did you mean '--help'?"},
        {"show --jsn", "unknown option '--jsn', did you mean '--json'?"},
        {"log -x", "unknown option '-x'"},
        {"show --json=true", "--json takes no value"},
        {"show more", "The following argument was not expected: more"},
        {"label add", "ROLE is required"},
        {"label add auditadmin /a", "unknown role 'auditadmin', did you mean 'auditadm'?"},
        {"blacklist add", "PATH is required"},
        {"run", "run needs a command to run"},
        {"run --uid 7 true", "--uid: 7 not in {0,600}"},
        {"run --state", "--state: 1 required DIR missing"},
        {"trace --bogus true", "unknown option '--bogus'"},
        {"fail", "fail needs CALL and RESULT, --list or --clear"},
        {"fail path_is_exist", "fail needs CALL and RESULT, --list or --clear"},
        {"fail path_is_exits 0", "unknown service function 'path_is_exits', did you mean 'path_is_exist'?"},
        {"fail path_is_exist null", "'null' is no number that a service function can return"},
        {"fail path_is_exist 99999999999", "'99999999999' is no number that a service function can return"},
        {"fail pathNormalize 0", "pathNormalize returns a pointer, so it can only fail with null"},
        {"fail orvex_log 0", "orvex_log returns nothing, so it cannot fail"},
        {"fail path_is_exist 0 --times 0", "--times: a whole number from 1 on is needed, not '0'"},
        {"fail path_is_exist 0 --after x", "--after: a whole number from 0 on is needed, not 'x'"},
    };
    for (const auto& [arguments, complaint] : cases) {
        EXPECT_EQ(run(arguments), 2) << arguments;
        EXPECT_EQ(errors(), "orvex_local: " + complaint + "\n");
        EXPECT_EQ(output(), "");
    }
}

TEST_F(tool, tells_its_version) {
    EXPECT_EQ(run("--version"), 0);
    EXPECT_THAT(output(), MatchesRegex("orvex_local [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(tool, fails_where_its_output_is_lost) {
    EXPECT_EQ(run("--help >/dev/full"), 1);
    EXPECT_EQ(errors(), "orvex_local: cannot write standard output: No space left on device\n");
    EXPECT_EQ(run("restart >&-"), 1);
    EXPECT_EQ(errors(), "orvex_local: cannot write standard output: Bad file descriptor\n");
    EXPECT_EQ(run("scene on >&-"), 0) << "nothing to print, nothing lost";
}

TEST_F(tool, show_makes_no_store) {
    for (const char* arguments : {"show", "show --json", "log", "fail --list", "fail --clear"}) {
        EXPECT_EQ(run(arguments), 1);
        EXPECT_EQ(errors(), "orvex_local: there is no store in " + path("state") + "\n");
    }
    EXPECT_FALSE(std::filesystem::exists(path("state")));
}

TEST_F(tool, restart_puts_the_pending_state_in_force) {
    setModuleStatusReboot_dbus(1, orvex_state_enable, 11, 0, 1, 0);
    EXPECT_EQ(run("restart"), 0);
    EXPECT_EQ(output(), "Restart simulated: what was set for after a restart is in force.\n");
    EXPECT_EQ(orvex_scene_getstatus(), 2);
}

TEST_F(tool, roles_separates_the_administrator_roles) {
    constexpr int role_module = 4;
    enable_framework();
    EXPECT_EQ(run("roles on"), 0);
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 1);
    EXPECT_EQ(run("roles off"), 0);
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 0);
}

TEST_F(tool, roles_says_when_they_will_be_separated_while_the_framework_is_disabled) {
    constexpr int role_module = 4;
    const std::string now = "The framework is disabled, so no roles are separated now. ";
    EXPECT_EQ(run("roles on"), 0);
    EXPECT_EQ(output(), now + "After a restart, with the framework enabled, they are.\n");
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 1);
    setModuleStatusReboot_dbus(1, orvex_state_disable, 11, 0, 1, 0);
    EXPECT_EQ(run("roles off"), 0);
    EXPECT_EQ(output(), now + "After a restart, with the framework enabled, they are not either.\n");
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 0);
}

TEST_F(tool, scene_switches_the_secret_scene_mode) {
    EXPECT_EQ(run("scene on"), 0);
    EXPECT_EQ(orvex_scene_get_sm_status(), 1);
    EXPECT_EQ(run("scene off"), 0);
    EXPECT_EQ(orvex_scene_get_sm_status(), 0);
}

TEST_F(tool, label_gives_and_takes_a_role) {
    EXPECT_EQ(run("label add secadm /etc/../etc/one"), 0);
    EXPECT_EQ(run("label add auditadm /etc/two"), 0);
    EXPECT_THAT(local_service::lists::role_labels[1].texts(), ElementsAre("/etc/one"));
    EXPECT_THAT(local_service::lists::role_labels[2].texts(), ElementsAre("/etc/two"));
    EXPECT_EQ(run("label remove secadm /etc/one"), 0);
    EXPECT_THAT(local_service::lists::role_labels[1].texts(), IsEmpty());
}

TEST_F(tool, tells_what_it_could_not_do) {
    EXPECT_EQ(run("label remove root /etc/one"), 1);
    EXPECT_EQ(errors(), "orvex_local: /etc/one is not on the list\n");
    EXPECT_EQ(run("label add root /etc/one"), 0);
    EXPECT_EQ(run("label add root /etc/one"), 1);
    EXPECT_EQ(errors(), "orvex_local: /etc/one is on the list already\n");
}

TEST_F(tool, blacklist_follows_links_to_the_program) {
    write("program", "");
    link("link", "program");
    EXPECT_EQ(run("blacklist add '" + path("link") + "'"), 0);
    EXPECT_EQ(ppro_path_in_blacklist(path("program").c_str()), 1);
    EXPECT_EQ(run("blacklist remove '" + path("program") + "'"), 0);
    EXPECT_EQ(ppro_path_in_blacklist(path("program").c_str()), 0);
    EXPECT_EQ(run("blacklist add /gone/program"), 0);
    EXPECT_EQ(ppro_path_in_blacklist("/gone/program"), 1);
}

TEST_F(tool, shows_the_milliseconds_of_a_record) {
    local_service::change("INSERT INTO log (time_ms, level, tag, function, message) VALUES (1999, 6, 't', 'f', 'm')");
    EXPECT_EQ(run("log"), 0);
    EXPECT_THAT(output(), HasSubstr(".999 "));
}

TEST_F(tool, log_prints_one_record_a_line) {
    orvex_log(18, "kmod", "add_kmod_by_name", "add kmod failed, name=%s, ret=%d", "x", -1);
    EXPECT_EQ(run("log"), 0);
    EXPECT_THAT(output(), MatchesRegex("[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9][0-9][0-9] 18 kmod "
                                       "add_kmod_by_name add kmod failed, name=x, ret=-1\n"));
}

TEST_F(tool, log_follows_with_f) {
    orvex_log(18, "tag", "function", "first");
    const std::string command =
        "timeout 20 '" ORVEX_LOCAL_PROGRAM "' log -f | { read -r line; echo \"$line\"; read -r line; echo \"$line\"; }";
    FILE* output = popen(command.c_str(), "r");
    std::array<char, 256> line{};
    ASSERT_NE(std::fgets(line.data(), line.size(), output), nullptr);
    EXPECT_THAT(line.data(), HasSubstr(" 18 tag function first"));
    orvex_log(18, "tag", "function", "second");
    ASSERT_NE(std::fgets(line.data(), line.size(), output), nullptr);
    EXPECT_THAT(line.data(), HasSubstr(" 18 tag function second"));
    orvex_log(18, "tag", "function", "a record that meets a closed pipe");
    pclose(output);
}

TEST_F(tool, show_prints_the_states_of_a_new_store) {
    run("reset");
    EXPECT_EQ(run("show"), 0);
    EXPECT_EQ(output(), "State directory:  " + path("state") +
                            R"(
Framework:        disabled, after a restart disabled
Secret scene:     off
Restarts:         0 simulated, 0 of them asked for by a change of state

Modules:          now   after a restart
  exec            off   off
  net             off   off
  file            off   off
  kmod            off   off
  3adm            off   off
  proc            off   off
  exec script     off   off
  box             off   off

Log records:      0
Wished failures:  0
)");
}

TEST_F(tool, show_prints_all_lists) {
    fill_store();
    EXPECT_EQ(run("show"), 0);
    EXPECT_THAT(output(), HasSubstr(R"(
Files on the whitelist of execution control:
  intact  )" + path("tool") + R"(
  changed )" + path("changed") + R"(

Network policies of packages:
  bash: deny, user 0, tag 2, icon "an icon", desktop ""

Network policies of programs:
  /opt/fetch: allow, user 7, tag -1, label "la\nbel", text1 "", text2 "two"

Programs that execution control leaves alone:
  /opt/tools/*

Packages that execution control leaves alone:
  coreutils

Read-only files and directories:
  /etc/hosts
  "/etc/new\nline"
  {"hex": "2fff"}

Read-only packages:
  setup

Programs protected from being killed:
  /usr/sbin/server

Programs that may not be protected from being killed:
  /usr/bin/killer

Kernel modules protected from unloading:
  ext4

Files labelled root:
  /etc/one

Files labelled auditadm:
  /etc/two

Exceptions of read-only files and directories:
  /etc/hosts:
    file /usr/bin/vi
    package vim

Exceptions of read-only packages:
  setup:
    package dnf

Exceptions of programs protected from being killed:
  /usr/sbin/server:
    directory /opt/*

Log records:      0
Wished failures:  0
)"));
}

TEST_F(tool, show_tells_now_from_after_the_restart) {
    setModuleStatusReboot_dbus(1, orvex_state_enable, 11, 0, 1, 0);
    orvex_scene_set_multi_module_status(3, 1, 1);
    batch package{"bash"};
    orvex_scene_exectl_multi_add_package_in_permissive(package.data(), 1);
    run("show");
    EXPECT_THAT(output(), HasSubstr("Framework:        disabled, after a restart enabled\n"));
    EXPECT_THAT(output(), HasSubstr("  kmod            off   on\n"));
    EXPECT_THAT(output(), HasSubstr("\nPackages that execution control leaves alone:\n  bash\n"));
    run("restart");
    run("show");
    EXPECT_THAT(output(), HasSubstr("Framework:        enabled, after a restart enabled\n"));
    EXPECT_THAT(output(), HasSubstr("Restarts:         1 simulated, 0 of them asked for by a change of state\n"));
    EXPECT_THAT(output(), HasSubstr("  kmod            on    on\n"));
}

TEST_F(tool, reset_makes_the_store_as_new_for_a_process_that_uses_it) {
    enable_framework();
    EXPECT_EQ(run("reset"), 0);
    EXPECT_EQ(output(), "The store is as new: framework disabled, all modules off, all lists empty.\n");
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_getstatus(), 2);
}

TEST_F(tool, reset_drops_what_is_no_store_only_by_force) {
    make_directory("state");
    write("state/orvex.db", "garbage, and more than a few bytes of it");
    const std::string fault = path("state/orvex.db") + ": file is not a database";
    EXPECT_EQ(run("reset"), 1);
    EXPECT_EQ(errors(), "orvex_local: " + fault + "; 'reset --force' drops what is there\n");
    EXPECT_EQ(run("reset --force"), 0);
    EXPECT_EQ(output(), "Dropping what is there: " + fault +
                            "\nThe store is as new: framework disabled, all modules off, all lists empty.\n");
    EXPECT_EQ(orvex_scene_getstatus(), 0);
}

TEST_F(tool, reset_tells_what_it_drops_before_it_does) {
    make_directory("state");
    write("state/orvex.db", "garbage");
    for (const std::string kept : {"state/orvex.db-wal", "state/orvex.db-shm"}) {
        make_directory(kept);
        EXPECT_EQ(run("reset --force"), 1);
        EXPECT_THAT(output(), testing::StartsWith("Dropping what is there: " + path("state/orvex.db") + ": "));
        EXPECT_EQ(errors(), "orvex_local: " + path(kept) + ": cannot be removed: Is a directory\n");
        std::filesystem::remove(path(kept));
    }
}

TEST_F(tool, reset_drops_nothing_in_a_place_that_is_not_trusted) {
    make_directory("state");
    write("state/orvex.db", "garbage");
    ASSERT_EQ(chmod(path("state").c_str(), 0777), 0);
    EXPECT_EQ(run("reset --force"), 1);
    EXPECT_EQ(errors(), "orvex_local: " + path("state") + ": not trusted, as everybody may write to it\n");
    EXPECT_EQ(std::filesystem::file_size(path("state/orvex.db")), 7U);
}

TEST_F(tool, fails_with_a_reason_where_there_is_no_store) {
    setenv("ORVEX_LOCAL_STATE", (write("file", "") + "/state").c_str(), 1);
    for (const char* arguments :
         {"show", "restart", "reset --force", "log", "scene on", "label add root /a", "fail path_is_exist 0"}) {
        EXPECT_EQ(run(arguments), 1) << arguments;
        EXPECT_EQ(errors(), "orvex_local: " + path("file/state") + ": Not a directory\n") << arguments;
    }
}

}  // namespace
