// SPDX-License-Identifier: Apache-2.0
// The ladder with the answers that the modules' own runs do not bring out.
#include "framework/ladder.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "framework/output.h"
#include "support/command_line.h"
#include "support/module_test.h"

namespace {

using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;
using testing::StrEq;

constexpr option help_alone[] = {
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};
constexpr module_ladder plain = {
    .type = module_net,
    .off_line = "it is off",
    .options = {.letters = "hAL", .long_options = help_alone},
};

/// A module whose rights and switching the test answers.
class answered_module : public COrvexBase {
public:
    MOCK_METHOD(bool, check_permission, (std::string & error), (override));
    MOCK_METHOD(int, set_module_status, (const orvex_module_type& module, const int& status), (override));
    void usage() override { print_line("the help"); }
};

class answered_command : public module_command {
public:
    MOCK_METHOD(run_end, serve_words, (int argc, char** argv, const module_states& states), (override));
    MOCK_METHOD(int, act, (int action), (override));
};

class module_ladder_test : public module_test {
protected:
    call_result climb(const module_ladder& ladder, const std::vector<std::string>& words) {
        command_line line(words);
        return capture([&] { return climb_ladder(module, ladder, command, line.argc(), line.argv()); });
    }

    void expect_rights(bool answer) {
        if (answer) {
            EXPECT_CALL(module, check_permission(StrEq(""))).WillOnce(Return(true));
        } else {
            EXPECT_CALL(module, check_permission(StrEq("")))
                .WillOnce(DoAll(SetArgReferee<0>("no rights"), Return(false)));
        }
    }

    void expect_states(int framework, int state) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(framework));
        EXPECT_CALL(service, orvex_scene_get_module_status(module_net)).WillOnce(Return(state));
    }

    void expect_switch(orvex_module_type type, int status, int result) {
        EXPECT_CALL(module, set_module_status(type, status)).WillOnce(Return(result));
    }

    void expect_own_words(int argc, run_end answer) {
        EXPECT_CALL(command, serve_words(argc, testing::_, testing::_)).WillOnce(Return(answer));
    }

    testing::StrictMock<answered_module> module;
    testing::StrictMock<answered_command> command;
};

TEST_F(module_ladder_test, without_rights_the_help_and_the_listing_go_on_by_their_whole_words) {
    for (const char* word : {"-h", "--help", "-L", "--list"}) {
        expect_rights(false);
        expect_states(0, 1);
        expect_own_words(3, 5);
        EXPECT_EQ(climb(plain, {"net", word}), (call_result{5, ""})) << word;
    }
    for (const char* word : {"-A", "on", "", "-H", "-hx", "--hel", "help", "--lis", "-l"}) {
        expect_rights(false);
        EXPECT_EQ(climb(plain, {"net", word}), (call_result{-1, "no rights\n"})) << word;
    }
}

TEST_F(module_ladder_test, without_policies_the_help_alone_goes_on_without_rights) {
    constexpr module_ladder switch_alone = {
        .type = module_net,
        .has_policies = false,
        .options = {.letters = "hAL", .long_options = help_alone},
    };
    for (const char* word : {"-L", "--list", "on"}) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
        expect_rights(false);
        EXPECT_EQ(climb(switch_alone, {"net", word}), (call_result{-1, "no rights\n"})) << word;
    }
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    expect_rights(false);
    expect_own_words(3, std::nullopt);
    expect_locale();
    EXPECT_EQ(climb(switch_alone, {"net", "-h"}), (call_result{0, "the help\n"}));
}

TEST_F(module_ladder_test, on_and_off_give_what_the_switching_gave) {
    for (const int result : {0, -1, 3}) {
        expect_rights(true);
        expect_states(0, 0);
        expect_switch(module_net, 1, result);
        EXPECT_EQ(climb(plain, {"net", "on"}), (call_result{result, ""}));
        expect_rights(true);
        expect_states(4, 0);
        expect_switch(module_net, 0, result);
        EXPECT_EQ(climb(plain, {"net", "off"}), (call_result{result, ""}));
    }
}

TEST_F(module_ladder_test, what_goes_off_too_goes_off_unless_the_module_failed) {
    constexpr module_ladder pair = {
        .type = module_net,
        .goes_off_too = module_box,
        .off_line = "it is off",
        .options = {.letters = "hAL", .long_options = help_alone},
    };
    for (const int first : {0, 3}) {
        expect_rights(true);
        expect_states(2, 1);
        expect_switch(module_net, 0, first);
        expect_switch(module_box, 0, 7);
        EXPECT_EQ(climb(pair, {"net", "off"}), (call_result{7, ""})) << first;
    }
    expect_rights(true);
    expect_states(2, 1);
    expect_switch(module_net, 0, -1);
    EXPECT_EQ(climb(pair, {"net", "off"}), (call_result{-1, ""}));

    expect_rights(true);
    expect_states(2, 1);
    expect_switch(module_net, 1, 0);
    EXPECT_EQ(climb(pair, {"net", "on"}), (call_result{0, ""}));
}

TEST_F(module_ladder_test, everything_else_is_no_switch) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"net", "on", "x"}, {"net", "off", "x", "y"}, {"net", "On"}, {"net", "off "}}) {
        expect_rights(true);
        expect_states(2, 1);
        expect_own_words(static_cast<int>(words.size()) + 1, 5);
        EXPECT_EQ(climb(plain, words), (call_result{5, ""}));
    }
}

TEST_F(module_ladder_test, a_module_without_a_switch_serves_neither_word) {
    constexpr module_ladder no_switch = {
        .type = module_net,
        .has_switch = false,
        .off_line = "it is off",
        .options = {.letters = "hAL", .long_options = help_alone},
    };
    for (const char* word : {"on", "off"}) {
        expect_rights(true);
        expect_states(2, 0);
        expect_own_words(3, std::nullopt);
        EXPECT_EQ(climb(no_switch, {"net", word}), (call_result{0, "it is off\n"})) << word;
    }
}

TEST_F(module_ladder_test, a_module_is_on_with_two_states_other_than_0) {
    for (const auto& [framework, state] : std::vector<std::pair<int, int>>{{2, 1}, {4, 2}, {-1, 7}}) {
        expect_rights(true);
        expect_states(framework, state);
        expect_own_words(3, std::nullopt);
        expect_locale();
        EXPECT_CALL(command, act(action_list)).WillOnce(Return(9));
        EXPECT_EQ(climb(plain, {"net", "-L"}), (call_result{9, ""}));
    }
    for (const auto& [framework, state] : std::vector<std::pair<int, int>>{{0, 1}, {2, 0}, {0, 0}}) {
        expect_rights(true);
        expect_states(framework, state);
        expect_own_words(3, std::nullopt);
        EXPECT_EQ(climb(plain, {"net", "-L"}), (call_result{0, "it is off\n"}));
    }
}

TEST_F(module_ladder_test, a_command_of_nothing_of_its_own_takes_and_does_nothing) {
    module_command nothing;
    EXPECT_EQ(nothing.serve_words(0, nullptr, {}), std::nullopt);
    EXPECT_EQ(nothing.take('x', nullptr), std::nullopt);
    EXPECT_EQ(nothing.act(action_list), 0);
}

}  // namespace
