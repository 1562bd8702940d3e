// SPDX-License-Identifier: Apache-2.0
#include "core/file_kind.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string_view>

#include "core/descriptor.h"
#include "core/file_reader.h"

namespace local_service {
namespace {

file_kind kind_of_elf(int file, const std::string& path) {
    switch (get_file_reader().read_elf_sort(file)) {
        case elf_sort::program:
            return file_kind::program;
        case elf_sort::shared_object:
            return file_kind::shared_object;
        case elf_sort::kernel_module:
            return file_kind::kernel_module;
        case elf_sort::relocatable:
            return get_file_reader().is_module_file_name(path) ? file_kind::kernel_module : file_kind::other_file;
        default:
            return file_kind::other_file;
    }
}

/// What the first bytes of a compressed file say: its modules are told by their names, as unpacking is too much to ask.
bool is_compressed(std::string_view start) {
    using namespace std::string_view_literals;
    return start ==
               "\xFD"
               "7zX"sv ||
           start == "\x28\xB5\x2F\xFD"sv || start.substr(0, 2) == "\x1F\x8B"sv;
}

file_kind kind_of_content(const std::string& path) {
    const descriptor file(path, O_NOFOLLOW);
    std::array<char, 4> buffer{};
    const ssize_t got = file.number() < 0 ? -1 : pread(file.number(), buffer.data(), buffer.size(), 0);
    if (got < 0) {
        return file_kind::unreadable;
    }
    const std::string_view start(buffer.data(), static_cast<std::size_t>(got));
    if (start ==
        "\x7F"
        "ELF") {
        return kind_of_elf(file.number(), path);
    }
    if (start.substr(0, 2) == "#!") {
        return file_kind::script;
    }
    return is_compressed(start) && get_file_reader().is_module_file_name(path) ? file_kind::kernel_module
                                                                               : file_kind::other_file;
}

}  // namespace

file_kind read_file_kind(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return file_kind::unreadable;
    }
    switch (status.st_mode & S_IFMT) {
        case S_IFREG:
            return kind_of_content(path);
        case S_IFLNK:
            return file_kind::symbolic_link;
        case S_IFDIR:
            return file_kind::directory;
        case S_IFCHR:
            return file_kind::character_device;
        case S_IFBLK:
            return file_kind::block_device;
        case S_IFIFO:
            return file_kind::fifo;
        default:
            return file_kind::socket;
    }
}

}  // namespace local_service
