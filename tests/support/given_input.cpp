// SPDX-License-Identifier: Apache-2.0
#include "support/given_input.h"

#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace {

void forget_what_was_read() {
    __fpurge(stdin);
    std::clearerr(stdin);
}

}  // namespace

given_input::given_input(const std::string& text) : old_place_(dup(STDIN_FILENO)) {
    int ends[2];
    if (pipe(ends) != 0 || write(ends[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::system_error(errno, std::generic_category(), "giving standard input");
    }
    static_cast<void>(dup2(ends[0], STDIN_FILENO));
    static_cast<void>(close(ends[0]));
    static_cast<void>(close(ends[1]));
    forget_what_was_read();
}

given_input::~given_input() {
    // A test program may be started without a standard input.
    static_cast<void>(old_place_ < 0 ? close(STDIN_FILENO) : dup2(old_place_, STDIN_FILENO));
    static_cast<void>(close(old_place_));
    forget_what_was_read();
}
