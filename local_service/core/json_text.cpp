// SPDX-License-Identifier: Apache-2.0
#include "core/json_text.h"

#include <array>
#include <cstddef>

namespace local_service {
namespace {

constexpr std::string_view digits = "0123456789abcdef";

/// A first byte, by the bits that it must have, how many bytes follow it, and the least code that needs so many.
struct utf8_form {
    unsigned mask;
    unsigned bits;
    std::size_t following;
    unsigned least_code;
};
constexpr std::array<utf8_form, 4> utf8_forms{{
    {0x80, 0x00, 0, 0x0},
    {0xE0, 0xC0, 1, 0x80},
    {0xF0, 0xE0, 2, 0x800},
    {0xF8, 0xF0, 3, 0x10000},
}};

unsigned byte_at(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

/// Returns the length of the character at the start of `text`, or 0 where there is none.
std::size_t character_length(std::string_view text) {
    for (const utf8_form& form : utf8_forms) {
        if ((byte_at(text, 0) & form.mask) != form.bits) {
            continue;
        }
        unsigned code = byte_at(text, 0) & ~form.mask;
        for (std::size_t index = 1; index <= form.following; ++index) {
            if (index >= text.size() || (byte_at(text, index) & 0xC0U) != 0x80U) {
                return 0;
            }
            code = code << 6U | (byte_at(text, index) & 0x3FU);
        }
        const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
        return code >= form.least_code && code <= 0x10FFFF && !is_surrogate ? form.following + 1 : 0;
    }
    return 0;
}

void append_escaped(std::string& target, char letter) {
    switch (letter) {
        case '"':
        case '\\':
            target.append({'\\', letter});
            return;
        case '\n':
            target += "\\n";
            return;
        case '\r':
            target += "\\r";
            return;
        case '\t':
            target += "\\t";
            return;
        default:
            break;
    }
    if (static_cast<unsigned char>(letter) < ' ') {
        target += "\\u00" + hex_digits({&letter, 1});
    } else {
        target += letter;
    }
}

}  // namespace

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string hex_digits(std::string_view text) {
    std::string all;
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        all.append({digits[byte / 16], digits[byte % 16]});
    }
    return all;
}

std::string json_text(std::string_view text) {
    if (!is_utf8(text)) {
        return R"({"hex": ")" + hex_digits(text) + R"("})";
    }
    std::string quoted = "\"";
    for (const char letter : text) {
        append_escaped(quoted, letter);
    }
    return quoted + '"';
}

}  // namespace local_service
