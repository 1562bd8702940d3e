// SPDX-License-Identifier: Apache-2.0
// Numbers that the exception calls of file and process protection share.
#pragma once

#include <cstdint>

/// Kinds of object, protected or excepted.
inline constexpr std::int32_t orvex_kind_file = 1;
inline constexpr std::int32_t orvex_kind_dir = 2;
inline constexpr std::int32_t orvex_kind_pkg = 3;

/// Result of an exception call whose object is not on the protection list, or has nothing to clear.
inline constexpr int orvex_result_not_protected = -3;
