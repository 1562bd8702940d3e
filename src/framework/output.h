// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iostream>
// What can be printed brings its own header along.
// IWYU pragma: no_include <string>
// IWYU pragma: no_include <string_view>

/// Prints one line on standard output: the pieces side by side, a newline, a flush. Bytes go out as they are. A piece
/// that is a null C string writes nothing and leaves the stream failed, so that nothing more is printed in this run.
template <class... Pieces>
void print_line(const Pieces&... pieces) {
    (std::cout << ... << pieces) << std::endl;
}
