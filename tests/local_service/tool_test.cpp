// SPDX-License-Identifier: Apache-2.0
// orvex_local as a person at a terminal meets it.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "core/entry_list.h"
#include "local_store.h"
#include "service/exectl.h"
#include "service/log.h"
#include "service/paths.h"
#include "service/status.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

class tool : public local_store {
protected:
    /// Runs orvex_local with `arguments`, a piece of a shell's command line, and keeps what it printed.
    int run(const std::string& arguments) {
        const std::string command = std::string(ORVEX_LOCAL_PROGRAM) + " " + arguments + " 2>'" + path("errors") + "'";
        FILE* output = popen(command.c_str(), "r");
        output_.clear();
        std::array<char, 4096> buffer{};
        for (std::size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), output)) > 0;) {
            output_.append(buffer.data(), got);
        }
        return WEXITSTATUS(pclose(output));
    }

    const std::string& output() const { return output_; }

    std::string errors() const {
        std::string text;
        FILE* file = std::fopen(path("errors").c_str(), "r");
        for (int byte = 0; (byte = std::fgetc(file)) != EOF;) {
            text += static_cast<char>(byte);
        }
        std::fclose(file);
        return text;
    }

private:
    std::string output_;
};

TEST_F(tool, explains_itself) {
    EXPECT_EQ(run("--help"), 0);
    for (const char* word : {"show", "restart", "reset", "scene", "roles", "label", "blacklist", "log"}) {
        EXPECT_THAT(output(), HasSubstr(word));
    }
    EXPECT_EQ(errors(), "");
}

TEST_F(tool, refuses_a_command_line_that_it_does_not_know) {
    for (const char* arguments :
         {"", "frob", "scene", "scene maybe", "label add", "label add nobody /a", "blacklist add"}) {
        EXPECT_NE(run(arguments), 0) << arguments;
        EXPECT_NE(errors(), "") << arguments;
    }
}

TEST_F(tool, restart_puts_the_pending_state_in_force) {
    setModuleStatusReboot_dbus(1, orvex_state_enable, 11, 0, 1, 0);
    EXPECT_EQ(run("restart"), 0);
    EXPECT_EQ(output(), "Restart simulated: what was set for after a restart is in force.\n");
    EXPECT_EQ(orvex_scene_getstatus(), 2);
}

TEST_F(tool, roles_separates_the_administrator_roles) {
    constexpr int role_module = 4;
    EXPECT_NE(run("roles on"), 0) << "while the framework is disabled";
    setModuleStatusReboot_dbus(1, orvex_state_enable, 11, 0, 1, 0);
    EXPECT_EQ(run("restart"), 0);
    EXPECT_EQ(run("roles on"), 0);
    EXPECT_EQ(orvex_scene_get_module_status(role_module), 1);
    EXPECT_EQ(run("roles off"), 0);
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

TEST_F(tool, log_prints_one_record_a_line) {
    orvex_log(18, "kmod", "add_kmod_by_name", "add kmod failed, name=%s, ret=%d", "x", -1);
    EXPECT_EQ(run("log"), 0);
    EXPECT_THAT(output(), MatchesRegex("[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9][0-9][0-9] 18 kmod "
                                       "add_kmod_by_name add kmod failed, name=x, ret=-1\n"));
}

TEST_F(tool, log_follows_with_f) {
    orvex_log(18, "tag", "function", "first");
    const std::string command =
        "timeout 20 " ORVEX_LOCAL_PROGRAM " log -f | { read -r line; echo \"$line\"; read -r line; echo \"$line\"; }";
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

TEST_F(tool, show_prints_states_and_lists) {
    EXPECT_EQ(run("show"), 0);
    EXPECT_EQ(output(), "State directory:  " + path("state") +
                            "\n"
                            "Framework:        disabled, after a restart disabled\n"
                            "Secret scene:     off\n"
                            "Restarts:         0 simulated, 0 of them asked for by a change of state\n"
                            "\n"
                            "Modules:          now   after a restart\n"
                            "  exec            off   off\n"
                            "  net             off   off\n"
                            "  file            off   off\n"
                            "  kmod            off   off\n"
                            "  3adm            off   off\n"
                            "  proc            off   off\n"
                            "  exec script     off   off\n"
                            "  box             off   off\n"
                            "\n"
                            "Whitelisted:      0\n"
                            "Network policies: 0\n"
                            "Exceptions:       0\n"
                            "Log records:      0\n");
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

TEST_F(tool, fails_with_a_reason_where_there_is_no_store) {
    setenv("ORVEX_LOCAL_STATE", (write("file", "") + "/state").c_str(), 1);
    for (const char* arguments : {"show", "restart", "reset", "log", "scene on", "label add root /a"}) {
        EXPECT_EQ(run(arguments), 1) << arguments;
        EXPECT_THAT(errors(), HasSubstr("orvex_local: ")) << arguments;
    }
}

}  // namespace
