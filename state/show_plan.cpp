// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "state/comparison.h"

namespace state {

int show_plan(const arguments& given) {
    const plan planned = make_plan(compare_with_document(given), given);
    for (const command& words : planned.commands) {
        std::cout << tell_command(words) << '\n';
    }
    if (!planned.needs_restart) {
        return exit_done;
    }
    std::cout.flush();
    tell_restart();
    return exit_restart_needed;
}

}  // namespace state
