// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "state/plan.h"

namespace state {

struct command_result {
    /// All that it printed.
    std::string output;
    /// How it ended, where that was not with 0.
    std::string failure;
};

/// Runs orvex_policy, the one beside this program, with no input. Throws a failure where it cannot be started.
command_result run_command(const command& words);

}  // namespace state
