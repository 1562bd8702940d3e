// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <memory>
#include <string>

/// Catches what goes to standard output or standard error, by whatever way, while the object lives: its descriptor
/// leads to a file of its own.
class captured_stream {
public:
    /// `stream` is `stdout` or `stderr`.
    explicit captured_stream(FILE* stream);
    captured_stream(const captured_stream&) = delete;
    captured_stream& operator=(const captured_stream&) = delete;

    /// The stream leads to its old place again.
    ~captured_stream();

    /// What has reached the descriptor until now. What the stream still holds back is not in it.
    std::string read_flushed() const;

    /// All that was written until now.
    std::string read_all() const;

private:
    struct file_closer {
        void operator()(FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
    };

    FILE* stream_;
    std::unique_ptr<FILE, file_closer> file_;
    int old_place_ = -1;
};
