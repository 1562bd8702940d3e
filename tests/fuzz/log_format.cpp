// SPDX-License-Identifier: Apache-2.0
// The stand-in's reader of log formats. The first 16 bytes are the arguments, numbers of eight bytes; the rest is the
// format.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "families/log_message.h"
#include "fuzz_target.h"

namespace {

constexpr std::size_t message_limit = 65536;
/// A conversion takes three arguments at the most, or the room of five: two stars and a long double. So that many
/// cannot ask for more than there are, beyond which nothing is promised but what printf does.
constexpr std::ptrdiff_t most_conversions = 8;

using number = unsigned long long;
using numbers = std::array<number, 2>;

std::string render(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string message = local_service::render_message(format, arguments);
    va_end(arguments);
    return message;
}

/// Gives any format more arguments than it can take.
std::string render_any(const std::string& format, number a, number b) {
    return render(format.c_str(), a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a,
                  b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a, b);
}

void try_any_format(const std::string& format, const numbers& given) {
    if (std::count(format.begin(), format.end(), '%') > most_conversions) {
        return;
    }
    const std::string message = render_any(format, given[0], given[1]);
    require(message.size() <= message_limit, "a message is longer than its limit");
    if (format.find('%') == std::string::npos) {
        require(message == format, "a format without conversions is not its message");
    }
}

void try_text(const std::string& text) {
    require(render("%s", text.c_str()) == text, "a text does not come back");
    require(render("<%s|%s>", text.c_str(), text.c_str()) == "<" + text + "|" + text + ">", "two texts were torn");
    std::string escaped;
    for (const char byte : text) {
        escaped += byte == '%' ? std::string("%%") : std::string(1, byte);
    }
    require(render(escaped.c_str()) == text, "an escaped text does not come back");
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// What printf makes of a format that fits its argument.
std::string print(const std::string& format, number argument) {
    std::array<char, 8192> text{};
    const int size = std::snprintf(text.data(), text.size(), format.c_str(), argument);
    return {text.data(), static_cast<std::size_t>(size)};
}
#pragma GCC diagnostic pop

/// Flags, a width and a precision from the text, within the bounds that the stand-in keeps.
std::string take_fields(const std::string& text) {
    const std::string flags = text.substr(0, text.find_first_not_of("-+ #0"));
    const std::string rest = text.substr(flags.size());
    const std::string digits = rest.substr(0, std::min<std::size_t>(rest.find_first_not_of("0123456789"), 3));
    return flags + digits + (rest.size() > digits.size() && rest[digits.size()] == '.' ? ".7" : "");
}

void try_as_printf(const std::string& text, number argument) {
    const std::string fields = take_fields(text);
    for (const char* letter : {"llu", "lld", "llx", "llX", "llo", "ld", "zu", "hhd", "hu", "d", "u", "x", "c"}) {
        const std::string format = "%" + fields + letter;
        require(render(format.c_str(), argument) == print(format, argument), "another text than printf's");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    numbers given{};
    if (size < sizeof(given)) {
        return 0;
    }
    std::memcpy(given.data(), data, sizeof(given));
    const std::string format = text_of_input(data + sizeof(given), size - sizeof(given)).c_str();
    try_any_format(format, given);
    try_text(format);
    try_as_printf(format, given[0]);
    return 0;
}
