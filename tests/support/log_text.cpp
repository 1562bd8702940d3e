// SPDX-License-Identifier: Apache-2.0
#include "support/log_text.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace {

/// A format that does not fit its arguments, and the arguments that come with it: 't' a text, 'n' a number.
struct misfit {
    std::string_view format;
    std::string_view arguments;
};

constexpr misfit misfits[] = {
    {"del proc ctl pid to all except failed, pid: %s, ret: %d", "nn"},
    {"add proc except failed, file = %s, except = &s, ret = %d", "ttn"},
    {"add proc except failed, pid = %s, except = &s, ret = %d", "ttn"},
    {"del proc except failed, file = %s, except = &s, ret = %d", "ttn"},
    {"del proc except failed, pid = %s, except = &s, ret = %d", "ttn"},
};

std::string list_arguments(std::string_view kinds, va_list arguments) {
    std::string text;
    for (const char kind : kinds) {
        text += '[';
        text += kind == 't' ? std::string(va_arg(arguments, const char*)) : std::to_string(va_arg(arguments, int));
        text += ']';
    }
    return text;
}

}  // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string render_log_text(const char* format, va_list arguments) {
    for (const misfit& entry : misfits) {
        if (entry.format == format) {
            return list_arguments(entry.arguments, arguments);
        }
    }
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    static_cast<void>(std::vsnprintf(text.data(), text.size(), format, again));
    va_end(again);
    return text.data();
}
#pragma GCC diagnostic pop
