// SPDX-License-Identifier: Apache-2.0
// The commands that make a host what a document wants, and their order.
#include "state/plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sample_policy.h"
#include "state/document.h"

using namespace state;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;

namespace {

using enum list_id;

class planned_way : public testing::Test {
protected:
    plan make(const std::string& fields) const {
        const policy wanted = read_document(R"({"version": 1, )" + fields + "}");
        return make_plan(host, wanted, find_differences(host, wanted, false));
    }

    /// The commands to what the document with these fields beside its version wants.
    std::vector<std::string> commands_to(const std::string& fields) const {
        std::vector<std::string> lines;
        for (const command& words : make(fields).commands) {
            lines.push_back(tell_command(words));
        }
        return lines;
    }

    void disable_framework() {
        host.framework = framework_disabled;
        host.modules[exec_module] = module_off_word;
    }

    policy host = sample_host();
};

TEST_F(planned_way, has_no_command_where_nothing_differs) {
    EXPECT_THAT(commands_to(R"("kmod": {"modules": ["ext4"]})"), IsEmpty());
}

TEST_F(planned_way, has_one_command_for_many_names) {
    EXPECT_THAT(commands_to(R"("exec": {"whitelist": {"/c": "intact", "/bin/b": "intact", "/bin/a": "intact"},
                                       "excepted_directories": ["/opt", "/srv"]})"),
                ElementsAre("orvex_policy exec -A -f /bin/b:/c", "orvex_policy exec -A -e -d /opt:/srv"));
    EXPECT_THAT(commands_to(R"("exec": {"whitelist": {}})"), ElementsAre("orvex_policy exec -D -f /bin/a:/bin/b"));
}

TEST_F(planned_way, has_commands_whose_arguments_linux_takes) {
    constexpr std::size_t longest = 128 * 1024 - 1;
    policy wanted;
    policy_entries entries;
    std::size_t bytes = 0;
    for (int number = 0; number < 10000; ++number) {
        const std::string name = "/opt/" + std::string(90, 'x') + std::to_string(number);
        bytes += name.size() + 1;
        entries[name].word = whitelist_intact;
    }
    wanted.list(exec_whitelist) = std::move(entries);
    const plan planned = make_plan(host, wanted, find_differences(host, wanted, true));
    EXPECT_EQ(planned.commands.size(), bytes / longest + 1);
    for (const command& words : planned.commands) {
        EXPECT_THAT(words.back().size(), Le(longest));
    }
}

TEST_F(planned_way, adds_before_it_removes) {
    EXPECT_THAT(commands_to(R"("exec": {"whitelist": {"/new": "intact"}, "excepted_packages": ["vim"]})"),
                ElementsAre("orvex_policy exec -A -f /new", "orvex_policy exec -A -e -P vim",
                            "orvex_policy exec -D -f /bin/a:/bin/b"));
}

TEST_F(planned_way, changes_exceptions_object_by_object) {
    host.modules["file"] = module_on_word;
    EXPECT_THAT(
        commands_to(R"("file": {"files": {"/notes": {"excepted_files": ["/vi", "/emacs"]}},
                              "packages": {"setup": {"excepted_packages": ["dnf", "rpm"]}}})"),
        ElementsAre("orvex_policy file -A -f /notes -e -f /emacs:/vi", "orvex_policy file -D -f /notes -e -f /editor",
                    "orvex_policy file -A -P setup", "orvex_policy file -A -P setup -e -P dnf:rpm"));
}

TEST_F(planned_way, drops_an_object_with_its_exceptions) {
    host.modules["file"] = module_on_word;
    EXPECT_THAT(commands_to(R"("file": {"files": {}})"), ElementsAre("orvex_policy file -D -f /notes"));
}

TEST_F(planned_way, makes_network_policies_one_by_one) {
    host.modules["net"] = module_on_word;
    EXPECT_THAT(commands_to(R"("net": {"packages": {"bash": "allow", "vim": "deny", "zsh": "allow"}})"),
                ElementsAre("orvex_policy net -U -P bash -v allow", "orvex_policy net -A -P vim",
                            "orvex_policy net -A -P zsh", "orvex_policy net -U -P zsh -v allow"));
    EXPECT_THAT(commands_to(R"("net": {"packages": {}, "programs": {"/opt/fetch": "allow"}})"),
                ElementsAre("orvex_policy net -D -P bash", "orvex_policy net -A -f /opt/fetch",
                            "orvex_policy net -U -f /opt/fetch -v allow"));
}

TEST_F(planned_way, names_kernel_modules_one_by_one) {
    host.modules["kmod"] = module_on_word;
    EXPECT_THAT(
        commands_to(R"("kmod": {"modules": ["a:b", "-x"]})"),
        ElementsAre("orvex_policy kmod -A -n -x", "orvex_policy kmod -A -n a:b", "orvex_policy kmod -D -n ext4"));
}

TEST_F(planned_way, switches_a_module_on_before_its_policies_and_off_behind_them) {
    EXPECT_THAT(commands_to(R"("modules": {"kmod": "on", "exec": "off"},
                             "kmod": {"modules": []}, "exec": {"whitelist": {}})"),
                ElementsAre("orvex_policy exec -D -f /bin/a:/bin/b", "orvex_policy exec off", "orvex_policy kmod on",
                            "orvex_policy kmod -D -n ext4"));
}

TEST_F(planned_way, has_a_module_on_for_the_time_of_its_changes) {
    EXPECT_THAT(commands_to(R"("modules": {"kmod": "off"}, "kmod": {"modules": []})"),
                ElementsAre("orvex_policy kmod on", "orvex_policy kmod -D -n ext4", "orvex_policy kmod off"));
}

TEST_F(planned_way, takes_a_module_that_warns_as_one_that_is_on) {
    host.modules["kmod"] = module_warning_word;
    EXPECT_THAT(commands_to(R"("modules": {"kmod": "warning"}, "kmod": {"modules": []})"),
                ElementsAre("orvex_policy kmod -D -n ext4"));
    EXPECT_THAT(commands_to(R"("modules": {"kmod": "on"})"), ElementsAre("orvex_policy kmod on"));
    EXPECT_THAT(commands_to(R"("modules": {"kmod": "off"})"), ElementsAre("orvex_policy kmod off"));
}

TEST_F(planned_way, switches_script_control_below_execution_control) {
    EXPECT_THAT(commands_to(R"("modules": {"exec script": "on"})"), ElementsAre("orvex_policy exec script on"));
    host.modules[exec_module] = module_off_word;
    EXPECT_THAT(commands_to(R"("modules": {"exec": "on", "exec script": "on"})"),
                ElementsAre("orvex_policy exec on", "orvex_policy exec script on"));
    host.remembered_script = module_on_word;
    EXPECT_THAT(commands_to(R"("modules": {"exec": "on", "exec script": "on"})"), ElementsAre("orvex_policy exec on"));
    EXPECT_THAT(commands_to(R"("modules": {"exec": "on", "exec script": "off"})"),
                ElementsAre("orvex_policy exec on", "orvex_policy exec script off"));
}

TEST_F(planned_way, loosens_the_framework_first_and_tightens_it_last) {
    const std::string box = R"(, "modules": {"box": "on"})";
    EXPECT_THAT(commands_to(R"("framework": "permissive")" + box),
                ElementsAre("orvex_policy permissive", "orvex_policy box on"));
    EXPECT_THAT(commands_to(R"("framework": "disabled", "modules": {"exec": "off"})"),
                ElementsAre("orvex_policy exec off", "orvex_policy disable"));
    host.framework = framework_permissive;
    EXPECT_THAT(commands_to(R"("framework": "enabled")" + box),
                ElementsAre("orvex_policy box on", "orvex_policy enable"));
}

TEST_F(planned_way, ends_before_the_restart_of_a_disabled_framework) {
    disable_framework();
    const std::string changes = R"(, "kmod": {"modules": []})";
    EXPECT_THAT(commands_to(R"("framework": "enabled", "modules": {"exec": "on"})" + changes),
                ElementsAre("orvex_policy enable"));
    EXPECT_THAT(commands_to(R"("framework": "permissive")" + changes), ElementsAre("orvex_policy permissive"));
    // Nothing is to be enforced on a host that is to be disabled again.
    EXPECT_THAT(commands_to(R"("framework": "disabled")" + changes), ElementsAre("orvex_policy permissive"));
    EXPECT_TRUE(make(R"("framework": "disabled")" + changes).needs_restart);
    EXPECT_FALSE(make(R"("framework": "disabled")").needs_restart);
}

TEST_F(planned_way, is_quoted_for_a_shell) {
    EXPECT_EQ(tell_command({"file", "-A", "-f", "/a b:/\x1b"}), R"(orvex_policy file -A -f $'/a b:/\033')");
}

}  // namespace
