// SPDX-License-Identifier: Apache-2.0
#include "framework/option_loop.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "framework/output.h"
#include "support/captured_stream.h"
#include "support/command_line.h"
#include "support/module_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int no_end = 1000;

class helpful_module : public COrvexBase {
public:
    void usage() override { print_line("the help"); }
};

constexpr option long_options_of_module[] = {
    {"help", no_argument, nullptr, 'h'},         {"file", required_argument, nullptr, 'f'},
    {"except", required_argument, nullptr, 'e'}, {"tampered", no_argument, nullptr, 1},
    {"ignored", no_argument, nullptr, 0},        {"add", no_argument, nullptr, 'A'},
    {"update", no_argument, nullptr, 'U'},       {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},         {nullptr, 0, nullptr, 0},
};

constexpr module_options options_of_module = {
    .letters = "hf:eAUDL",
    .long_options = long_options_of_module,
    .invalid_line = "bad use",
};

class option_loop_test : public module_test, private option_taker {
protected:
    /// Reads a command line. The value is the run's end, or `no_end`.
    call_result read(const std::vector<std::string>& words) {
        std::vector<std::string> whole = {"module"};
        whole.insert(whole.end(), words.begin(), words.end());
        command_line line(whole);
        taken.clear();
        expect_locale();
        return capture([&] {
            const option_result result = read_options(module, options_of_module, *this, line.argc(), line.argv());
            action = result.action;
            return result.end.value_or(no_end);
        });
    }

    helpful_module module;
    int action = 77;
    std::vector<std::string> taken;

private:
    /// Keeps what it gets as "letter=value"; the value "stop" ends the run with 5.
    run_end take(int letter, const char* value) override {
        const std::string name = letter == 1 ? "1" : std::string(1, static_cast<char>(letter));
        taken.push_back(name + "=" + (value == nullptr ? "(null)" : value));
        return taken.back() == "f=stop" ? run_end(5) : run_end();
    }
};

TEST_F(option_loop_test, a_line_without_options_runs_to_its_end) {
    EXPECT_EQ(read({}), (call_result{no_end, ""}));
    EXPECT_EQ(action, 0);
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(option_loop_test, command_letters_and_words_set_the_action) {
    const std::vector<std::pair<const char*, int>> commands = {{"-A", 1}, {"--add", 1},    {"-U", 2}, {"--update", 2},
                                                               {"-D", 3}, {"--delete", 3}, {"-L", 4}, {"--list", 4}};
    for (const auto& [word, number] : commands) {
        EXPECT_EQ(read({word}), (call_result{no_end, ""})) << word;
        EXPECT_EQ(action, number) << word;
        EXPECT_THAT(taken, IsEmpty()) << word;
    }
}

TEST_F(option_loop_test, a_second_command_letter_ends_with_the_help) {
    for (const char* first : {"-A", "-U", "-D", "-L"}) {
        for (const char* second : {"-A", "-U", "-D", "-L"}) {
            EXPECT_EQ(read({first, "-f", "x", second, "-e"}), (call_result{-1, "the help\n"})) << first << second;
            EXPECT_THAT(taken, ElementsAre("f=x"));
        }
    }
}

TEST_F(option_loop_test, the_module_s_own_options_go_to_it_in_their_order) {
    EXPECT_EQ(read({"-f", "x", "word", "-e", "--file=y z", "--tampered", "-f", ""}), (call_result{no_end, ""}));
    EXPECT_THAT(taken, ElementsAre("f=x", "e=(null)", "f=y z", "1=(null)", "f="));
    EXPECT_EQ(action, 0);
}

TEST_F(option_loop_test, a_long_word_may_take_a_value_where_its_letter_takes_none) {
    EXPECT_EQ(read({"--except", "-A", "-e", "-L"}), (call_result{no_end, ""}));
    EXPECT_THAT(taken, ElementsAre("e=-A", "e=(null)"));
    EXPECT_EQ(action, 4);
}

TEST_F(option_loop_test, what_an_option_returns_ends_the_run_at_once) {
    EXPECT_EQ(read({"-A", "-f", "stop", "-f", "x", "-Z", "-h"}), (call_result{5, ""}));
    EXPECT_THAT(taken, ElementsAre("f=stop"));
}

TEST_F(option_loop_test, the_help_ends_the_run_whatever_came_before) {
    EXPECT_EQ(read({"-A", "-f", "x", "-h", "-L", "-f", "y"}), (call_result{0, "the help\n"}));
    EXPECT_THAT(taken, ElementsAre("f=x"));
    EXPECT_EQ(read({"--help"}), (call_result{0, "the help\n"}));
}

TEST_F(option_loop_test, an_unknown_option_ends_with_the_line_and_the_help) {
    const captured_stream errors(stderr);
    EXPECT_EQ(read({"-A", "-Z", "-h"}), (call_result{-1, "bad use\nthe help\n"}));
    EXPECT_EQ(read({"--zero"}), (call_result{-1, "bad use\nthe help\n"}));
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: invalid option -- 'Z'\n"
              "orvex_policy: unrecognized option '--zero'\n");
}

TEST_F(option_loop_test, a_missing_value_ends_with_the_line_and_the_help) {
    const captured_stream errors(stderr);
    EXPECT_EQ(read({"-f"}), (call_result{-1, "bad use\nthe help\n"}));
    EXPECT_EQ(read({"-A", "--except"}), (call_result{-1, "bad use\nthe help\n"}));
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option '--except' requires an argument\n");
}

TEST_F(option_loop_test, an_option_of_the_value_0_is_passed_over) {
    EXPECT_EQ(read({"--ignored", "-A"}), (call_result{no_end, ""}));
    EXPECT_THAT(taken, IsEmpty());
    EXPECT_EQ(action, 1);
}

TEST_F(option_loop_test, a_double_dash_ends_the_options) {
    EXPECT_EQ(read({"-A", "--", "-L", "-f"}), (call_result{no_end, ""}));
    EXPECT_EQ(action, 1);
}

}  // namespace
