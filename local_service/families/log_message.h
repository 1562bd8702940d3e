// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>
#include <string>

namespace local_service {

/// Returns the printf format `format` with the variable arguments in place of its conversions, at most 64 KiB. Nothing
/// is believed of the arguments: a text that is none is shown as the number it is. Conversions that are unknown stand
/// as they are and take no argument.
std::string render_message(const std::string& format, std::va_list arguments);

}  // namespace local_service
