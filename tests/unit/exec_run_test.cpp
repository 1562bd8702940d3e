// SPDX-License-Identifier: Apache-2.0
// The options of `exec`, its switches, and which operation gets what. What the operations do is in the other exec_*
// tests.
#include <string>
#include <utility>
#include <vector>

#include "modules/exec/exec_module.h"
#include "support/captured_stream.h"
#include "unit/help_texts.h"
#include "unit/option_rows.h"

namespace {

using testing::Return;
using words = std::vector<std::string>;

/// A module whose switching and whose operations are heard.
class heard_exec : public COrvexExec {
public:
    explicit heard_exec(heard_operation& operation) : operation_(operation) {}

    int set_module_status(const orvex_module_type& module, const int& status) override {
        return operation_.call(show_call("set_module_status", static_cast<int>(module), status));
    }
    int set_exec_policy_by_file(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_exec_policy_by_file", paths, action));
    }
    int set_exec_policy_by_dir(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_exec_policy_by_dir", paths, action));
    }
    int set_exec_policy_by_pkg(const std::string& pkgs, const int& action) override {
        return operation_.call(show_call("set_exec_policy_by_pkg", pkgs, action));
    }
    int set_exec_except_policy_by_file(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_exec_except_policy_by_file", paths, action));
    }
    int set_exec_except_policy_by_dir(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_exec_except_policy_by_dir", paths, action));
    }
    int set_exec_except_policy_by_pkg(const std::string& pkgs, const int& action) override {
        return operation_.call(show_call("set_exec_except_policy_by_pkg", pkgs, action));
    }
    int get_all_tampered_file() override { return operation_.call(show_call("get_all_tampered_file")); }
    int get_whlist_status_by_file(const std::string& paths) override {
        return operation_.call(show_call("get_whlist_status_by_file", paths));
    }
    int get_whlist_status_by_dir(const std::string& paths) override {
        return operation_.call(show_call("get_whlist_status_by_dir", paths));
    }
    int get_whlist_status_by_pkg(const std::string& pkgs) override {
        return operation_.call(show_call("get_whlist_status_by_pkg", pkgs));
    }
    int get_all_except_policy() override { return operation_.call(show_call("get_all_except_policy")); }

private:
    heard_operation& operation_;
};

class exec_run_test : public option_rows_test {
protected:
    exec_run_test() : option_rows_test("exec", exec_ladder), exec(operation) {}

    COrvexBase& module() override { return exec; }

    void expect_call(const std::string& call, int result) {
        EXPECT_CALL(operation, call(call)).WillOnce(Return(result));
    }

    /// Expects each command line to do nothing but to print the help, behind `message` where there is one.
    void expect_help(const std::vector<words>& lines, int result, const std::string& message = "") {
        for (const words& line : lines) {
            expect_refused({{line, result, message + exec_help()}});
        }
    }

    heard_exec exec;
};

TEST_F(exec_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  exec.usage();
                  return 0;
              }),
              (call_result{0, exec_help()}));
}

// Which operation runs.

TEST_F(exec_run_test, a_change_of_the_whitelist_hands_its_objects_over) {
    for (const auto& [letter, action] : std::vector<std::pair<std::string, int>>{
             {"-A", 1}, {"--add", 1}, {"--ad", 1}, {"-D", 3}, {"--delete", 3}, {"--de", 3}}) {
        expect_chosen({
            {{letter, "-f", "/a b:/c"}, show_call("set_exec_policy_by_file", "/a b:/c", action)},
            {{letter, "-d", "/d:/e"}, show_call("set_exec_policy_by_dir", "/d:/e", action)},
            {{letter, "-P", "p:q"}, show_call("set_exec_policy_by_pkg", "p:q", action)},
        });
    }
}

TEST_F(exec_run_test, a_change_of_the_exceptions_hands_its_objects_over) {
    for (const auto& [letter, action] : std::vector<std::pair<std::string, int>>{
             {"-A", 1}, {"--add", 1}, {"--ad", 1}, {"-D", 3}, {"--delete", 3}, {"--de", 3}}) {
        expect_chosen({
            {{letter, "-e", "-f", "/a b:/c"}, show_call("set_exec_except_policy_by_file", "/a b:/c", action)},
            {{letter, "-e", "-d", "/d:/e"}, show_call("set_exec_except_policy_by_dir", "/d:/e", action)},
            {{letter, "-e", "-P", "p:q"}, show_call("set_exec_except_policy_by_pkg", "p:q", action)},
            {{"-e", letter, "-f", "/a"}, show_call("set_exec_except_policy_by_file", "/a", action)},
            {{"-f", "/a", "-e", letter, "-e"}, show_call("set_exec_except_policy_by_file", "/a", action)},
        });
    }
}

TEST_F(exec_run_test, a_listing_hands_its_objects_over) {
    for (const char* const letter : {"-L", "--list", "--li"}) {
        expect_chosen({
            {{letter}, "get_all_except_policy"},
            {{letter, "-f", "/a:/b"}, "get_whlist_status_by_file [/a:/b]"},
            {{letter, "-d", "/d:/e"}, "get_whlist_status_by_dir [/d:/e]"},
            {{letter, "-P", "p:q"}, "get_whlist_status_by_pkg [p:q]"},
            {{letter, "--tampered"}, "get_all_tampered_file"},
            {{"--tampered", letter, "--tampered"}, "get_all_tampered_file"},
        });
    }
}

TEST_F(exec_run_test, of_several_targets_one_counts_by_priority) {
    expect_chosen({
        {{"-A", "-P", "p", "-d", "/d", "-f", "/a"}, "set_exec_policy_by_file [/a] [1]"},
        {{"-A", "-P", "p", "-d", "/d"}, "set_exec_policy_by_dir [/d] [1]"},
        {{"-e", "-P", "p", "-d", "/d", "-f", "/a", "-D"}, "set_exec_except_policy_by_file [/a] [3]"},
        {{"-e", "-P", "p", "-d", "/d", "-D"}, "set_exec_except_policy_by_dir [/d] [3]"},
        {{"-L", "-P", "p", "-d", "/d", "-f", "/a"}, "get_whlist_status_by_file [/a]"},
        {{"-L", "-P", "p", "-d", "/d"}, "get_whlist_status_by_dir [/d]"},
        {{"-L", "-P", "p", "-d", "/d", "-f", "/a", "--tampered"}, "get_all_tampered_file"},
    });
}

TEST_F(exec_run_test, flags_of_another_command_are_dropped) {
    expect_chosen({
        {{"-L", "-e"}, "get_all_except_policy"},
        {{"-L", "--except", "x"}, "get_all_except_policy"},
        {{"-L", "-e", "-f", "/a"}, "get_whlist_status_by_file [/a]"},
        {{"-A", "--tampered", "-f", "/a"}, "set_exec_policy_by_file [/a] [1]"},
        {{"-D", "--tampered", "-e", "-P", "p"}, "set_exec_except_policy_by_pkg [p] [3]"},
    });
}

TEST_F(exec_run_test, the_long_exception_option_swallows_a_word) {
    expect_chosen({
        {{"-A", "--except", "x", "-f", "/a"}, "set_exec_except_policy_by_file [/a] [1]"},
        {{"-A", "--except=x", "-f", "/a"}, "set_exec_except_policy_by_file [/a] [1]"},
        {{"-A", "--except=", "-f", "/a"}, "set_exec_except_policy_by_file [/a] [1]"},
        {{"-A", "--except", "-f", "-d", "/d"}, "set_exec_except_policy_by_dir [/d] [1]"},
        {{"-D", "--exc", "-L", "-P", "p"}, "set_exec_except_policy_by_pkg [p] [3]"},
    });
}

TEST_F(exec_run_test, options_may_be_written_in_every_way_of_getopt) {
    expect_chosen({
        {{"-f/a", "-A"}, "set_exec_policy_by_file [/a] [1]"},
        {{"-Af/a"}, "set_exec_policy_by_file [/a] [1]"},
        {{"-Aef/a"}, "set_exec_except_policy_by_file [/a] [1]"},
        {{"-AeP", "p"}, "set_exec_except_policy_by_pkg [p] [1]"},
        {{"--file", "/a", "--add"}, "set_exec_policy_by_file [/a] [1]"},
        {{"--dir=/d", "-D"}, "set_exec_policy_by_dir [/d] [3]"},
        {{"--package=p", "-D"}, "set_exec_policy_by_pkg [p] [3]"},
        {{"--pa", "p", "-L"}, "get_whlist_status_by_pkg [p]"},
        {{"--tam", "-L"}, "get_all_tampered_file"},
        {{"word", "-A", "word", "-f", "/a", "word"}, "set_exec_policy_by_file [/a] [1]"},
        {{"-A", "-f", "-D"}, "set_exec_policy_by_file [-D] [1]"},
        {{"-L", "--", "-f", "/a"}, "get_all_except_policy"},
    });
}

TEST_F(exec_run_test, the_last_value_of_an_option_counts) {
    expect_chosen({
        {{"-A", "-f", "/1", "-f", "/2"}, "set_exec_policy_by_file [/2] [1]"},
        {{"-A", "-d", "/1", "-d", "/2"}, "set_exec_policy_by_dir [/2] [1]"},
        {{"-A", "-P", "1", "-P", "2"}, "set_exec_policy_by_pkg [2] [1]"},
    });
}

TEST_F(exec_run_test, an_empty_value_counts_as_none) {
    expect_chosen({
        {{"-A", "-f", "", "-d", "/d"}, "set_exec_policy_by_dir [/d] [1]"},
        {{"-A", "-f", "", "-d", "", "-P", "p"}, "set_exec_policy_by_pkg [p] [1]"},
        {{"-D", "-e", "-f", "", "-P", "p"}, "set_exec_except_policy_by_pkg [p] [3]"},
        {{"-L", "-f", ""}, "get_all_except_policy"},
        {{"-L", "-f", "/a", "-f", ""}, "get_all_except_policy"},
    });
}

TEST_F(exec_run_test, strange_names_stay_as_they_are) {
    for (const std::string value : {"%s%n", "a'b\"c", "--", "-x", "a\nb", "\xff\xfe", "执行", ":", " ", "~"}) {
        expect_chosen({
            {{"-A", "-f", value}, show_call("set_exec_policy_by_file", value, 1)},
            {{"-D", "-e", "-d", value}, show_call("set_exec_except_policy_by_dir", value, 3)},
            {{"-L", "-P", value}, show_call("get_whlist_status_by_pkg", value)},
        });
    }
}

// Bad use.

TEST_F(exec_run_test, a_change_without_a_target_is_told_with_the_help) {
    expect_help({{"-A"}, {"-D"}, {"--add"}, {"-A", "--tampered"}, {"-A", "-f", ""}, {"-D", "--", "-f", "/a"}}, -1,
                "设置执行管控可选文件、目录或者软件包, 请选择其中一种!\n");
}

TEST_F(exec_run_test, a_change_of_exceptions_without_a_target_is_told_with_the_help) {
    expect_help({{"-A", "-e"},
                 {"-e", "-D"},
                 {"-A", "--except", "x"},
                 {"-A", "--except", "-f", "/a"},
                 {"-D", "-e", "-f", "", "-d", "", "-P", ""}},
                -1, "设置例外程序可选文件、目录或者软件包, 请选择其中一种!\n");
}

TEST_F(exec_run_test, options_without_a_command_give_the_help) {
    expect_help({{"-f", "/a"},
                 {"-d", "/d"},
                 {"-P", "p"},
                 {"-e"},
                 {"--except", "-A"},
                 {"--tampered"},
                 {"-e", "-f", "/a"},
                 {"--", "-A", "-f", "/a"}},
                0);
}

TEST_F(exec_run_test, unknown_options_and_bad_values_are_invalid) {
    // -U and -n are other modules' letters; --tampered has no short form; -ex is -e and then -x.
    expect_help({{"-U"},
                 {"-A", "-n", "x"},
                 {"-L", "-t"},
                 {"-ex"},
                 {"-L", "--tampered=1"},
                 {"--add=1"},
                 {"-A", "-f", "/a", "-x"},
                 {"-A", "-f"},
                 {"-A", "-d"},
                 {"-A", "-P"},
                 {"-A", "--except"}},
                -1, "无效的参数\n");
}

TEST_F(exec_run_test, getopt_tells_which_option_lacks_its_value) {
    const captured_stream errors(stderr);
    for (const char* const option : {"-f", "-d", "-P", "--file", "--dir", "--package", "--except"}) {
        expect_ladder(exec_ladder);
        EXPECT_EQ(run_open({"-A", option}), (call_result{-1, "无效的参数\n" + exec_help()})) << option;
    }
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option requires an argument -- 'd'\n"
              "orvex_policy: option requires an argument -- 'P'\n"
              "orvex_policy: option '--file' requires an argument\n"
              "orvex_policy: option '--dir' requires an argument\n"
              "orvex_policy: option '--package' requires an argument\n"
              "orvex_policy: option '--except' requires an argument\n");
}

TEST_F(exec_run_test, the_help_stops_at_once_whatever_stands_in_front_of_it) {
    expect_help({{"-A", "-f", "/a", "-h"}, {"-L", "--help"}, {"-h", "-x"}, {"-h", "-A", "-D"}, {"-eh"}}, 0);
}

TEST_F(exec_run_test, a_second_command_stops_before_a_bad_option_behind_it) {
    expect_help({{"-L", "-A"}, {"-A", "-A"}, {"-A", "-f", "/a", "-D"}, {"-D", "-L", "-x"}}, -1);
}

// The module's own switch.

TEST_F(exec_run_test, on_leaves_script_control_alone) {
    expect_ladder_to_states(exec_ladder);
    expect_call("set_module_status [0] [1]", 0);
    EXPECT_EQ(run_open({"on"}), (call_result{0, ""}));
}

TEST_F(exec_run_test, off_takes_script_control_along_and_returns_its_result) {
    // What the first switch returns does not count unless it is -1.
    for (const auto& [first, second] : std::vector<std::pair<int, int>>{{0, 0}, {0, -1}, {0, 5}, {5, 0}, {-2, 3}}) {
        expect_ladder_to_states(exec_ladder);
        expect_call("set_module_status [0] [0]", first);
        expect_call("set_module_status [7] [0]", second);
        EXPECT_EQ(run_open({"off"}), (call_result{second, ""})) << first;
    }
}

TEST_F(exec_run_test, a_failed_off_leaves_script_control_alone) {
    expect_ladder_to_states(exec_ladder);
    expect_call("set_module_status [0] [0]", -1);
    EXPECT_EQ(run_open({"off"}), (call_result{-1, ""}));
}

// The switch of script control.

/// A state of framework and module.
struct state_row {
    int framework;
    int module;
};

constexpr state_row on_states[] = {{2, 1}, {2, 2}, {4, 1}, {3, 7}, {-1, -1}};
constexpr state_row module_off_states[] = {{2, 0}, {4, 0}, {3, 0}};
constexpr state_row framework_off_states[] = {{0, 0}, {0, 1}, {0, 2}};

class exec_script_test : public exec_run_test {
protected:
    call_result run_in(const state_row& state, const words& line) {
        expect_ladder_to_states(exec_ladder, {0, 0, 0, state.framework, state.module});
        return run_open(line);
    }
};

TEST_F(exec_script_test, on_and_off_switch_script_control_and_return_the_result) {
    for (const state_row& state : on_states) {
        for (const int result : {0, -1, 5}) {
            expect_ladder_to_states(exec_ladder, {0, 0, 0, state.framework, state.module});
            expect_call("set_module_status [7] [1]", result);
            EXPECT_EQ(run_open({"script", "on"}), (call_result{result, ""})) << state.framework << state.module;

            expect_ladder_to_states(exec_ladder, {0, 0, 0, state.framework, state.module});
            expect_call("set_module_status [7] [0]", result);
            EXPECT_EQ(run_open({"script", "off"}), (call_result{result, ""})) << state.framework << state.module;
        }
    }
}

TEST_F(exec_script_test, with_the_module_off_both_are_refused) {
    for (const state_row& state : module_off_states) {
        EXPECT_EQ(run_in(state, {"script", "on"}), (call_result{0, "请先开启执行控制, 再设置脚本管控状态!\n"}));
        EXPECT_EQ(run_in(state, {"script", "off"}), (call_result{0, "执行控制未开启!\n"}));
    }
}

TEST_F(exec_script_test, with_the_framework_off_both_are_refused_the_off_by_another_line) {
    for (const state_row& state : framework_off_states) {
        EXPECT_EQ(run_in(state, {"script", "on"}), (call_result{0, "请先开启执行控制, 再设置脚本管控状态!\n"}));
        EXPECT_EQ(run_in(state, {"script", "off"}), (call_result{0, "orvex未开启!\n"}));
    }
}

const std::vector<words> no_switches = {
    {"script"},           {"script", "maybe"}, {"script", ""},   {"script", "ON"},          {"script", "on "},
    {"script", "status"}, {"Script", "on"},    {"on", "script"}, {"script", "on", "extra"}, {"script", "off", ""}};

TEST_F(exec_script_test, other_forms_are_no_switch_and_give_the_help) {
    expect_help(no_switches, 0);
    expect_help({{"script", "-h"}}, 0);
}

TEST_F(exec_script_test, other_forms_are_stopped_while_the_module_is_off) {
    for (const state_row& state : {state_row{2, 0}, state_row{0, 1}}) {
        for (const words& line : no_switches) {
            EXPECT_EQ(run_in(state, line), (call_result{0, "执行管控未开启!\n"}));
        }
        // The help counts directly behind the module's word only.
        EXPECT_EQ(run_in(state, {"script", "-h"}), (call_result{0, "执行管控未开启!\n"}));
    }
}

TEST_F(exec_script_test, options_behind_the_word_count_as_ever) {
    expect_chosen({
        {{"script", "-L"}, "get_all_except_policy"},
        {{"script", "-A", "-f", "/a"}, "set_exec_policy_by_file [/a] [1]"},
    });
}

TEST_F(exec_script_test, without_rights_the_switch_is_refused) {
    for (const char* const word : {"on", "off"}) {
        expect_ladder_to_rights(exec_ladder, {0, 1000, 0, 2, 1});
        EXPECT_EQ(run_open({"script", word}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
    }
}

TEST_F(exec_run_test, without_rights_a_listing_is_shown_where_its_letter_stands_first) {
    expect_ladder(exec_ladder, {0, 1000, 0, 2, 1});
    expect_call("get_whlist_status_by_file [/a]", 0);
    EXPECT_EQ(run_open({"-L", "-f", "/a"}), (call_result{0, ""}));

    expect_ladder_to_rights(exec_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-f", "/a", "-L"}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

// The switches end to end.

class exec_switching_test : public module_test {
protected:
    void expect_switch_while_running(int module, int status, int result) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
        EXPECT_CALL(service, orvex_scene_set_module_status(module, status)).WillOnce(Return(result));
    }

    COrvexExec exec;
};

TEST_F(exec_switching_test, off_switches_exec_and_then_exec_script) {
    expect_ladder_to_states(exec_ladder);
    expect_switch_while_running(0, 0, 0);
    expect_switch_while_running(7, 0, 0);
    EXPECT_EQ(run(exec, {"exec", "off"}), (call_result{0, ""}));
}

TEST_F(exec_switching_test, a_refused_off_names_exec_alone) {
    expect_ladder_to_states(exec_ladder);
    expect_switch_while_running(0, 0, -4);
    EXPECT_EQ(run(exec, {"exec", "off"}), (call_result{-1, "设置安全模块[exec]状态失败! 用户无权限!\n"}));
}

TEST_F(exec_switching_test, a_failed_script_switch_names_exec_script) {
    expect_ladder_to_states(exec_ladder);
    expect_switch_while_running(7, 1, -5);
    expect_log("base", "set_module_status", "set module status failed, module=%s, status=%d, ret=%d",
               "set module status failed, module=exec script, status=1, ret=-5");
    EXPECT_EQ(run(exec, {"exec", "script", "on"}), (call_result{-1, "设置安全模块[exec script]状态失败!\n"}));
}

TEST_F(exec_switching_test, on_with_the_framework_disabled_starts_it_with_exec_alone) {
    expect_ladder_to_states(exec_ladder, {0, 0, 0, 0, 0});
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 3, 11, 0, 1, 0)).WillOnce(Return(0));
    for (const int module : {7, 1, 3, 2, 5, 4, 11}) {
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(module, 0, 0)).WillOnce(Return(0));
    }
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(0, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(run(exec, {"exec", "on"}),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[exec]开启成功, 重启后生效!\n"}));
}

}  // namespace
