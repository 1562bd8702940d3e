// SPDX-License-Identifier: Apache-2.0
// liborvex_log: the log as callers write it.
#include "core/log.h"

#include <cstdarg>

#include "core/store.h"
#include "core/trace.h"
#include "families/log_message.h"
#include "service/log.h"

namespace {

std::string text_or_nothing(const char* text) {
    return text == nullptr ? "" : text;
}

}  // namespace

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is variadic.
void orvex_log(int level, const char* tag, const char* function, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    try {
        const std::string message = local_service::render_message(text_or_nothing(format), arguments);
        local_service::trace(__func__,
                             {{"level", level}, {"tag", tag}, {"function", function}, {"message", message.c_str()}});
        local_service::require_room();
        local_service::write_log({level, text_or_nothing(tag), text_or_nothing(function), message});
    } catch (...) {
        // A log that cannot be written is no reason to disturb whoever had something to say.
    }
    va_end(arguments);
}
