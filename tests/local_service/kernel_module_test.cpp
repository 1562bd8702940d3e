// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "local_store.h"
#include "module_file.h"
#include "service/kmodctl.h"

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class kernel_modules : public local_store {
protected:
    static std::vector<std::string> modules() { return fetch_list(orvex_scene_kmodctl_get_policy); }

    std::string write_module(const std::string& file, const std::string& name) const {
        return write(file, module_content("license=GPL\0name="s + name + "\0vermagic=6.1\0"s));
    }

    static std::string name_in(const std::string& file) {
        return take(orvex_scene_get_module_name_from_ko_path(file.c_str()));
    }
};

TEST_F(kernel_modules, are_none_in_a_fresh_store) {
    EXPECT_THAT(modules(), IsEmpty());
}

TEST_F(kernel_modules, are_listed_in_the_order_of_their_adding) {
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("zram"), 0);
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    EXPECT_THAT(modules(), ElementsAre("zram", "ext4"));
}

TEST_F(kernel_modules, are_stored_by_the_name_in_the_file) {
    EXPECT_EQ(orvex_scene_kmodctl_add_by_path(write_module("file.ko", "inner_name").c_str()), 0);
    EXPECT_THAT(modules(), ElementsAre("inner_name"));
}

TEST_F(kernel_modules, are_removed_by_file_or_name) {
    const std::string file = write_module("file.ko", "inner_name");
    orvex_scene_kmodctl_add_by_name("inner_name");
    EXPECT_EQ(orvex_scene_kmodctl_remove_by_path(file.c_str()), 0);
    orvex_scene_kmodctl_add_by_path(file.c_str());
    EXPECT_EQ(orvex_scene_kmodctl_remove_by_name("inner_name"), 0);
    EXPECT_THAT(modules(), IsEmpty());
}

TEST_F(kernel_modules, cannot_be_added_twice) {
    orvex_scene_kmodctl_add_by_name("ext4");
    EXPECT_NE(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    EXPECT_EQ(last_error(), "the kernel module ext4 is protected already");
    EXPECT_THAT(modules(), ElementsAre("ext4"));
}

TEST_F(kernel_modules, cannot_be_removed_when_absent) {
    EXPECT_NE(orvex_scene_kmodctl_remove_by_name("ext4"), 0);
    EXPECT_EQ(last_error(), "the kernel module ext4 is not protected");
}

TEST_F(kernel_modules, need_a_name) {
    EXPECT_NE(orvex_scene_kmodctl_add_by_name(""), 0);
    EXPECT_NE(orvex_scene_kmodctl_add_by_name(nullptr), 0);
    EXPECT_NE(orvex_scene_kmodctl_add_by_path(nullptr), 0);
}

TEST_F(kernel_modules, keep_every_byte_of_a_name) {
    const char* name = "a b'\"%s\n\xFF";
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name(name), 0);
    EXPECT_THAT(modules(), ElementsAre(name));
}

TEST_F(kernel_modules, are_changed_by_root_and_the_security_administrator_alone) {
    become(1000);
    EXPECT_NE(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    become(600);
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    become(1000);
    EXPECT_NE(orvex_scene_kmodctl_remove_by_name("ext4"), 0);
    EXPECT_THAT(modules(), ElementsAre("ext4"));
}

TEST_F(kernel_modules, without_an_entry_are_named_after_their_file) {
    EXPECT_EQ(name_in(write("snd-pcm.ko", module_content("license=GPL\0"s))), "snd_pcm");
}

TEST_F(kernel_modules, may_be_compressed) {
    const std::vector<std::pair<std::string, std::string>> packers = {
        {"gzip", ".gz"}, {"xz", ".xz"}, {"zstd -q", ".zst"}};
    for (const auto& [packer, ending] : packers) {
        const std::string file = write_module("packed.ko", "inner_name");
        ASSERT_EQ(std::system((packer + " '" + file + "'").c_str()), 0) << packer;
        EXPECT_EQ(name_in(file + ending), "inner_name");
        std::filesystem::remove(file);
    }
}

TEST_F(kernel_modules, are_not_found_in_other_files) {
    mkfifo(path("fifo").c_str(), 0600);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(write("text.ko", "text").c_str()), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(write("empty.ko", "").c_str()), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path("/usr/bin/env"), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(path("missing.ko").c_str()), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(path("fifo").c_str()), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(directory().c_str()), nullptr);
    EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(nullptr), nullptr);
    EXPECT_NE(orvex_scene_kmodctl_add_by_path(path("text.ko").c_str()), 0);
    EXPECT_EQ(last_error(), path("text.ko") + " is not a kernel module");
}

TEST_F(kernel_modules, survive_a_broken_file) {
    const std::string whole = module_content("name=dummy\0"s);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(orvex_scene_get_module_name_from_ko_path(write("broken.ko", whole.substr(0, length)).c_str()),
                  nullptr)
            << length;
    }
}

}  // namespace
