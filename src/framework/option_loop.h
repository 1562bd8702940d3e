// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <getopt.h>

#include <optional>

#include "framework/action.h"
#include "framework/module_base.h"

/// What a step of a run says: a value ends the run and is its result; without one the run goes on.
using run_end = std::optional<int>;

/// What a module's command line may hold.
struct module_options {
    /// The short options, as `getopt_long` takes them.
    const char* letters;
    /// The long options, as `getopt_long` takes them: without flag pointers, ended by a row of zeros.
    const option* long_options;
    /// The line in front of the help when an option is unknown or lacks its value.
    const char* invalid_line = "无效的参数";
};

/// Takes the options that are a module's own.
class option_taker {
public:
    option_taker() = default;
    option_taker(const option_taker&) = delete;
    option_taker& operator=(const option_taker&) = delete;
    virtual ~option_taker() = default;

    /// Takes one option: `letter` as the tables give it, `value` its argument or null.
    virtual run_end take(int letter, const char* value) = 0;
};

/// What the options came to: the run's end or, without one, the command.
struct option_result {
    run_end end;
    int action = action_none;
};

/// Reads the unchanged command line, `argv[1]` first; words that are no options are skipped. `-h` prints the help and
/// ends the run; `-A`, `-U`, `-D` and `-L` are the command, and a second one ends the run with the help; all other
/// options go to `taker`, in their order. getopt's own diagnostics stay on.
option_result read_options(COrvexBase& module, const module_options& options, option_taker& taker, int argc,
                           char** argv);

/// Ends a run whose command line lacks something: prints `line` and the help. Returns -1.
int end_with_usage(COrvexBase& module, const char* line);
