// SPDX-License-Identifier: Apache-2.0
// The commands of orvex_policy that make a host what a document wants.
#pragma once

#include <string>
#include <vector>

#include "state/differences.h"

namespace state {

/// The words of a command behind the program's name.
using command = std::vector<std::string>;

struct plan {
    /// In the order in which they have to run.
    std::vector<command> commands;
    /// Whether this is all that can be done before the machine is restarted.
    bool needs_restart = false;
};

/// Plans the way from `host` to what the document `wanted` says; `all` is what differs. No obstacle may be in it.
plan make_plan(const policy& host, const policy& wanted, const differences& all);

/// Returns the command as it is typed in a shell.
std::string tell_command(const command& words);

}  // namespace state
