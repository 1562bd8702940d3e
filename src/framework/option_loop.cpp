// SPDX-License-Identifier: Apache-2.0
#include "framework/option_loop.h"

#include <clocale>

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

run_end set_action(COrvexBase& module, int wanted, int& action) {
    // A second command letter gets the help and no message of its own.
    if (action != action_none) {
        module.usage();
        return -1;
    }
    action = wanted;
    return std::nullopt;
}

}  // namespace

run_end read_options(COrvexBase& module, int argc, char** argv, const module_options& options, int& action,
                     const option_taker& take) {
    static_cast<void>(std::setlocale(LC_ALL, ""));
    action = action_none;

    int letter = 0;
    while ((letter = getopt_long(argc, argv, options.letters, options.words, nullptr)) != -1) {
        run_end end;
        if (letter == 'h') {
            module.usage();
            end = 0;
        } else if (letter == '?') {
            end = end_with_usage(module, options.invalid_line);
        } else if (const int wanted = get_action(letter); wanted != action_none) {
            end = set_action(module, wanted, action);
        } else if (letter != 0) {
            end = take(letter, optarg);
        }
        if (end) {
            return end;
        }
    }
    return std::nullopt;
}
