// SPDX-License-Identifier: Apache-2.0
// The commands. Each returns the exit value, and throws a failure for an error.
#pragma once

#include <string>

namespace state {

/// What the user wants, as he typed it.
struct arguments {
    /// Where a dump goes; empty for standard output.
    std::string output;
};

inline constexpr int exit_done = 0;
inline constexpr int exit_error = 2;

/// Prints the policy of this host, or writes it to a file.
int dump_policy(const arguments& given);

}  // namespace state
