// SPDX-License-Identifier: Apache-2.0
#include "files/elf_file.h"

#include <gelf.h>
#include <libelf.h>
#include <rpm/rpmio.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/failure.h"

namespace local_service {
namespace {

struct elf_deleter {
    void operator()(Elf* elf) const noexcept { elf_end(elf); }
};
using owned_elf = std::unique_ptr<Elf, elf_deleter>;

struct rpm_file_deleter {
    void operator()(FD_t file) const noexcept { Fclose(file); }
};
using owned_rpm_file = std::unique_ptr<std::remove_pointer_t<FD_t>, rpm_file_deleter>;

/// Larger than any module: a bound for files that only look like one.
constexpr std::size_t module_size_limit = std::size_t{256} * 1024 * 1024;

struct module_ending {
    std::string_view ending;
    /// rpm's word for reading such a file.
    const char* mode;
};
constexpr std::array<module_ending, 4> module_endings{{
    {".ko", "r.ufdio"},
    {".ko.xz", "r.xzdio"},
    {".ko.zst", "r.zstdio"},
    {".ko.gz", "r.gzdio"},
}};

const module_ending* find_ending(std::string_view path) {
    const auto* found = std::find_if(module_endings.begin(), module_endings.end(), [&](const module_ending& candidate) {
        return path.size() > candidate.ending.size() &&
               path.substr(path.size() - candidate.ending.size()) == candidate.ending;
    });
    return found == module_endings.end() ? nullptr : found;
}

Elf_Scn* find_section(Elf* elf, std::string_view wanted) {
    std::size_t names = 0;
    if (elf_getshdrstrndx(elf, &names) != 0) {
        return nullptr;
    }
    for (Elf_Scn* section = elf_nextscn(elf, nullptr); section != nullptr; section = elf_nextscn(elf, section)) {
        GElf_Shdr header{};
        const char* name = gelf_getshdr(section, &header) == nullptr ? nullptr : elf_strptr(elf, names, header.sh_name);
        if (name != nullptr && wanted == name) {
            return section;
        }
    }
    return nullptr;
}

bool has_interpreter(Elf* elf) {
    std::size_t count = 0;
    if (elf_getphdrnum(elf, &count) != 0) {
        return false;
    }
    for (int index = 0; index < static_cast<int>(count); ++index) {
        GElf_Phdr header{};
        if (gelf_getphdr(elf, index, &header) != nullptr && header.p_type == PT_INTERP) {
            return true;
        }
    }
    return false;
}

std::vector<char> read_module_file(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        throw failure(path + " is not a file");
    }
    const module_ending* ending = find_ending(path);
    const owned_rpm_file file(Fopen(path.c_str(), ending == nullptr ? "r.ufdio" : ending->mode));
    if (file == nullptr || Ferror(file.get()) != 0) {
        throw failure(path + " cannot be read");
    }
    std::vector<char> content;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t got = Fread(buffer.data(), 1, buffer.size(), file.get());
        if (got == 0) {
            return content;
        }
        if (got < 0 || Ferror(file.get()) != 0 || content.size() > module_size_limit) {
            throw failure(path + " cannot be read as a kernel module");
        }
        content.insert(content.end(), buffer.data(), buffer.data() + got);
    }
}

/// The entries of ".modinfo" are texts "key=value", each with its NUL.
std::optional<std::string> find_module_name(std::string_view entries) {
    constexpr std::string_view key = "name=";
    while (!entries.empty()) {
        const std::string_view entry = entries.substr(0, entries.find('\0'));
        if (entry.size() > key.size() && entry.substr(0, key.size()) == key) {
            return std::string(entry.substr(key.size()));
        }
        entries.remove_prefix(std::min(entry.size() + 1, entries.size()));
    }
    return std::nullopt;
}

std::string name_from_file_name(std::string_view path) {
    std::string name(path.substr(path.rfind('/') + 1));
    if (const module_ending* ending = find_ending(name); ending != nullptr) {
        name.resize(name.size() - ending->ending.size());
    }
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

}  // namespace

elf_sort read_elf_sort(int file) {
    elf_version(EV_CURRENT);
    const owned_elf elf(elf_begin(file, ELF_C_READ, nullptr));
    GElf_Ehdr header{};
    if (elf == nullptr || gelf_getehdr(elf.get(), &header) == nullptr) {
        return elf_sort::other;
    }
    switch (header.e_type) {
        case ET_EXEC:
            return elf_sort::program;
        case ET_DYN:
            return has_interpreter(elf.get()) ? elf_sort::program : elf_sort::shared_object;
        case ET_REL:
            return find_section(elf.get(), ".modinfo") != nullptr ? elf_sort::kernel_module : elf_sort::relocatable;
        default:
            return elf_sort::other;
    }
}

bool is_module_file_name(const std::string& path) {
    return find_ending(path) != nullptr;
}

std::string read_module_name(const std::string& path) {
    std::vector<char> content = read_module_file(path);
    elf_version(EV_CURRENT);
    const owned_elf elf(elf_memory(content.data(), content.size()));
    Elf_Scn* section = elf == nullptr ? nullptr : find_section(elf.get(), ".modinfo");
    const Elf_Data* data = section == nullptr ? nullptr : elf_rawdata(section, nullptr);
    if (data == nullptr || data->d_buf == nullptr) {
        throw failure(path + " is not a kernel module");
    }
    const std::string_view entries(static_cast<const char*>(data->d_buf), data->d_size);
    return find_module_name(entries).value_or(name_from_file_name(path));
}

}  // namespace local_service
