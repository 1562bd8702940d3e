// SPDX-License-Identifier: Apache-2.0
// What keeps a change from being expressed in commands of orvex_policy, found before the first one runs.
#pragma once

#include <string>
#include <vector>

#include "state/differences.h"

namespace state {

/// Returns a line for each part of the differences `all` that no command brings about, each with its place in the
/// document. The host is asked: for paths, packages and what owns a program.
std::vector<std::string> find_obstacles(const policy& host, const policy& wanted, const differences& all);

/// Tells whether the program `path` goes with its own network policy when that of its package is asked for again: the
/// package that owns it has one, and keeps it.
bool is_taken_over(const policy& host, const differences& all, const std::string& path);

}  // namespace state
