// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include "local_store.h"
#include "module_file.h"
#include "service/log.h"
#include "service/paths.h"

namespace {

class file_kinds : public local_store {
protected:
    int kind_of(const std::string& name, const std::string& content) const {
        return parse_file_type(write(name, content).c_str());
    }
};

TEST_F(file_kinds, a_program_is_0) {
    EXPECT_EQ(parse_file_type("/usr/bin/env"), 0);
    EXPECT_EQ(kind_of("fixed", elf_content(ET_EXEC, ".text", "")), 0);
    EXPECT_EQ(kind_of("movable", elf_content(ET_DYN, ".text", "", true)), 0);
}

TEST_F(file_kinds, a_shared_object_is_1) {
    Dl_info library{};
    ASSERT_NE(dladdr(reinterpret_cast<const void*>(&orvex_get_error), &library), 0);
    EXPECT_EQ(parse_file_type(library.dli_fname), 1);
}

TEST_F(file_kinds, a_kernel_module_is_2) {
    using namespace std::string_literals;
    EXPECT_EQ(kind_of("unnamed", module_content("name=dummy\0"s)), 2);
    EXPECT_EQ(kind_of("object.ko", elf_content(ET_REL, ".text", "")), 2);
}

TEST_F(file_kinds, a_compressed_kernel_module_is_2_by_its_name) {
    EXPECT_EQ(kind_of("dummy.ko.gz", "\x1F\x8B and so on"), 2);
    EXPECT_EQ(kind_of("dummy.ko.xz",
                      "\xFD"
                      "7zXZ and so on"),
              2);
    EXPECT_EQ(kind_of("dummy.ko.zst", "\x28\xB5\x2F\xFD and so on"), 2);
    EXPECT_EQ(kind_of("dummy.gz", "\x1F\x8B and so on"), 4);
    EXPECT_EQ(kind_of("text.ko.gz", "plain text"), 4);
}

TEST_F(file_kinds, a_script_is_3_whatever_its_rights) {
    EXPECT_EQ(kind_of("script", "#!/bin/sh\n"), 3);
    EXPECT_EQ(kind_of("shortest", "#!"), 3);
}

TEST_F(file_kinds, other_files_are_4) {
    EXPECT_EQ(kind_of("text", "text\n"), 4);
    EXPECT_EQ(kind_of("empty", ""), 4);
    EXPECT_EQ(kind_of("hash", "#"), 4);
    EXPECT_EQ(kind_of("object.o", elf_content(ET_REL, ".text", "")), 4);
    EXPECT_EQ(kind_of("core", elf_content(ET_CORE, ".text", "")), 4);
    EXPECT_EQ(kind_of("text.ko", "text\n"), 4);
}

TEST_F(file_kinds, a_link_is_5_wherever_it_leads) {
    link("link", "/usr/bin/env");
    link("dangling", "nowhere");
    EXPECT_EQ(parse_file_type(path("link").c_str()), 5);
    EXPECT_EQ(parse_file_type(path("dangling").c_str()), 5);
}

TEST_F(file_kinds, what_is_no_file_has_a_number_above_5) {
    mkfifo(path("fifo").c_str(), 0600);
    EXPECT_EQ(parse_file_type(directory().c_str()), 6);
    EXPECT_EQ(parse_file_type("/dev/null"), 7);
    EXPECT_EQ(parse_file_type(path("fifo").c_str()), 9);
}

TEST_F(file_kinds, what_cannot_be_read_is_negative) {
    EXPECT_LT(parse_file_type(path("missing").c_str()), 0);
    EXPECT_LT(parse_file_type(nullptr), 0);
}

TEST_F(file_kinds, a_broken_elf_file_harms_nobody) {
    const std::string whole = module_content("name=dummy");
    for (std::size_t length = 4; length < whole.size(); ++length) {
        EXPECT_EQ(kind_of("broken", whole.substr(0, length)), 4) << length;
    }
}

}  // namespace
