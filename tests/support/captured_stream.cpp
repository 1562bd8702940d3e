// SPDX-License-Identifier: Apache-2.0
#include "support/captured_stream.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

/// Returns `result`, or throws where it tells of a failure.
template <class Number>
Number check(Number result) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), "capturing a stream");
    }
    return result;
}

}  // namespace

captured_stream::captured_stream(FILE* stream)
    : stream_(stream), file_(fdopen(memfd_create("captured stream", MFD_CLOEXEC), "w+")) {
    check(file_ == nullptr ? -1 : 0);
    check(std::fflush(stream_));
    old_place_ = check(dup(fileno(stream_)));
    check(dup2(fileno(file_.get()), fileno(stream_)));
}

captured_stream::~captured_stream() {
    static_cast<void>(std::fflush(stream_));
    static_cast<void>(dup2(old_place_, fileno(stream_)));
    static_cast<void>(close(old_place_));
}

std::string captured_stream::read_flushed() const {
    std::string text;
    char block[4096];
    ssize_t length = 0;
    while ((length = check(pread(fileno(file_.get()), block, sizeof(block), static_cast<off_t>(text.size())))) > 0) {
        text.append(block, static_cast<std::size_t>(length));
    }
    return text;
}

std::string captured_stream::read_all() const {
    check(std::fflush(stream_));
    return read_flushed();
}
