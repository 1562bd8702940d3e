// SPDX-License-Identifier: Apache-2.0
#include "module_file.h"

#include <elf.h>

#include <type_traits>

namespace {

template <class Header>
std::string bytes_of(const Header& header) {
    static_assert(std::is_trivially_copyable_v<Header>);
    return std::string(reinterpret_cast<const char*>(&header), sizeof(header));
}

Elf64_Shdr section_header(std::size_t name, std::uint32_t type, std::size_t offset, std::size_t size) {
    Elf64_Shdr header{};
    header.sh_name = static_cast<Elf64_Word>(name);
    header.sh_type = type;
    header.sh_offset = offset;
    header.sh_size = size;
    header.sh_addralign = 1;
    return header;
}

}  // namespace

std::string elf_content(std::uint16_t type, const std::string& section, const std::string& data, bool has_interpreter) {
    const std::string names = std::string(1, '\0') + ".shstrtab" + '\0' + section + '\0';
    Elf64_Phdr interpreter{};
    interpreter.p_type = PT_INTERP;
    const std::string program_headers = has_interpreter ? bytes_of(interpreter) : "";
    const std::size_t names_offset = sizeof(Elf64_Ehdr) + program_headers.size();
    const std::size_t data_offset = names_offset + names.size();

    Elf64_Ehdr header{};
    const std::string ident = std::string(ELFMAG) + static_cast<char>(ELFCLASS64) + static_cast<char>(ELFDATA2LSB) +
                              static_cast<char>(EV_CURRENT);
    ident.copy(reinterpret_cast<char*>(header.e_ident), ident.size());
    header.e_type = type;
    header.e_machine = EM_X86_64;
    header.e_version = EV_CURRENT;
    header.e_ehsize = sizeof(Elf64_Ehdr);
    header.e_phoff = has_interpreter ? sizeof(Elf64_Ehdr) : 0;
    header.e_phentsize = sizeof(Elf64_Phdr);
    header.e_phnum = has_interpreter ? 1 : 0;
    header.e_shoff = data_offset + data.size();
    header.e_shentsize = sizeof(Elf64_Shdr);
    header.e_shnum = 3;
    header.e_shstrndx = 1;
    return bytes_of(header) + program_headers + names + data + bytes_of(Elf64_Shdr{}) +
           bytes_of(section_header(1, SHT_STRTAB, names_offset, names.size())) +
           bytes_of(section_header(11, SHT_PROGBITS, data_offset, data.size()));
}

std::string module_content(const std::string& entries) {
    return elf_content(ET_REL, ".modinfo", entries);
}
