// SPDX-License-Identifier: Apache-2.0
#include "front/global_state.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <string>

#include "support/given_input.h"
#include "support/module_test.h"

namespace {

using testing::Return;

constexpr const char* question = "安全模式状态将改变, 完成设置后会立即重启系统, 是否继续Y/N[默认N]: ";
constexpr const char* going_on = "设置成功后将立即重启系统, 当前正在关闭orvex......\n";

class global_state_test : public module_test {
protected:
    call_result set(const std::string& mode) {
        return capture([&] { return set_orvex_status(mode); });
    }

    void expect_role_module(int answer) {
        EXPECT_CALL(service, orvex_scene_get_module_status(4)).WillOnce(Return(answer));
    }

    /// Expects the change, with the state before it, and answers it.
    void expect_change(int previous, int state, int reboot, int answer = 0) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(previous));
        EXPECT_CALL(service, setModuleStatusReboot_dbus(1, state, 11, 0, 1, reboot)).WillOnce(Return(answer));
    }

    void expect_failure_record(const std::string& text) {
        EXPECT_CALL(service, orvex_get_error()).WillOnce(Return(text));
        expect_log("orvex_policy", "set_orvex_status", "set orvex status failed, error: %s",
                   "set orvex status failed, error: " + text);
    }
};

TEST_F(global_state_test, enable_from_disabled_is_told_to_need_a_restart) {
    expect_change(0, 3, 0);
    EXPECT_EQ(set("enable"), (call_result{0, "orvex开启成功, 重启后生效!\n"}));
}

TEST_F(global_state_test, permissive_from_disabled_is_told_to_need_a_restart) {
    expect_change(0, 4, 0);
    EXPECT_EQ(set("permissive"), (call_result{0, "orvex开启成功, 重启后生效!\n"}));
}

TEST_F(global_state_test, enable_from_any_other_state_is_silent) {
    for (const int previous : {2, 4, 3, -1}) {
        expect_change(previous, 3, 0);
        EXPECT_EQ(set("enable"), (call_result{0, ""})) << previous;
    }
}

TEST_F(global_state_test, permissive_from_any_other_state_is_silent) {
    for (const int previous : {2, 4, 3, -1}) {
        expect_change(previous, 4, 0);
        EXPECT_EQ(set("permissive"), (call_result{0, ""})) << previous;
    }
}

TEST_F(global_state_test, disable_without_the_roles_asks_nothing_and_is_silent) {
    for (const int roles : {0, 2, 7, -1}) {
        for (const int previous : {0, 2, 4}) {
            expect_role_module(roles);
            expect_change(previous, 2, 0);
            EXPECT_EQ(set("disable"), (call_result{0, ""})) << roles << " " << previous;
        }
    }
}

TEST_F(global_state_test, any_other_text_asks_for_state_0) {
    expect_change(2, 0, 0);
    EXPECT_EQ(set("other"), (call_result{0, ""}));
    expect_change(0, 0, 0);
    EXPECT_EQ(set(""), (call_result{0, "orvex开启成功, 重启后生效!\n"}));
    expect_change(0, 0, 0);
    EXPECT_EQ(set("Enable"), (call_result{0, "orvex开启成功, 重启后生效!\n"}));
}

TEST_F(global_state_test, a_failure_is_told_and_logged_with_the_library_s_text) {
    for (const char* mode : {"enable", "permissive"}) {
        for (const int failure : {-1, -4, 1}) {
            expect_change(0, std::string(mode) == "enable" ? 3 : 4, 0, failure);
            expect_failure_record("总线 %s 断开");
            EXPECT_EQ(set(mode), (call_result{-1, "设置orvex状态失败! error: 总线 %s 断开\n"}));
        }
    }
}

TEST_F(global_state_test, a_failure_without_a_text_is_told_all_the_same) {
    expect_role_module(0);
    expect_change(2, 2, 0, 5);
    expect_failure_record("");
    EXPECT_EQ(set("disable"), (call_result{-1, "设置orvex状态失败! error: \n"}));
}

TEST_F(global_state_test, a_failure_without_a_record_is_told_with_no_text) {
    expect_change(2, 3, 0, 5);
    EXPECT_CALL(service, orvex_get_error()).WillOnce(Return(std::nullopt));
    expect_log("orvex_policy", "set_orvex_status", "set orvex status failed, error: %s",
               "set orvex status failed, error: ");
    EXPECT_EQ(set("enable"), (call_result{-1, "设置orvex状态失败! error: \n"}));
}

TEST_F(global_state_test, a_long_library_text_is_told_whole) {
    const std::string text(5000, 'x');
    expect_change(2, 3, 0, 1);
    expect_failure_record(text);
    EXPECT_EQ(set("enable"), (call_result{-1, "设置orvex状态失败! error: " + text + "\n"}));
}

class yes_test : public global_state_test, public testing::WithParamInterface<const char*> {};

TEST_P(yes_test, disables_with_a_restart) {
    const given_input input(GetParam());
    expect_role_module(1);
    expect_change(2, 2, 1);

    EXPECT_EQ(set("disable"), (call_result{0, std::string(question) + going_on}));
}

INSTANTIATE_TEST_SUITE_P(answers, yes_test, testing::Values("y\n", "Y\n", "yes\n", "Yellow submarine\n", "y", "yn\n"));

class no_test : public global_state_test, public testing::WithParamInterface<const char*> {};

TEST_P(no_test, changes_nothing_and_says_nothing_more) {
    const given_input input(GetParam());
    expect_role_module(1);

    EXPECT_EQ(set("disable"), (call_result{0, question}));
}

INSTANTIATE_TEST_SUITE_P(answers, no_test,
                         testing::Values("\n", "", "n\n", "N\n", "no\n", " y\n", "\ty\n", "\ny\n", "1\n", "ny\n",
                                         "\xff\n", "是\n", "no newline"));

TEST_F(global_state_test, a_nul_byte_is_a_no) {
    const given_input input(std::string("\0y\n", 3));
    expect_role_module(1);
    EXPECT_EQ(set("disable"), (call_result{0, question}));
}

TEST_F(global_state_test, the_rest_of_the_answer_s_line_is_dropped_and_no_more) {
    const given_input input("yes, please\nz");
    expect_role_module(1);
    expect_change(2, 2, 1);
    set("disable");
    EXPECT_EQ(std::getc(stdin), 'z');
}

TEST_F(global_state_test, a_bare_newline_takes_nothing_of_the_next_line) {
    const given_input input("\nz");
    expect_role_module(1);
    set("disable");
    EXPECT_EQ(std::getc(stdin), 'z');
}

TEST_F(global_state_test, a_confirmed_disable_is_silent_from_disabled_too) {
    const given_input input("y\n");
    expect_role_module(1);
    expect_change(0, 2, 1);
    EXPECT_EQ(set("disable"), (call_result{0, std::string(question) + going_on}));
}

TEST_F(global_state_test, a_failure_behind_a_yes_stands_behind_the_second_text) {
    const given_input input("y\n");
    expect_role_module(1);
    expect_change(2, 2, 1, -1);
    expect_failure_record("no bus");
    EXPECT_EQ(set("disable"),
              (call_result{-1, std::string(question) + going_on + "设置orvex状态失败! error: no bus\n"}));
}

}  // namespace
