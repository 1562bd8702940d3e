// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <getopt.h>

#include <functional>

#include "framework/action.h"
#include "framework/module_base.h"
#include "framework/run_rungs.h"

/// What a module's command line may hold.
struct module_options {
    /// The short options, as `getopt_long` takes them.
    const char* letters;
    /// The long options, as `getopt_long` takes them: without flag pointers, ended by a row of zeros.
    const option* words;
    /// The line in front of the help when an option is unknown or lacks its value.
    const char* invalid_line;
};

/// Takes one option that is the module's own: `letter` as the tables give it, `value` its argument or null. A value
/// returned ends the run.
using option_taker = std::function<run_end(int letter, const char* value)>;

/// Reads the unchanged command line, `argv[1]` first; words that are no options are skipped. `-h` prints the help and
/// ends the run; `-A`, `-U`, `-D` and `-L` set `action`, and a second one ends the run with the help; all other options
/// go to `take`, in their order. getopt's own diagnostics stay on.
run_end read_options(COrvexBase& module, int argc, char** argv, const module_options& options, int& action,
                     const option_taker& take);
