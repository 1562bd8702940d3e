// SPDX-License-Identifier: Apache-2.0
// How a call of the service library fails: by an exception inside, by a number or a null pointer at the C border.
#pragma once

#include <stdexcept>
#include <string>

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
/// possible; a store that cannot be used also makes a line on standard error, once in a process.
int handle_failure(const char* function) noexcept;

}  // namespace local_service
