// SPDX-License-Identifier: Apache-2.0
#include "state/text.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace state {
namespace {

constexpr std::string_view safe_letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./-";

/// A character of a text, or a byte of it that is no part of one.
struct piece {
    std::string_view bytes;
    bool is_character;
    bool is_printable;
};

piece first_piece(std::string_view text) {
    const gunichar code = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    if (g_unichar_validate(code) == 0) {
        return {text.substr(0, 1), false, false};
    }
    const auto length = static_cast<std::size_t>(g_unichar_to_utf8(code, nullptr));
    return {text.substr(0, length), true, g_unichar_isprint(code) != 0};
}

/// Shows `look` the pieces of `text` from its first to its last.
template <class Look>
void for_each_piece(std::string_view text, Look look) {
    while (!text.empty()) {
        const piece next = first_piece(text);
        look(next);
        text.remove_prefix(next.bytes.size());
    }
}

void append_hex(std::string& target, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (const char letter : bytes) {
        const auto byte = static_cast<unsigned char>(letter);
        target.append({'\\', 'x', digits[byte / 16], digits[byte % 16]});
    }
}

bool is_printable(std::string_view text) {
    bool is_all = true;
    for_each_piece(text, [&](const piece& next) { is_all = is_all && next.is_printable; });
    return is_all;
}

/// For bash, zsh and the shells that follow the newest POSIX.
std::string quote_for_new_shells(std::string_view word) {
    std::string quoted = "$'";
    for_each_piece(word, [&](const piece& next) {
        if (next.is_printable) {
            quoted += next.bytes == "'" || next.bytes == "\\" ? "\\" : "";
            quoted += next.bytes;
            return;
        }
        for (const char letter : next.bytes) {
            const auto byte = static_cast<unsigned char>(letter);
            // Three digits always, so that a digit behind them is none of theirs.
            quoted.append({'\\', static_cast<char>('0' + byte / 64), static_cast<char>('0' + byte / 8 % 8),
                           static_cast<char>('0' + byte % 8)});
        }
    });
    return quoted + "'";
}

}  // namespace

std::string escape_name(std::string_view name) {
    std::string text;
    for_each_piece(name, [&](const piece& next) {
        if (!next.is_character) {
            append_hex(text, next.bytes);
        } else {
            text += next.bytes == "\\" ? "\\\\" : next.bytes;
        }
    });
    return text;
}

std::optional<std::string> unescape_name(std::string_view text) {
    std::string name;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find('\\'), text.size());
        name += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.starts_with("\\\\")) {
            name += '\\';
            text.remove_prefix(2);
        } else if (!text.empty()) {
            unsigned char byte = 0;
            if (text.size() < 4 || text[1] != 'x' ||
                std::from_chars(text.data() + 2, text.data() + 4, byte, 16).ptr != text.data() + 4) {
                return std::nullopt;
            }
            name += static_cast<char>(byte);
            text.remove_prefix(4);
        }
    }
    return name;
}

std::string quote_word(std::string_view word) {
    if (!is_printable(word)) {
        return quote_for_new_shells(word);
    }
    if (!word.empty() && word.find_first_not_of(safe_letters) == std::string_view::npos) {
        return std::string(word);
    }
    std::string quoted = "'";
    for (const char letter : word) {
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    }
    return quoted + "'";
}

std::string make_visible(std::string_view text) {
    std::string visible;
    for_each_piece(text, [&](const piece& next) {
        if (next.is_printable || next.bytes == "\t") {
            visible += next.bytes;
        } else {
            append_hex(visible, next.bytes);
        }
    });
    return visible;
}

}  // namespace state
