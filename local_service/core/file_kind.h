// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace local_service {

/// Kinds of file. Execution control manages those up to `script`.
enum class file_kind : int {
    unreadable = -1,
    program = 0,
    shared_object = 1,
    kernel_module = 2,
    script = 3,
    other_file = 4,
    symbolic_link = 5,
    directory = 6,
    character_device = 7,
    block_device = 8,
    fifo = 9,
    socket = 10,
};

/// Tells the kind of `path` by what it holds, and not by its rights; a link is a link. Reads no more than the headers.
file_kind read_file_kind(const std::string& path);

/// Tells whether execution control manages files of the kind `kind`.
constexpr bool is_controlled(file_kind kind) {
    return kind >= file_kind::program && kind <= file_kind::script;
}

}  // namespace local_service
