// SPDX-License-Identifier: Apache-2.0
// What the stand-in has to know of an ELF file: which sort it is, and the name in a kernel module.
#pragma once

#include <string>

namespace local_service {

enum class elf_sort {
    program,
    shared_object,
    kernel_module,
    relocatable,
    other,
};

/// Tells the sort of the ELF file that is open as `file`, from its headers. A shared object that names an interpreter
/// is a program; an object with a section ".modinfo" is a kernel module.
elf_sort read_elf_sort(int file);

/// Tells whether the file name of `path` is that of a kernel module, compressed or not.
bool is_module_file_name(const std::string& path);

/// Returns the name of the kernel module in the file `path`: what its section ".modinfo" says, else its file name
/// without the endings and with '_' for '-'. Throws a failure where the file cannot be read or is no kernel module.
std::string read_module_name(const std::string& path);

}  // namespace local_service
