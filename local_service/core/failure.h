// SPDX-License-Identifier: Apache-2.0
// How a call of the service library fails: by an exception inside, by a number or a null pointer at the C border.
#pragma once

#include <stdexcept>
#include <string>
#include <type_traits>

#include "core/store.h"

namespace local_service {

/// The number of a failure that has no number of its own.
inline constexpr int result_failed = -1;

/// A call that refuses or cannot do what it was asked for. The text is for people.
class failure : public std::runtime_error {
public:
    explicit failure(const std::string& text, int code = result_failed);
    failure(const failure&) = default;
    failure& operator=(const failure&) = default;
    ~failure() override;

    /// The number that the C function returns.
    int code() const noexcept { return code_; }

private:
    int code_;
};

/// Throws a failure with the number for missing rights unless the caller is root or the security administrator.
void require_rights();

/// Returns the record of the last failure, 260 bytes and a text. It belongs to the library.
unsigned char* error_record() noexcept;

/// To be called while an exception is handled: keeps its text in the error record and returns the number for the
/// caller. What is no refusal, but a fault of the stand-in or of its database, goes to the log as well where that is
/// possible.
int handle_failure(const char* function) noexcept;

/// Runs `work` for the C function `function` and returns its result. No exception leaves: a failure becomes null where
/// the result is a pointer, else the failure's number.
template <class Work>
auto guard(const char* function, Work work) noexcept -> decltype(work()) {
    try {
        return work();
    } catch (...) {
        const int code = handle_failure(function);
        if constexpr (std::is_pointer_v<decltype(work())>) {
            return nullptr;
        } else {
            return code;
        }
    }
}

/// Runs `work`, which changes the store, for the C function `function`: asks for the caller's rights first and makes
/// one transaction of the whole. Returns 0, or the failure's number with nothing changed.
template <class Work>
int guard_change(const char* function, Work work) noexcept {
    return guard(function, [&] {
        require_rights();
        transaction whole;
        work();
        whole.commit();
        return 0;
    });
}

}  // namespace local_service
