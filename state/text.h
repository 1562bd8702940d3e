// SPDX-License-Identifier: Apache-2.0
// Names are bytes. These are the forms in which they stand in a document, in a shell's command line and on a terminal.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace state {

/// Returns `name` as UTF-8 text: a byte that is no part of a character becomes "\xHH", and a backslash is doubled.
std::string escape_name(std::string_view name);

/// Returns the name that `text` stands for, or nothing where a backslash begins neither of the two forms.
std::optional<std::string> unescape_name(std::string_view text);

/// Returns `word` quoted for a shell, where it needs that. What a terminal would not print stands as $'...'.
std::string quote_word(std::string_view word);

/// Returns the line `text` with "\xHH" for each byte that a terminal would not print, tabs left out.
std::string make_visible(std::string_view text);

}  // namespace state
