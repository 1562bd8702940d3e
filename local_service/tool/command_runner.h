// SPDX-License-Identifier: Apache-2.0
// Commands that run on the stand-in.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace local_service {

/// Where and as whom a command runs.
struct run_place {
    /// The state directory; empty for the present one.
    std::string state;
    /// The user; nothing for the present one.
    std::optional<uid_t> user;
};

/// What is told of a command's calls.
struct trace_wish {
    bool is_json = false;
    /// The file to write to; empty for standard error.
    std::string file;
};

/// Becomes the command `words`, on these libraries. Throws a failure where it cannot; the place of a command that does
/// not exist is told by the exit value 127, that of one that cannot be executed by 126.
int run_command(const std::vector<std::string>& words, const run_place& place);

/// Becomes the command `words`, on these libraries and with each of its calls told as `wish` says.
int trace_command(const std::vector<std::string>& words, const trace_wish& wish);

}  // namespace local_service
