// SPDX-License-Identifier: Apache-2.0
// The stand-in's reader of ELF files. The first byte chooses the ending of the file's name, and with it the packing;
// the rest is the file.
#include "files/elf_file.h"

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

#include "core/descriptor.h"
#include "core/failure.h"
#include "files/digest.h"
#include "fuzz_target.h"
#include "support/scratch_dir.h"

namespace {

using local_service::elf_sort;

constexpr std::array<const char*, 5> endings = {".ko", ".ko.xz", ".ko.zst", ".ko.gz", ""};

std::optional<std::string> read_name(const std::string& path) {
    try {
        return local_service::read_module_name(path);
    } catch (const local_service::failure&) {
        return std::nullopt;
    }
}

bool is_relocatable(const std::string& content) {
    return content.size() > EI_NIDENT + 1 && content[EI_DATA] == ELFDATA2LSB && content[EI_NIDENT] == ET_REL &&
           content[EI_NIDENT + 1] == 0;
}

/// A file that is not packed: its name stands in it, or is that of the file.
void check_plain_file(const std::string& content, elf_sort sort, const std::optional<std::string>& name) {
    if (!name) {
        return;
    }
    require(content.compare(0, SELFMAG, ELFMAG) == 0, "a module that is no ELF file");
    require(!name->empty() && name->find('\0') == std::string::npos, "a module's name is no text");
    require(*name == "fuzz_input" || content.find("name=" + *name) != std::string::npos, "a name from nowhere");
    require(!is_relocatable(content) || sort == elf_sort::kernel_module, "a module that is none by its sections");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const scratch_dir scratch;
    if (size == 0) {
        return 0;
    }
    const std::size_t chosen = *data % endings.size();
    const std::string content = text_of_input(data + 1, size - 1);
    const std::string path = scratch.write(std::string("fuzz-input") + endings[chosen], content);

    const local_service::descriptor file(path);
    const elf_sort sort = local_service::read_elf_sort(file.number());
    const std::optional<std::string> name = read_name(path);
    const bool is_packed = chosen >= 1 && chosen <= 3;
    if (!is_packed) {
        check_plain_file(content, sort, name);
    }
    require(local_service::is_module_file_name(path) == (chosen != 4), "a module's file name");
    require(local_service::digest_file(path).text.size() == 64, "a file without a digest");
    return 0;
}
