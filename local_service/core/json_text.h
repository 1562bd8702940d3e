// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace local_service {

/// Tells whether `text` is UTF-8 from its first byte to its last.
bool is_utf8(std::string_view text);

/// Returns the bytes of `text` as two hexadecimal digits each.
std::string hex_digits(std::string_view text);

/// Returns `text` as a JSON value: a string, or, where it is no UTF-8, which JSON cannot hold, {"hex": "<its bytes>"}.
std::string json_text(std::string_view text);

}  // namespace local_service
