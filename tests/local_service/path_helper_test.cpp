// SPDX-License-Identifier: Apache-2.0
#include "service/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/entry_list.h"
#include "local_store.h"

using testing::ElementsAre;

namespace {

class path_helpers : public local_store {
protected:
    void SetUp() override {
        local_store::SetUp();
        previous_ = std::filesystem::current_path();
        std::filesystem::current_path(directory());
    }
    void TearDown() override {
        std::filesystem::current_path(previous_);
        local_store::TearDown();
    }

    static std::vector<std::string> files_of(const std::string& directory) {
        int count = 0;
        char** list = get_file_list_from_dir(directory.c_str(), &count);
        EXPECT_NE(list, nullptr);
        std::vector<std::string> files;
        for (int index = 0; index < count; ++index) {
            files.push_back(take(list[index]));
        }
        std::free(list);
        return files;
    }

private:
    std::filesystem::path previous_;
};

TEST_F(path_helpers, existence_counts_files_directories_and_links) {
    write("file", "");
    link("link", "file");
    link("dangling", "nowhere");
    EXPECT_EQ(path_is_exist("file"), 1);
    EXPECT_EQ(path_is_exist("."), 1);
    EXPECT_EQ(path_is_exist("link"), 1);
    EXPECT_EQ(path_is_exist("dangling"), 1);
    EXPECT_NE(path_is_exist("missing"), 1);
    EXPECT_NE(path_is_exist(""), 1);
    EXPECT_NE(path_is_exist(nullptr), 1);
}

TEST_F(path_helpers, a_directory_counts_through_a_link) {
    make_directory("dir");
    write("file", "");
    link("link", "dir");
    link("dangling", "nowhere");
    EXPECT_EQ(path_is_dir("dir"), 1);
    EXPECT_EQ(path_is_dir("dir/"), 1);
    EXPECT_EQ(path_is_dir("link"), 1);
    EXPECT_NE(path_is_dir("file"), 1);
    EXPECT_NE(path_is_dir("dangling"), 1);
    EXPECT_NE(path_is_dir(nullptr), 1);
}

TEST_F(path_helpers, two_names_of_one_file_are_the_same) {
    write("file", "");
    write("other", "");
    link("link", "file");
    std::filesystem::create_hard_link("file", "twin");
    EXPECT_EQ(path_is_same("file", "link"), 1);
    EXPECT_EQ(path_is_same("file", "twin"), 1);
    EXPECT_EQ(path_is_same("file", path("file").c_str()), 1);
    EXPECT_NE(path_is_same("file", "other"), 1);
}

TEST_F(path_helpers, two_spellings_of_a_missing_file_are_the_same) {
    EXPECT_EQ(path_is_same("/gone//a/./b", "/gone/a/c/../b"), 1);
    EXPECT_NE(path_is_same("/gone/a", "/gone/b"), 1);
    EXPECT_NE(path_is_same(nullptr, "/gone"), 1);
}

TEST_F(path_helpers, an_absolute_path_needs_no_file) {
    EXPECT_EQ(take(get_absolute_path("missing/x")), path("missing/x"));
    EXPECT_EQ(take(get_absolute_path("./a/../b//c/")), path("b/c"));
    EXPECT_EQ(take(get_absolute_path(".")), directory());
    EXPECT_EQ(take(get_absolute_path("/a/./b/../../c/")), "/c");
    EXPECT_EQ(take(get_absolute_path("/../..")), "/");
    EXPECT_EQ(take(get_absolute_path("//")), "/");
}

TEST_F(path_helpers, an_absolute_path_keeps_links) {
    make_directory("dir");
    link("link", "dir");
    EXPECT_EQ(take(get_absolute_path("link/x")), path("link/x"));
}

TEST_F(path_helpers, an_empty_path_has_no_absolute_form) {
    EXPECT_EQ(get_absolute_path(""), nullptr);
    EXPECT_EQ(last_error(), "an empty path has no absolute form");
    EXPECT_EQ(get_absolute_path(nullptr), nullptr);
}

TEST_F(path_helpers, a_removed_working_directory_gives_no_absolute_path) {
    std::filesystem::current_path(make_directory("gone"));
    std::filesystem::remove(path("gone"));
    EXPECT_EQ(get_absolute_path("x"), nullptr);
    EXPECT_EQ(take(get_absolute_path("/x")), "/x");
}

TEST_F(path_helpers, the_standard_form_has_no_line_break_and_no_dots) {
    EXPECT_EQ(take(pathNormalize("/usr/bin/sleep\n")), "/usr/bin/sleep");
    EXPECT_EQ(take(pathNormalize("/usr//bin/./x/../sleep")), "/usr/bin/sleep");
    EXPECT_EQ(take(pathNormalize("/")), "/");
    EXPECT_EQ(take(pathNormalize("../../b")), "../../b");
    EXPECT_EQ(pathNormalize("\n"), nullptr);
    EXPECT_EQ(pathNormalize(""), nullptr);
    EXPECT_EQ(pathNormalize(nullptr), nullptr);
}

TEST_F(path_helpers, a_file_list_has_the_regular_files_in_order_with_full_paths) {
    make_directory("dir/sub");
    write("dir/b", "");
    write("dir/a b", "");
    write("dir/.hidden", "");
    write("dir/sub/inner", "");
    link("dir/link", "b");
    EXPECT_THAT(files_of(path("dir")), ElementsAre(path("dir/.hidden"), path("dir/a b"), path("dir/b")));
    EXPECT_THAT(files_of(path("dir/")), ElementsAre(path("dir/.hidden"), path("dir/a b"), path("dir/b")));
}

TEST_F(path_helpers, a_file_list_of_an_empty_directory_is_empty) {
    EXPECT_TRUE(files_of(make_directory("dir")).empty());
}

TEST_F(path_helpers, a_file_list_of_no_directory_is_null) {
    int count = 7;
    EXPECT_EQ(get_file_list_from_dir(write("file", "").c_str(), &count), nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(get_file_list_from_dir(path("missing").c_str(), &count), nullptr);
    EXPECT_EQ(get_file_list_from_dir(nullptr, &count), nullptr);
}

TEST_F(path_helpers, the_blacklist_holds_exact_paths) {
    local_service::lists::blacklist.add("/usr/bin/init");
    EXPECT_EQ(ppro_path_in_blacklist("/usr/bin/init"), 1);
    EXPECT_NE(ppro_path_in_blacklist("/usr/bin/initx"), 1);
    EXPECT_NE(ppro_path_in_blacklist(nullptr), 1);
}

}  // namespace
