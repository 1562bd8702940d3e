// SPDX-License-Identifier: Apache-2.0
// The rungs that the modules have in common, as a table over the modules: a new module joins with a row in
// `all_modules`.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "modules/box/box_module.h"
#include "modules/exec/exec_module.h"
#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "modules/net/net_module.h"
#include "modules/proc/proc_module.h"
#include "modules/userid/userid_module.h"
#include "support/captured_stream.h"
#include "support/module_test.h"
#include "unit/help_texts.h"

namespace {

using testing::Return;
using words = std::vector<std::string>;

/// Sees what a module switches.
class switch_watcher {
public:
    MOCK_METHOD(int, set_module_status, (int module, int status));
};

/// A module whose switching ends at a watcher.
template <class Module>
class watched_module : public Module {
public:
    explicit watched_module(switch_watcher& watcher) : watcher_(watcher) {}

    int set_module_status(const orvex_module_type& module, const int& status) override {
        return watcher_.set_module_status(module, status);
    }

private:
    switch_watcher& watcher_;
};

template <class Module>
std::unique_ptr<COrvexBase> make(switch_watcher& watcher) {
    return std::make_unique<watched_module<Module>>(watcher);
}

/// What the ladder of one module looks like.
struct ladder_row {
    const char* word;
    ladder_shape shape;
    /// The words that need no rights where they stand first.
    words open_words;
    /// What is said while the module is off; null for a module that does not mind.
    const char* off_line;
    /// The modules that "on" switches; none for a module without a switch.
    std::vector<int> switched_on;
    /// The modules that "off" switches, in their order.
    std::vector<int> switched_off;
    /// The letters of the commands, of which one may stand on a command line.
    std::string command_letters;
    const char* invalid_line;
    std::string (*help)();
    std::unique_ptr<COrvexBase> (*make)(switch_watcher& watcher);
};

void PrintTo(const ladder_row& row, std::ostream* stream) {
    *stream << row.word;
}

std::vector<ladder_row> all_modules() {
    return {
        {"exec",
         exec_ladder,
         {"-L", "-h", "--list", "--help"},
         "执行管控未开启!\n",
         {0},
         {0, 7},
         "ADL",
         "无效的参数\n",
         exec_help,
         make<COrvexExec>},
        {"file",
         file_ladder,
         {"-L", "-h", "--list", "--help"},
         "文件只读保护未开启!\n",
         {2},
         {2},
         "ADL",
         "无效的参数!\n",
         file_help,
         make<COrvexFile>},
        {"proc",
         proc_ladder,
         {"-L", "-h", "--list", "--help"},
         "进程防杀死未开启!\n",
         {5},
         {5},
         "ADL",
         "无效的参数\n",
         proc_help,
         make<COrvexProc>},
        {"kmod",
         kmod_ladder,
         {"-L", "-h", "--list", "--help"},
         "内核模块防卸载未开启!\n",
         {3},
         {3},
         "ADL",
         "无效的参数\n",
         kmod_help,
         make<COrvexKmod>},
        {"net",
         net_ladder,
         {"-L", "-h", "--list", "--help"},
         "网络保护未开启!\n",
         {1},
         {1},
         "AUDL",
         "无效的参数\n",
         net_help,
         make<COrvexNet>},
        {"userid",
         userid_ladder,
         {"-L", "-h", "--list", "--help"},
         "三权分立功能未开启!\n",
         {},
         {},
         "L",
         "无效的参数\n",
         userid_help,
         make<COrvexUserid>},
        {"box", box_ladder, {"-h", "--help"}, nullptr, {11}, {11}, "", "无效的参数\n", box_help, make<COrvexBox>},
    };
}

/// The modules for which `is_wanted` holds.
std::vector<ladder_row> modules_with(const std::function<bool(const ladder_row&)>& is_wanted) {
    const std::vector<ladder_row> all = all_modules();
    std::vector<ladder_row> wanted;
    std::copy_if(all.begin(), all.end(), std::back_inserter(wanted), is_wanted);
    return wanted;
}

std::string name_row(const testing::TestParamInfo<ladder_row>& info) {
    return info.param.word;
}

class ladder_test : public module_test, public testing::WithParamInterface<ladder_row> {
protected:
    ladder_test() : module_(GetParam().make(watcher)) {}

    /// Runs the module with its word and `rest`.
    call_result run_with(const words& rest) {
        words line = rest;
        line.insert(line.begin(), GetParam().word);
        return run(*module_, line);
    }

    call_result help_with(int result) const { return {result, GetParam().help()}; }

    /// Expects that each of `modules` is switched to `status`.
    void expect_switched(const std::vector<int>& modules, int status) {
        for (const int module : modules) {
            EXPECT_CALL(watcher, set_module_status(module, status)).WillOnce(Return(0));
        }
    }

    testing::StrictMock<switch_watcher> watcher;

private:
    std::unique_ptr<COrvexBase> module_;
};

// The start.

TEST_P(ladder_test, the_word_alone_gives_the_help) {
    expect_ladder_start(GetParam().shape);
    EXPECT_EQ(run_with({}), help_with(0));
}

TEST_P(ladder_test, the_word_alone_gives_the_help_with_the_framework_off_too) {
    expect_ladder_start(GetParam().shape, {0, 1000, 1, 0, 0});
    EXPECT_EQ(run_with({}), help_with(0));
}

// Rights.

TEST_P(ladder_test, without_rights_all_but_the_open_words_is_refused) {
    for (const words& rest : std::vector<words>{{"on"},
                                                {"off"},
                                                {"-A"},
                                                {"-D"},
                                                {"-x"},
                                                {"foo"},
                                                {""},
                                                {"--lis"},
                                                {"--hel"},
                                                {"-H"},
                                                {"-l"},
                                                {"-hL"},
                                                {"-Lh"},
                                                {" -h"},
                                                {"help"}}) {
        expect_ladder_to_rights(GetParam().shape, {0, 1000, 0, 2, 1});
        EXPECT_EQ(run_with(rest), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"})) << rest[0];
    }
}

TEST_P(ladder_test, the_refusal_names_the_security_administrator_with_the_roles_in_force) {
    expect_ladder_to_rights(GetParam().shape, {0, 0, 1, 2, 1});
    EXPECT_EQ(run_with({"on"}), (call_result{-1, "当前用户无权限执行, 请切换secadm用户执行!\n"}));
}

TEST_P(ladder_test, an_open_word_counts_in_first_place_only) {
    for (const std::string& word : GetParam().open_words) {
        expect_ladder_to_rights(GetParam().shape, {0, 1000, 0, 2, 1});
        EXPECT_EQ(run_with({"foo", word}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"})) << word;
    }
}

TEST_P(ladder_test, listing_needs_rights_where_it_is_no_open_word) {
    const words& open = GetParam().open_words;
    for (const char* word : {"-L", "--list"}) {
        if (std::find(open.begin(), open.end(), word) == open.end()) {
            expect_ladder_to_rights(GetParam().shape, {0, 1000, 0, 2, 1});
            EXPECT_EQ(run_with({word}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"})) << word;
        }
    }
}

TEST_P(ladder_test, the_help_needs_no_rights) {
    for (const char* word : {"-h", "--help"}) {
        expect_ladder(GetParam().shape, {0, 1000, 0, 2, 1});
        EXPECT_EQ(run_with({word}), help_with(0)) << word;
    }
}

TEST_P(ladder_test, an_open_word_lets_everything_behind_it_through) {
    const captured_stream quiet(stderr);
    for (const std::string& word : GetParam().open_words) {
        expect_ladder(GetParam().shape, {0, 1000, 0, 2, 1});
        const call_result result = run_with({word, "-x"});
        const bool is_help = word == "-h" || word == "--help";
        EXPECT_EQ(result, is_help ? help_with(0) : (call_result{-1, GetParam().invalid_line + GetParam().help()}))
            << word;
    }
}

TEST_P(ladder_test, the_security_administrator_may_act_with_the_roles_in_force) {
    expect_ladder(GetParam().shape, {0, 600, 1, 2, 1});
    EXPECT_EQ(run_with({"foo"}), help_with(0));
}

// Options.

TEST_P(ladder_test, words_that_are_no_options_give_the_help) {
    for (const words& rest : std::vector<words>{{"foo"}, {""}, {"status"}, {"foo", "bar"}, {"ON"}, {"--"}, {"-"}}) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with(rest), help_with(0)) << rest[0];
    }
}

TEST_P(ladder_test, the_help_option_gives_the_help_wherever_it_stands) {
    for (const words& rest : std::vector<words>{{"-h"}, {"--help"}, {"--he"}, {"foo", "-h"}, {"-h", "-x"}, {"-hx"}}) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with(rest), help_with(0)) << rest[0];
    }
}

TEST_P(ladder_test, an_unknown_option_is_told_with_the_help) {
    const captured_stream quiet(stderr);
    for (const words& rest : std::vector<words>{{"-x"}, {"--nonsense"}, {"-x", "-h"}, {"foo", "-x"}, {"--help=1"}}) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with(rest), (call_result{-1, GetParam().invalid_line + GetParam().help()})) << rest[0];
    }
}

TEST_P(ladder_test, getopt_tells_of_an_unknown_option_too) {
    const captured_stream errors(stderr);
    expect_ladder(GetParam().shape);
    run_with({"-x"});
    EXPECT_EQ(errors.read_all(), "orvex_policy: invalid option -- 'x'\n");
}

TEST_P(ladder_test, a_second_command_letter_gives_the_help_alone) {
    for (const char first : GetParam().command_letters) {
        for (const char second : GetParam().command_letters) {
            const std::string first_word = std::string("-") + first;
            const std::string second_word = std::string("-") + second;
            expect_ladder(GetParam().shape);
            EXPECT_EQ(run_with({first_word, second_word}), help_with(-1)) << first << second;
            expect_ladder(GetParam().shape);
            EXPECT_EQ(run_with({first_word + second}), help_with(-1)) << first << second;
        }
    }
}

TEST_P(ladder_test, the_help_option_wins_over_a_command_letter) {
    for (const char letter : GetParam().command_letters) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with({std::string("-") + letter, "-h"}), help_with(0)) << letter;
    }
}

INSTANTIATE_TEST_SUITE_P(modules, ladder_test, testing::ValuesIn(all_modules()), name_row);

// The secret scene.

class secret_scene_test : public ladder_test {};

TEST_P(secret_scene_test, everything_is_refused_before_anything_else_is_asked) {
    for (const words& rest : std::vector<words>{{}, {"-h"}, {"--help"}, {"-L"}, {"on"}, {"off"}, {"-A"}, {"-x"}}) {
        expect_ladder_start(GetParam().shape, {1, 0, 0, 2, 1});
        EXPECT_EQ(run_with(rest), (call_result{0, "涉密场景下禁止使用通用命令行工具!\n"}));
    }
}

TEST_P(secret_scene_test, any_other_answer_is_no_secret_scene) {
    for (const int answer : {0, 2, -1}) {
        expect_ladder_start(GetParam().shape, {answer, 0, 0, 2, 1});
        EXPECT_EQ(run_with({}), help_with(0)) << answer;
    }
}

INSTANTIATE_TEST_SUITE_P(modules, secret_scene_test,
                         testing::ValuesIn(modules_with([](const auto& row) { return row.shape.has_secret_scene; })),
                         name_row);

// On and off.

class switch_test : public ladder_test {};

/// The states in which a module can be found: framework, module.
constexpr std::pair<int, int> all_states[] = {{0, 0}, {0, 1}, {2, 0}, {2, 1}, {2, 2}, {4, 0}, {4, 1}, {3, 7}};

TEST_P(switch_test, on_switches_in_every_state) {
    for (const auto& [framework, module] : all_states) {
        expect_ladder_to_states(GetParam().shape, {0, 0, 0, framework, module});
        expect_switched(GetParam().switched_on, 1);
        EXPECT_EQ(run_with({"on"}), (call_result{0, ""})) << framework << module;
    }
}

TEST_P(switch_test, on_returns_what_the_switch_returned) {
    for (const int result : {-1, 5}) {
        expect_ladder_to_states(GetParam().shape);
        EXPECT_CALL(watcher, set_module_status(GetParam().switched_on[0], 1)).WillOnce(Return(result));
        EXPECT_EQ(run_with({"on"}), (call_result{result, ""}));
    }
}

TEST_P(switch_test, off_switches_whatever_the_module_s_state_while_the_framework_is_on) {
    for (const auto& [framework, module] : all_states) {
        if (framework != 0) {
            expect_ladder_to_states(GetParam().shape, {0, 0, 0, framework, module});
            expect_switched(GetParam().switched_off, 0);
            EXPECT_EQ(run_with({"off"}), (call_result{0, ""})) << framework << module;
        }
    }
}

TEST_P(switch_test, off_returns_a_failure_of_the_switch) {
    expect_ladder_to_states(GetParam().shape);
    EXPECT_CALL(watcher, set_module_status(GetParam().switched_off[0], 0)).WillOnce(Return(-1));
    EXPECT_EQ(run_with({"off"}), (call_result{-1, ""}));
}

TEST_P(switch_test, off_switches_nothing_while_the_framework_is_off) {
    for (const int module : {0, 1}) {
        expect_ladder_to_states(GetParam().shape, {0, 0, 0, 0, module});
        EXPECT_EQ(run_with({"off"}), (call_result{0, "orvex未开启!\n"})) << module;
    }
}

TEST_P(switch_test, on_and_off_with_a_word_behind_them_are_no_switch) {
    for (const char* word : {"on", "off"}) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with({word, "extra"}), help_with(0)) << word;
    }
}

TEST_P(switch_test, on_and_off_in_other_letters_are_no_switch) {
    for (const char* word : {"On", "OFF", "on ", "offs"}) {
        expect_ladder(GetParam().shape);
        EXPECT_EQ(run_with({word}), help_with(0)) << word;
    }
}

INSTANTIATE_TEST_SUITE_P(modules, switch_test,
                         testing::ValuesIn(modules_with([](const auto& row) { return !row.switched_on.empty(); })),
                         name_row);

// The gate.

class gate_test : public ladder_test {};

/// The states in which a module counts as off: framework, module.
constexpr std::pair<int, int> off_states[] = {{0, 0}, {0, 1}, {0, 2}, {2, 0}, {4, 0}, {3, 0}};

TEST_P(gate_test, while_it_is_off_all_but_the_help_is_stopped) {
    for (const auto& [framework, module] : off_states) {
        for (const words& rest : std::vector<words>{{"-L"},
                                                    {"--list"},
                                                    {"-A"},
                                                    {"-x"},
                                                    {"foo"},
                                                    {""},
                                                    {"--hel"},
                                                    {"on", "extra"},
                                                    {"off", "extra"},
                                                    {"foo", "-h"}}) {
            expect_ladder_to_states(GetParam().shape, {0, 0, 0, framework, module});
            EXPECT_EQ(run_with(rest), (call_result{0, GetParam().off_line})) << framework << module << rest[0];
        }
    }
}

TEST_P(gate_test, while_it_is_off_the_help_is_given) {
    for (const auto& [framework, module] : off_states) {
        for (const words& rest : std::vector<words>{{"-h"}, {"--help"}, {"-h", "-x"}}) {
            expect_ladder_to_states(GetParam().shape, {0, 0, 0, framework, module});
            EXPECT_EQ(run_with(rest), help_with(0)) << framework << module << rest[0];
        }
    }
}

TEST_P(gate_test, the_listing_of_a_module_that_is_off_is_stopped_without_rights_too) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder_to_states(GetParam().shape, {0, 1000, 0, 2, 0});
        EXPECT_EQ(run_with({word}), (call_result{0, GetParam().off_line})) << word;
    }
}

TEST_P(gate_test, every_other_state_counts_as_on) {
    for (const auto& [framework, module] : {std::pair(2, 1), std::pair(2, 2), std::pair(4, 1), std::pair(4, 2),
                                            std::pair(3, 1), std::pair(2, 7), std::pair(-1, -1)}) {
        expect_ladder(GetParam().shape, {0, 0, 0, framework, module});
        EXPECT_EQ(run_with({"foo"}), help_with(0)) << framework << module;
    }
}

INSTANTIATE_TEST_SUITE_P(modules, gate_test,
                         testing::ValuesIn(modules_with([](const auto& row) { return row.off_line != nullptr; })),
                         name_row);

}  // namespace
