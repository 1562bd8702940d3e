// SPDX-License-Identifier: Apache-2.0
// The commands. Each returns the exit value, and throws a failure for an error.
#pragma once

#include <string>

namespace state {

/// What the user wants, as he typed it.
struct arguments {
    /// The document; "-" is standard input.
    std::string document;
    /// Where a dump goes; empty for standard output.
    std::string output;
    bool is_json = false;
    bool keeps_others = false;
};

inline constexpr int exit_done = 0;
/// `diff` found something, or a change of `apply` did not come about.
inline constexpr int exit_different = 1;
inline constexpr int exit_error = 2;
inline constexpr int exit_restart_needed = 3;

/// Prints the policy of this host, or writes it to a file.
int dump_policy(const arguments& given);

/// Tells what differs between this host and the document.
int show_differences(const arguments& given);

/// Prints the commands that make this host what the document says.
int show_plan(const arguments& given);

/// Runs these commands, and looks whether the host is then what the document says.
int apply_document(const arguments& given);

}  // namespace state
