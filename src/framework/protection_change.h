// SPDX-License-Identifier: Apache-2.0
// The step in which `file` and `proc` change the service library's protection lists.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "framework/action.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "service/object_kind.h"

/// The calls and the words of one kind of protected object, given to the library as `Element`: a path or name, or a
/// process id.
template <class Element>
struct protection_words {
    log_source source;
    int (*add)(Element* elements, std::int64_t count);
    const char* add_failure;
    log_format<const char*, int> add_log;
    int (*remove)(Element* elements, std::int64_t count);
    const char* remove_failure;
    log_format<const char*, int> remove_log;
    /// Drops all exceptions of one object.
    int (*clear)(Element element);
    const char* clear_failure_head;
    log_format<Element, int> clear_log;
};

/// Drops the exceptions of each object that was taken off the list. A failure is told and does not stop the others.
/// Returns what the last call returned: an earlier failure is not remembered, and a last -3, which is no failure, comes
/// back as it is.
template <class Element>
int clear_exceptions(const protection_words<Element>& words, std::span<Element> elements) {
    int ret = 0;
    for (const Element element : elements) {
        ret = words.clear(element);
        if (ret != 0 && ret != orvex_result_not_protected) {
            print_line(words.clear_failure_head, element, "]的所有例外程序失败!");
            log_failure(words.source, words.clear_log, element, ret);
        }
    }
    return ret;
}

/// Adds all accepted objects in one call, or removes them in one call and drops their exceptions. `argument` is the
/// user's whole argument, for the log. With no object there is no call. Returns 0 or the library's own number.
template <class Element>
int change_protection(const protection_words<Element>& words, int action, const std::string& argument,
                      std::span<Element> elements) {
    if (elements.empty()) {
        return 0;
    }
    const bool is_add = action == action_add;
    const int ret = (is_add ? words.add : words.remove)(elements.data(), static_cast<int>(elements.size()));
    if (ret != 0) {
        print_line(is_add ? words.add_failure : words.remove_failure);
        log_failure(words.source, is_add ? words.add_log : words.remove_log, argument.c_str(), ret);
        return ret;
    }
    return is_add ? 0 : clear_exceptions(words, elements);
}
