// SPDX-License-Identifier: Apache-2.0
// What `file` and `proc` share in changing the exception programs of a protected object.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/failure_log.h"
#include "framework/module_base.h"
#include "framework/owned.h"

/// The words of one way to name the protected object.
struct exception_words {
    log_source source;
    /// In front of the object in the lines for an exception that needs no change.
    const char* object_head;
    const char* absent_middle;
    const char* not_protected_tail;
    const char* add_failure_head;
    const char* remove_failure_head;
    log_format<const char*, const char*, int> add_log;
    log_format<const char*, const char*, int> remove_log;
};

/// The protected object in the forms in which lines and log show it.
struct shown_object {
    /// In the lines for an exception that needs no change.
    std::string needless;
    /// In the line for an object that is not protected.
    std::string not_protected;
    /// In the lines of a failed call.
    std::string failure;
    /// In the log.
    std::string log;
};

/// Refuses a list of packages with one that is not installed, with a line for the first such one.
bool refuse_missing_pkgs(COrvexBase& module, const std::vector<std::string>& pkgs);

/// What a user wants changed.
struct exception_request {
    /// The exceptions as resolved. An empty one was refused before.
    std::vector<std::string> exceptions;
    /// The user's whole argument, for lines and log.
    std::string argument;
    int action;
};

/// Changes the exceptions of a protected object. One that needs no change, as `is_present` tells, is left out with a
/// line; for the others `call` is made once, and its result is reported: by a line and, but for an
/// object that is not protected at an add, by a log record. Returns that result, or 0 where there was nothing to call
/// for.
int change_exceptions(const exception_words& words, const shown_object& object, const exception_request& request,
                      const std::function<bool(const std::string& exception)>& is_present,
                      const std::function<int(text_batch& exceptions)>& call);
