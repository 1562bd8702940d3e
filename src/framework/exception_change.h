// SPDX-License-Identifier: Apache-2.0
// What `file` and `proc` share in changing the exception programs of a protected object.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "framework/module_base.h"
#include "framework/owned.h"

/// The words of one way to name the protected object.
struct exception_words {
    const char* tag;
    const char* function;
    /// In front of the object in the lines for an exception that is in the wanted state already.
    const char* object_head;
    const char* absent_middle;
    const char* not_protected_tail;
    const char* add_failure_head;
    const char* remove_failure_head;
    const char* add_log;
    const char* remove_log;
};

/// The protected object in the forms in which lines and log show it.
struct shown_object {
    /// In the lines for an exception that is in the wanted state already.
    std::string wanted_state;
    /// In the line for an object that is not protected.
    std::string not_protected;
    /// In the lines of a failed call.
    std::string failure;
    /// In the log.
    std::string log;
};

/// Tells whether one of `pkgs` is not installed, with a line for the first such one.
bool refuse_missing_pkgs(COrvexBase& module, const std::vector<std::string>& pkgs);

/// Returns copies of the exceptions that the call has to change. Empty ones were refused before and are skipped; one in
/// the wanted state already, as `is_present` tells, is skipped with a line.
text_batch choose_exceptions(const exception_words& words, const shown_object& object,
                             const std::vector<std::string>& exceptions, int action,
                             const std::function<bool(const std::string&)>& is_present);

/// Reports the result `ret` of the library's call, with a line and, but for an object that is not protected at an add,
/// a log record. `exceptions` is the user's whole argument. Returns `ret`.
int report_exception_change(const exception_words& words, const shown_object& object, const std::string& exceptions,
                            int action, int ret);
