// SPDX-License-Identifier: Apache-2.0
// The framework's log and the record of its last failure.
#pragma once

#include <cstddef>

/// The one level at which this program writes to the framework's log: a call that should have changed something failed.
inline constexpr int orvex_log_level_failure = 18;

/// What the library remembers of its last failure. Only `text` is for the program; the bytes before it are the
/// library's own.
struct orvex_error_record {
    unsigned char reserved[260];
    /// NUL-terminated and as long as it is: the array's length here says nothing about it.
    char text[1];
};
static_assert(offsetof(orvex_error_record, text) == 260, "layout shared with the service library");

extern "C" {

/// Writes one record to the framework's log.
/// `level` is always `orvex_log_level_failure`, `tag` names the subsystem, `function` the member that failed, `format`
/// is a printf format followed by its arguments. All texts are borrowed for the call.
/// Deliberately without the compiler's printf attribute: a few callers pass arguments that do not fit their format, and
/// those records are to reach the log as they are.
void orvex_log(int level, const char* tag, const char* function, const char* format, ...);

/// Returns the record of the library's last failure. It stays the library's own and is not given back.
orvex_error_record* orvex_get_error(void);
}
