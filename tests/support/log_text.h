// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>
#include <string>

/// The finished text of a log record. A few formats of the program do not fit their arguments, on purpose; for these it
/// is the arguments, each in square brackets.
std::string render_log_text(const char* format, va_list arguments);
