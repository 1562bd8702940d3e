// SPDX-License-Identifier: Apache-2.0
// The one way to the framework's log: records of calls that should have changed something and failed.
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "service/log.h"

/// A format of the log for arguments of these types. Where it is written the compiler checks that it has one conversion
/// for each of them, in their order: `%d` for a number, `%s` for a text.
template <class... Arguments>
class log_format {
public:
    // Implicit, so that a format is written as the text that it is.
    consteval log_format(const char* text) : text_(text) {
        if (!fits(text)) {
            throw "the format does not fit its arguments";
        }
    }

    /// The door for a format that does not fit its arguments and is meant to stay as it is.
    static consteval log_format unchecked(const char* text) { return log_format(text, meant_so()); }

    constexpr const char* text() const { return text_; }

    /// Tells whether `text` is a format for arguments of these types.
    static constexpr bool fits(std::string_view text) {
        constexpr char wanted[] = {(std::is_integral_v<Arguments> ? 'd' : 's')..., '\0'};
        std::size_t next = 0;
        for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
            if (at + 1 == text.size() || text[at + 1] != wanted[next]) {
                return false;
            }
            ++next;
        }
        return wanted[next] == '\0';
    }

private:
    struct meant_so {};

    consteval log_format(const char* text, meant_so /*door*/) : text_(text) {}

    const char* text_;
};

/// Who writes a record: the tag of the subsystem, and the member that failed.
struct log_source {
    const char* tag;
    const char* function;
};

/// Writes a record of a failed call.
template <class... Arguments>
void log_failure(const log_source& source, log_format<std::type_identity_t<Arguments>...> format,
                 Arguments... arguments) {
    orvex_log(orvex_log_level_failure, source.tag, source.function, format.text(), arguments...);
}
