// SPDX-License-Identifier: Apache-2.0
#include "framework/on_demand.h"

#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// Null where the questions are not linked into the program itself.
#pragma weak orvex_package_questions_1
#pragma weak orvex_desktop_questions_1

namespace {

/// Names the modules in the program's file, so that packaging tools see what it opens.
struct dlopen_note {
    static constexpr char modules[] =
        R"([{"feature":"packages","description":"Questions to the package database","priority":"recommended",)"
        R"("soname":["orvex_rpm.so"]},)"
        R"({"feature":"desktop entries","description":"Names and icons of applications","priority":"recommended",)"
        R"("soname":["orvex_gio.so"]}])";

    std::uint32_t owner_size = sizeof owner;
    std::uint32_t text_size = sizeof text;
    std::uint32_t type = 0x407c0c0a;
    std::array<char, 4> owner = std::to_array("FDO");
    std::array<char, sizeof modules> text = std::to_array(modules);
};
[[gnu::section(".note.dlopen"), gnu::used]] alignas(4) constexpr dlopen_note note;

constexpr int exit_value_without_library = 127;

[[noreturn]] void end_without(const std::string& what) {
    static_cast<void>(std::fputs(("orvex_policy: cannot load a part of the program: " + what + "\n").c_str(), stderr));
    std::exit(exit_value_without_library);
}

/// Tells whether the file reaches as far as its section headers, which come last. The loader would map a shorter one
/// all the same, and the first look at what is missing would be the end of the program.
bool is_whole(const std::string& path) {
    // What is no file may never come open for another one.
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file == -1) {
        return false;
    }
    ElfW(Ehdr) header{};
    const bool has_header = read(file, &header, sizeof header) == ssize_t{sizeof header};
    const off_t size = lseek(file, 0, SEEK_END);
    close(file);
    const std::uint64_t end = header.e_shoff + std::uint64_t{header.e_shentsize} * header.e_shnum;
    return has_header && size >= 0 && static_cast<std::uint64_t>(size) >= end;
}

std::string get_parent(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// Returns where the module `file` has to lie: in a directory of the program's own, beside the one of the program.
std::string get_module_path(const std::string& file) {
    std::array<char, PATH_MAX> program{};
    const ssize_t size = readlink("/proc/self/exe", program.data(), program.size());
    if (size == -1) {
        end_without("/proc/self/exe cannot be read");
    }
    const std::string path(program.data(), static_cast<std::size_t>(size));
    return get_parent(get_parent(path)) + "/lib/orvex_policy/" + file;
}

/// Opens the module `file` and returns the address of its `symbol`.
const void* open_module(const char* file, const char* symbol) {
    const std::string path = get_module_path(file);
    if (!is_whole(path)) {
        end_without(path + " is missing or cut short");
    }
    // Global, so that a library which was put in front of rpm or GIO finds their functions behind its own.
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    const void* const address = module == nullptr ? nullptr : dlsym(module, symbol);
    if (address == nullptr) {
        end_without(dlerror());
    }
    return address;
}

template <class Questions>
const Questions& find_questions(const Questions* linked, const char* file, const char* symbol) {
    return *(linked != nullptr ? linked : static_cast<const Questions*>(open_module(file, symbol)));
}

}  // namespace

const package_questions& ask_packages() {
    static const package_questions& questions =
        find_questions(&orvex_package_questions_1, "orvex_rpm.so", "orvex_package_questions_1");
    return questions;
}

const desktop_questions& ask_desktop_entries() {
    static const desktop_questions& questions =
        find_questions(&orvex_desktop_questions_1, "orvex_gio.so", "orvex_desktop_questions_1");
    return questions;
}
