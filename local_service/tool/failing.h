// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace local_service {

/// A wish as it is typed.
struct typed_wish {
    std::string call;
    /// A number, or "null".
    std::string result;
    std::optional<std::int64_t> times;
    std::int64_t after = 0;
    std::string error;
};

/// Lets the next calls of a function fail. Throws a usage error for a function that does not exist, and for a result
/// that it cannot have.
void wish_failure(const typed_wish& wish);

/// Prints the wishes that are not fulfilled yet, each as it could be typed.
void print_failure_wishes();

}  // namespace local_service
