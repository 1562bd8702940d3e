// SPDX-License-Identifier: Apache-2.0
// The one gate through which the service functions pass: here they fail on request, here they are traced, and no
// exception leaves.
#pragma once

#include <initializer_list>
#include <type_traits>

#include "core/failure.h"
#include "core/store.h"
#include "core/trace.h"
#include "core/wished_failure.h"

namespace local_service {

/// Writes a result as it is.
struct plain_result {
    template <class Result>
    void operator()(value_writer& out, const Result& result) const {
        out.write(result);
    }
};

/// Runs `work` for the C function `function`, called with `arguments`, and returns its result. A failure becomes null
/// where the result is a pointer, else the failure's number. `write_result` writes the result where calls are traced.
template <class Work, class WriteResult = plain_result>
auto guard(const char* function, std::initializer_list<argument> arguments, Work work,
           WriteResult write_result = {}) noexcept -> decltype(work()) {
    using result_type = decltype(work());
    result_type result{};
    try {
        fail_if_wished(function);
        result = work();
    } catch (...) {
        const int code = handle_failure(function);
        if constexpr (!std::is_pointer_v<result_type>) {
            result = code;
        }
    }
    if (is_traced()) {
        write_trace(function, arguments, {"result", [&](value_writer& out) { write_result(out, result); }});
    }
    return result;
}

/// Runs `work`, which changes the store, for the C function `function`: asks for the caller's rights first and makes
/// one transaction of the whole. Returns 0, or the failure's number with nothing changed.
template <class Work>
int guard_change(const char* function, std::initializer_list<argument> arguments, Work work) noexcept {
    return guard(function, arguments, [&] {
        require_rights();
        transaction whole;
        work();
        whole.commit();
        return 0;
    });
}

/// The same for a change that adds to the store.
template <class Work>
int guard_addition(const char* function, std::initializer_list<argument> arguments, Work work) noexcept {
    return guard_change(function, arguments, [&] {
        require_room();
        work();
    });
}

}  // namespace local_service
