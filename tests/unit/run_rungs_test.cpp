// SPDX-License-Identifier: Apache-2.0
// The rungs one by one, with the answers that the modules' own ladders do not bring out.
#include "framework/run_rungs.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>

#include "framework/output.h"
#include "support/module_test.h"

namespace {

using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;
using testing::StrEq;

constexpr int no_end = 1000;

/// A module whose rights and switching the test answers.
class answered_module : public COrvexBase {
public:
    MOCK_METHOD(bool, check_permission, (std::string & error), (override));
    MOCK_METHOD(int, set_module_status, (const orvex_module_type& module, const int& status), (override));
    void usage() override { print_line("the help"); }
};

class run_rungs_test : public module_test {
protected:
    /// Takes one rung. The value is the run's end, or `no_end`.
    call_result take(const std::function<run_end()>& rung) {
        return capture([&] { return rung().value_or(no_end); });
    }

    void expect_refusal() {
        EXPECT_CALL(module, check_permission(StrEq(""))).WillOnce(DoAll(SetArgReferee<0>("no rights"), Return(false)));
    }

    testing::StrictMock<answered_module> module;
};

TEST_F(run_rungs_test, the_help_words_are_two) {
    EXPECT_TRUE(is_help_word("-h"));
    EXPECT_TRUE(is_help_word("--help"));
    for (const char* word : {"", "-H", "-hx", "--hel", "--helpx", "help", "-L"}) {
        EXPECT_FALSE(is_help_word(word)) << word;
    }
}

TEST_F(run_rungs_test, the_secret_scene_ends_the_run) {
    EXPECT_CALL(service, orvex_scene_get_sm_status()).WillOnce(Return(1));
    EXPECT_EQ(take(refuse_in_secret_scene), (call_result{0, "涉密场景下禁止使用通用命令行工具!\n"}));
    EXPECT_CALL(service, orvex_scene_get_sm_status()).WillOnce(Return(2));
    EXPECT_EQ(take(refuse_in_secret_scene), (call_result{no_end, ""}));
}

TEST_F(run_rungs_test, with_rights_every_word_goes_on) {
    for (const char* word : {"-A", "-h", "-L", ""}) {
        EXPECT_CALL(module, check_permission(StrEq(""))).Times(2).WillRepeatedly(Return(true));
        EXPECT_EQ(take([&] { return refuse_without_rights(module, word); }), (call_result{no_end, ""})) << word;
        EXPECT_EQ(take([&] { return refuse_without_rights_but_help(module, word); }), (call_result{no_end, ""}))
            << word;
    }
}

TEST_F(run_rungs_test, without_rights_the_listing_and_the_help_go_on) {
    for (const char* word : {"-h", "--help", "-L", "--list"}) {
        expect_refusal();
        EXPECT_EQ(take([&] { return refuse_without_rights(module, word); }), (call_result{no_end, ""})) << word;
    }
    for (const char* word : {"-A", "on", "", "--lis", "-l"}) {
        expect_refusal();
        EXPECT_EQ(take([&] { return refuse_without_rights(module, word); }), (call_result{-1, "no rights\n"})) << word;
    }
}

TEST_F(run_rungs_test, without_rights_the_help_alone_goes_on_where_nothing_is_listed) {
    for (const char* word : {"-h", "--help"}) {
        expect_refusal();
        EXPECT_EQ(take([&] { return refuse_without_rights_but_help(module, word); }), (call_result{no_end, ""}))
            << word;
    }
    for (const char* word : {"-L", "--list", "on", ""}) {
        expect_refusal();
        EXPECT_EQ(take([&] { return refuse_without_rights_but_help(module, word); }), (call_result{-1, "no rights\n"}))
            << word;
    }
}

TEST_F(run_rungs_test, both_states_are_read_also_with_the_framework_off) {
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    EXPECT_CALL(service, orvex_scene_get_module_status(5)).WillOnce(Return(2));
    const module_states states = read_states(module_proc);
    EXPECT_EQ(states.framework, 0);
    EXPECT_EQ(states.module, 2);
}

TEST_F(run_rungs_test, a_module_is_on_with_two_states_other_than_0) {
    EXPECT_TRUE((module_states{2, 1}.is_module_on()));
    EXPECT_TRUE((module_states{4, 2}.is_module_on()));
    EXPECT_TRUE((module_states{-1, 7}.is_module_on()));
    EXPECT_FALSE((module_states{0, 1}.is_module_on()));
    EXPECT_FALSE((module_states{2, 0}.is_module_on()));
    EXPECT_FALSE((module_states{0, 0}.is_module_on()));
}

TEST_F(run_rungs_test, on_and_off_switch_as_the_last_of_three_arguments) {
    EXPECT_CALL(module, set_module_status(module_net, 1)).WillOnce(Return(3));
    EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, 3, "on", 0); }), (call_result{3, ""}));
    EXPECT_CALL(module, set_module_status(module_net, 0)).WillOnce(Return(-1));
    EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, 3, "off", 4); }), (call_result{-1, ""}));
    EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, 3, "off", 0); }),
              (call_result{0, "orvex未开启!\n"}));
}

TEST_F(run_rungs_test, everything_else_is_no_switch) {
    for (const int argc : {4, 5}) {
        EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, argc, "on", 2); }), (call_result{no_end, ""}));
        EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, argc, "off", 0); }),
                  (call_result{no_end, ""}));
    }
    for (const char* word : {"-L", "", "On", "off "}) {
        EXPECT_EQ(take([&] { return switch_on_or_off(module, module_net, 3, word, 0); }), (call_result{no_end, ""}));
    }
}

TEST_F(run_rungs_test, the_gate_stops_all_but_the_help_while_the_module_is_off) {
    EXPECT_EQ(take([&] {
                  return refuse_while_off(module, {2, 0}, "-L", "it is off");
              }),
              (call_result{0, "it is off\n"}));
    EXPECT_EQ(take([&] { return refuse_while_off(module, {0, 1}, "", "it is off"); }), (call_result{0, "it is off\n"}));
    EXPECT_EQ(take([&] {
                  return refuse_while_off(module, {0, 1}, "-h", "it is off");
              }),
              (call_result{0, "the help\n"}));
    EXPECT_EQ(take([&] { return refuse_while_off(module, {4, 2}, "-L", "it is off"); }), (call_result{no_end, ""}));
}

}  // namespace
