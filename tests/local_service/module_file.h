// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

/// Returns the content of a small ELF file of the type `type` (an ET_ number) with the section `section`, which holds
/// `data`; with `has_interpreter` it has a program header that names one.
std::string elf_content(std::uint16_t type, const std::string& section, const std::string& data,
                        bool has_interpreter = false);

/// Returns the content of a kernel module whose .modinfo has these entries, each ended by a NUL.
std::string module_content(const std::string& entries);
