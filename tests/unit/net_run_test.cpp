// SPDX-License-Identifier: Apache-2.0
// The options of `net`, and which operation gets what. What the operations do is in the other tests of net_*.
#include <gmock/gmock.h>

#include "modules/net/net_module.h"
#include "support/captured_stream.h"
#include "unit/help_texts.h"
#include "unit/option_rows.h"

namespace {

using testing::Return;

/// A module whose operations are heard.
class heard_net : public COrvexNet {
public:
    explicit heard_net(heard_operation& operation) : operation_(operation) {}

    int add_net_policy_by_file(const std::string& path) override {
        return operation_.call(show_call("add_net_policy_by_file", path));
    }
    int add_net_policy_by_pkg(const std::string& pkg) override {
        return operation_.call(show_call("add_net_policy_by_pkg", pkg));
    }
    int del_net_policy_by_file(const std::string& path) override {
        return operation_.call(show_call("del_net_policy_by_file", path));
    }
    int del_net_policy_by_pkg(const std::string& pkg) override {
        return operation_.call(show_call("del_net_policy_by_pkg", pkg));
    }
    int update_net_policy_by_file(const std::string& path, const std::int32_t& status) override {
        return operation_.call(show_call("update_net_policy_by_file", path, status));
    }
    int update_net_policy_by_pkg(const std::string& pkg, const std::int32_t& status) override {
        return operation_.call(show_call("update_net_policy_by_pkg", pkg, status));
    }
    int list_net_policy() override { return operation_.call(show_call("list_net_policy")); }

private:
    heard_operation& operation_;
};

class net_run_test : public option_rows_test {
protected:
    net_run_test() : option_rows_test("net", net_ladder), net(operation) {}

    COrvexBase& module() override { return net; }

    heard_net net;
};

const std::string invalid_line = "无效的参数\n";
const std::string add_value_line = "错误: 添加联网管控策略时, 无需设置-v选项, 默认拒绝!\n";
const std::string add_target_line = "请输入需要添加联网管控策略的应用程序路径或者软件包名称!\n";
const std::string update_target_line = "请输入需要更新联网管控控策略的应用程序路径或者软件包名称!\n";
const std::string delete_target_line = "请输入需要删除联网管控控策略的应用程序路径或者软件包名称!\n";
const std::string no_value_line = "请输入更新的状态值!\n";
const std::string bad_value_text = "请输入正确的管控状态值!";

TEST_F(net_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  net.usage();
                  return 0;
              }),
              (call_result{0, net_help()}));
}

// Which operation runs.

TEST_F(net_run_test, each_command_has_its_operation_for_each_kind_of_target) {
    expect_chosen({
        {{"-A", "-f", "/a b"}, "add_net_policy_by_file [/a b]"},
        {{"-A", "-P", "a"}, "add_net_policy_by_pkg [a]"},
        {{"-D", "-f", "/a b"}, "del_net_policy_by_file [/a b]"},
        {{"-D", "-P", "a"}, "del_net_policy_by_pkg [a]"},
        {{"-U", "-f", "/a b", "-v", "allow"}, "update_net_policy_by_file [/a b] [1]"},
        {{"-U", "-f", "/a b", "-v", "deny"}, "update_net_policy_by_file [/a b] [2]"},
        {{"-U", "-P", "a", "-v", "allow"}, "update_net_policy_by_pkg [a] [1]"},
        {{"-U", "-P", "a", "-v", "deny"}, "update_net_policy_by_pkg [a] [2]"},
    });
}

TEST_F(net_run_test, the_options_may_be_written_in_every_way_of_getopt) {
    expect_chosen({
        {{"--add", "--file", "/a"}, "add_net_policy_by_file [/a]"},
        {{"--file=/a", "--ad"}, "add_net_policy_by_file [/a]"},
        {{"-Af/a"}, "add_net_policy_by_file [/a]"},
        {{"--delete", "--pakcage", "a"}, "del_net_policy_by_pkg [a]"},
        {{"-DPa"}, "del_net_policy_by_pkg [a]"},
        {{"word", "--fi", "/a", "another", "--del"}, "del_net_policy_by_file [/a]"},
        {{"--update", "--pakcage=a", "--value", "deny"}, "update_net_policy_by_pkg [a] [2]"},
        {{"--v=allow", "--f=/a", "--u"}, "update_net_policy_by_file [/a] [1]"},
        {{"-vallow", "-Pa", "-U"}, "update_net_policy_by_pkg [a] [1]"},
        {{"-Uvdeny", "-f/a"}, "update_net_policy_by_file [/a] [2]"},
    });
}

TEST_F(net_run_test, the_long_word_for_a_package_is_the_misspelt_one) {
    expect_chosen({
        {{"--pakcage", "foo", "-A"}, "add_net_policy_by_pkg [foo]"},
        {{"--pakcage=foo", "-A"}, "add_net_policy_by_pkg [foo]"},
        {{"--pak", "foo", "-A"}, "add_net_policy_by_pkg [foo]"},
        {{"--pa", "foo", "-A"}, "add_net_policy_by_pkg [foo]"},
        {{"--p", "foo", "-A"}, "add_net_policy_by_pkg [foo]"},
    });
    expect_refused({
        {{"--package", "foo", "-A"}, -1, invalid_line + net_help()},
        {{"--package=foo", "-A"}, -1, invalid_line + net_help()},
        {{"--pac", "foo", "-A"}, -1, invalid_line + net_help()},
        {{"-A", "--package", "foo"}, -1, invalid_line + net_help()},
    });
}

TEST_F(net_run_test, getopt_tells_of_the_word_that_the_help_says) {
    const captured_stream errors(stderr);
    expect_ladder(net_ladder);
    EXPECT_EQ(run_open({"--package", "foo", "-A"}), (call_result{-1, invalid_line + net_help()}));
    EXPECT_EQ(errors.read_all(), "orvex_policy: unrecognized option '--package'\n");
}

TEST_F(net_run_test, strange_names_reach_the_operation_as_they_are) {
    for (const char* name : {"%s%n", "a'b\"c", "-x", "--", "a\nb", "\xff\xfe", "软件包", " ", "a:b", "~/a"}) {
        const std::string shown = std::string(" [") + name + "]";
        expect_chosen({
            {{"-A", "-P", name}, "add_net_policy_by_pkg" + shown},
            {{"-A", "-f", name}, "add_net_policy_by_file" + shown},
        });
    }
}

TEST_F(net_run_test, the_file_goes_before_the_package) {
    expect_chosen({
        {{"-f", "a", "-P", "b", "-D"}, "del_net_policy_by_file [a]"},
        {{"-P", "b", "-f", "a", "-D"}, "del_net_policy_by_file [a]"},
        {{"-A", "-P", "b", "-f", "a"}, "add_net_policy_by_file [a]"},
        {{"-U", "-P", "b", "-f", "a", "-v", "deny"}, "update_net_policy_by_file [a] [2]"},
    });
}

TEST_F(net_run_test, a_repeated_option_replaces_the_earlier_value) {
    expect_chosen({
        {{"-f", "1", "-A", "-f", "2"}, "add_net_policy_by_file [2]"},
        {{"-P", "1", "-D", "-P", "2"}, "del_net_policy_by_pkg [2]"},
        {{"-v", "nonsense", "-U", "-P", "a", "-v", "deny", "-v", "allow"}, "update_net_policy_by_pkg [a] [1]"},
        {{"-f", "1", "-P", "2", "-f", "", "-A"}, "add_net_policy_by_pkg [2]"},
        {{"-v", "deny", "-v", "", "-P", "a", "-A"}, "add_net_policy_by_pkg [a]"},
    });
}

TEST_F(net_run_test, an_empty_value_counts_as_none) {
    expect_chosen({
        {{"-A", "-f", "", "-P", "a"}, "add_net_policy_by_pkg [a]"},
        {{"-D", "-f", "", "-P", "a"}, "del_net_policy_by_pkg [a]"},
        {{"-U", "-f", "", "-P", "a", "-v", "deny"}, "update_net_policy_by_pkg [a] [2]"},
        {{"-A", "-v", "", "-P", "a"}, "add_net_policy_by_pkg [a]"},
    });
    expect_refused({
        {{"-A", "-f", "", "-P", ""}, -1, add_target_line + net_help()},
        {{"-D", "-f", "", "-P", ""}, -1, delete_target_line + net_help()},
        {{"-U", "-f", "", "-P", "", "-v", "deny"}, -1, update_target_line + net_help()},
        {{"-U", "-P", "a", "-v", ""}, -1, no_value_line + net_help()},
    });
}

TEST_F(net_run_test, the_value_is_ignored_at_a_delete) {
    expect_chosen({
        {{"-D", "-P", "a", "-v", "allow"}, "del_net_policy_by_pkg [a]"},
        {{"-D", "-f", "/a", "-v", "nonsense"}, "del_net_policy_by_file [/a]"},
    });
}

TEST_F(net_run_test, a_listing_ignores_every_target_and_every_result) {
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"-L"}, {"--list"}, {"--l"}, {"-L", "word"}, {"-f", "/a", "-L"}, {"-L", "-P", "a", "-v", "nonsense"}}) {
        for (const int result : {0, -1, 5}) {
            expect_ladder(net_ladder);
            EXPECT_CALL(operation, call("list_net_policy")).WillOnce(Return(result));
            EXPECT_EQ(run_open(words), (call_result{0, ""})) << words[0] << result;
        }
    }
}

TEST_F(net_run_test, a_caller_without_rights_may_list) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder(net_ladder, {0, 1000, 0, 2, 1});
        EXPECT_CALL(operation, call("list_net_policy")).WillOnce(Return(0));
        EXPECT_EQ(run_open({word}), (call_result{0, ""})) << word;
    }
}

TEST_F(net_run_test, a_caller_without_rights_may_not_list_behind_another_option) {
    expect_ladder_to_rights(net_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-v", "allow", "-L"}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

TEST_F(net_run_test, a_second_command_behind_the_listing_does_not_slip_past_the_rights) {
    // Only the first word is looked at; the second command letter is what stops the change.
    expect_ladder(net_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-L", "-A", "-P", "a"}), (call_result{-1, net_help()}));
}

// Bad use.

TEST_F(net_run_test, an_add_takes_no_value_and_says_so_without_the_help) {
    expect_refused({
        {{"-A", "-P", "bash", "-v", "allow"}, -1, add_value_line},
        {{"-v", "deny", "-A", "-f", "/a"}, -1, add_value_line},
        {{"-A", "-v", "nonsense"}, -1, add_value_line},
        {{"-A", "-v", " "}, -1, add_value_line},
    });
}

TEST_F(net_run_test, a_command_without_a_target_is_told_with_the_help) {
    expect_refused({
        {{"-A"}, -1, add_target_line + net_help()},
        {{"-D"}, -1, delete_target_line + net_help()},
        {{"-D", "-v", "allow"}, -1, delete_target_line + net_help()},
        {{"-U", "-v", "allow"}, -1, update_target_line + net_help()},
        {{"-U", "-v", "deny"}, -1, update_target_line + net_help()},
        {{"-A", "bash"}, -1, add_target_line + net_help()},
        {{"-D", "--", "-P", "bash"}, -1, delete_target_line + net_help()},
    });
}

TEST_F(net_run_test, an_update_wants_its_value_before_its_target) {
    expect_refused({
        {{"-U"}, -1, no_value_line + net_help()},
        {{"-U", "-f", "x"}, -1, no_value_line + net_help()},
        {{"-U", "-P", "a"}, -1, no_value_line + net_help()},
    });
}

TEST_F(net_run_test, a_wrong_value_runs_into_the_help_on_one_line) {
    const std::string expected = bad_value_text + net_help();
    for (const char* value :
         {"maybe", "Allow", "DENY", "allow ", " deny", "allo", "denyy", "1", "2", "允许", "allow\n", "%s"}) {
        expect_refused({
            {{"-U", "-v", value}, -1, expected},
            {{"-U", "-v", value, "-f", "/a"}, -1, expected},
            {{"-U", "-v", value, "-P", "a"}, -1, expected},
        });
    }
}

TEST_F(net_run_test, a_target_without_a_command_gives_the_help) {
    expect_refused({
        {{"-f", "/a"}, 0, net_help()},
        {{"-P", "a", "-v", "allow"}, 0, net_help()},
        {{"-v", "nonsense"}, 0, net_help()},
    });
}

TEST_F(net_run_test, a_bad_option_comes_before_what_the_others_ask_for) {
    expect_refused({
        {{"-A", "-P", "a", "-v", "allow", "-x"}, -1, invalid_line + net_help()},
        {{"-D", "-f", "/a", "-n", "a"}, -1, invalid_line + net_help()},
        {{"-L", "-d", "/a"}, -1, invalid_line + net_help()},
        {{"-U", "-v", "maybe", "-h"}, 0, net_help()},
        {{"-A", "-P", "a", "-L"}, -1, net_help()},
        {{"-L", "-A"}, -1, net_help()},
    });
}

TEST_F(net_run_test, an_option_without_its_value_is_invalid) {
    const captured_stream errors(stderr);
    for (const char* word : {"-f", "-P", "-v", "--file", "--pakcage", "--value"}) {
        expect_ladder(net_ladder);
        EXPECT_EQ(run_open({"-A", word}), (call_result{-1, invalid_line + net_help()})) << word;
    }
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option requires an argument -- 'P'\n"
              "orvex_policy: option requires an argument -- 'v'\n"
              "orvex_policy: option '--file' requires an argument\n"
              "orvex_policy: option '--pakcage' requires an argument\n"
              "orvex_policy: option '--value' requires an argument\n");
}

// The switch, end to end.

TEST_F(net_run_test, on_with_the_framework_disabled_starts_it_with_the_module_alone) {
    expect_ladder_to_states(net_ladder, {0, 0, 0, 0, 0});
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 3, 11, 0, 1, 0)).WillOnce(Return(0));
    for (const int other : {0, 7, 3, 2, 5, 4, 11}) {
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(other, 0, 0)).WillOnce(Return(0));
    }
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(1, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(run_open({"on"}),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[net]开启成功, 重启后生效!\n"}));
}

TEST_F(net_run_test, off_with_the_framework_enabled_switches_the_module) {
    expect_ladder_to_states(net_ladder);
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
    EXPECT_CALL(service, orvex_scene_set_module_status(1, 0)).WillOnce(Return(0));

    EXPECT_EQ(run_open({"off"}), (call_result{0, ""}));
}

}  // namespace
