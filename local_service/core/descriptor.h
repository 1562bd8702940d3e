// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace local_service {

/// A file open for reading, closed at the end of its life. `number` is negative where the file cannot be opened, and
/// `errno` then says why. Opening never waits for the other end of a fifo.
class descriptor {
public:
    explicit descriptor(const std::string& path, int more_flags = 0)
        : number_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | more_flags)) {}
    descriptor(const descriptor&) = delete;
    descriptor& operator=(const descriptor&) = delete;
    ~descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }

    int number() const { return number_; }

private:
    int number_;
};

}  // namespace local_service
