// SPDX-License-Identifier: Apache-2.0
// What the stand-in has to know of an ELF file: which sort it is, and the name in a kernel module.
#pragma once

#include <string>

#include "core/file_reader.h"

namespace local_service {

/// See `file_reader`.
elf_sort read_elf_sort(int file);
bool is_module_file_name(const std::string& path);
std::string read_module_name(const std::string& path);

}  // namespace local_service
