// SPDX-License-Identifier: Apache-2.0
#include "framework/option_loop.h"

#include <getopt.h>

#include <clocale>

#include "framework/action.h"
#include "framework/module_base.h"
#include "framework/output.h"

namespace {

/// Returns the action of a command letter, or `action_none` for any other letter.
int get_action(int letter) {
    switch (letter) {
        case 'A':
            return action_add;
        case 'U':
            return action_update;
        case 'D':
            return action_delete;
        case 'L':
            return action_list;
        default:
            return action_none;
    }
}

option_result end_with_help(COrvexBase& module, int value) {
    module.usage();
    return {.end = value};
}

/// Takes one option as `getopt_long` found it. `action` is that of the options before it.
option_result read_option(COrvexBase& module, const module_options& options, option_taker& taker, int letter,
                          int action) {
    if (letter == 'h') {
        return end_with_help(module, 0);
    }
    if (letter == '?') {
        return {.end = end_with_usage(module, options.invalid_line)};
    }
    if (const int wanted = get_action(letter); wanted != action_none) {
        // A second command letter gets the help and no message of its own.
        return action == action_none ? option_result{.end = {}, .action = wanted} : end_with_help(module, -1);
    }
    return {.end = letter == 0 ? run_end() : taker.take(letter, optarg), .action = action};
}

}  // namespace

option_result read_options(COrvexBase& module, const module_options& options, option_taker& taker, int argc,
                           char** argv) {
    static_cast<void>(std::setlocale(LC_ALL, ""));
    option_result result;
    int letter = 0;
    while (!result.end && (letter = getopt_long(argc, argv, options.letters, options.long_options, nullptr)) != -1) {
        result = read_option(module, options, taker, letter, result.action);
    }
    return result;
}

int end_with_usage(COrvexBase& module, const char* line) {
    print_line(line);
    module.usage();
    return -1;
}
