// SPDX-License-Identifier: Apache-2.0
// What the stand-in asks of the content of files. The libraries that answer are loaded with the first question, as most
// calls have none.
#pragma once

#include <string>

namespace local_service {

/// What can be said of a file's content.
struct content_digest {
    enum class outcome {
        read,
        /// There is no regular file at the path.
        gone,
        /// There is one, and it cannot be read.
        unreadable,
    };
    outcome result;
    /// The SHA-256 of the content in hexadecimal digits; empty unless it was read.
    std::string text;
};

enum class elf_sort {
    program,
    shared_object,
    kernel_module,
    relocatable,
    other,
};

struct file_reader {
    /// Reads the file `path`, through a link too.
    content_digest (*digest_file)(const std::string& path);

    /// Tells the sort of the ELF file that is open as `file`, from its headers. A shared object that names an
    /// interpreter is a program; an object with a section ".modinfo" is a kernel module.
    elf_sort (*read_elf_sort)(int file);

    /// Tells whether the file name of `path` is that of a kernel module, compressed or not.
    bool (*is_module_file_name)(const std::string& path);

    /// Returns the name of the kernel module in the file `path`: what its section ".modinfo" says, else its file name
    /// without the endings and with '_' for '-'. Throws a failure where the file cannot be read or is no kernel module.
    std::string (*read_module_name)(const std::string& path);
};

/// Returns the reader, and throws where it cannot be loaded.
const file_reader& get_file_reader();

}  // namespace local_service
