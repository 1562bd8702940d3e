// SPDX-License-Identifier: Apache-2.0
// The step in which `file` and `proc` change the service library's protection lists.
#pragma once

#include <cstdint>

#include "framework/action.h"
#include "framework/output.h"
#include "service/log.h"
#include "service/object_kind.h"

/// The calls and the words of one kind of protected object, given to the library as `Element`: a path or name, or a
/// process id.
template <class Element>
struct protection_words {
    const char* tag;
    const char* function;
    int (*add)(Element* elements, std::int64_t count);
    const char* add_failure;
    const char* add_log;
    int (*remove)(Element* elements, std::int64_t count);
    const char* remove_failure;
    const char* remove_log;
    /// Drops all exceptions of one object.
    int (*clear)(Element element);
    const char* clear_failure_head;
    const char* clear_log;
};

/// Drops the exceptions of each object that was taken off the list. A failure is told and does not stop the others.
/// Returns what the last call returned: an earlier failure is not remembered, and a last -3, which is no failure, comes
/// back as it is.
template <class Element>
int clear_exceptions(const protection_words<Element>& words, const Element* elements, int count) {
    int ret = 0;
    for (int i = 0; i < count; ++i) {
        ret = words.clear(elements[i]);
        if (ret != 0 && ret != orvex_result_not_protected) {
            print_line(words.clear_failure_head, elements[i], "]的所有例外程序失败!");
            // A process id goes out as a number although its format says %s; format and argument are meant to stay.
            orvex_log(orvex_log_level_failure, words.tag, words.function, words.clear_log, elements[i], ret);
        }
    }
    return ret;
}

/// Adds all accepted objects in one call, or removes them in one call and drops their exceptions. `argument` is the
/// user's whole argument, for the log. With no object there is no call. Returns 0 or the library's own number.
template <class Element>
int change_protection(const protection_words<Element>& words, int action, const char* argument, Element* elements,
                      int count) {
    if (count == 0) {
        return 0;
    }
    const bool is_add = action == action_add;
    const int ret = is_add ? words.add(elements, count) : words.remove(elements, count);
    if (ret != 0) {
        print_line(is_add ? words.add_failure : words.remove_failure);
        orvex_log(orvex_log_level_failure, words.tag, words.function, is_add ? words.add_log : words.remove_log,
                  argument, ret);
        return ret;
    }
    return is_add ? 0 : clear_exceptions(words, elements, count);
}
