// SPDX-License-Identifier: Apache-2.0
// Service functions that fail because somebody wants to see what follows from it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace local_service {

/// The next calls of the function `call` are to fail.
struct failure_wish {
    std::string call;
    /// What they return; a call that returns a pointer gives null.
    int result;
    /// How many of them; nothing for all.
    std::optional<std::int64_t> times;
    /// How many calls work before.
    std::int64_t after;
    /// The text of the failure; empty for one that says that it was wanted.
    std::string error;
};

/// Throws a failure where the call `function` that is beginning is to fail. Costs next to nothing while no wish is
/// there; a wish of another process is noticed within ten milliseconds.
void fail_if_wished(const char* function);

/// Adds `wish` behind those that are there. Of several for one call, one counts after the other.
void add_failure_wish(const failure_wish& wish);

/// Returns the wishes that are not fulfilled yet, in the order of their turns.
std::vector<failure_wish> read_failure_wishes();

/// Drops all wishes.
void clear_failure_wishes();

}  // namespace local_service
