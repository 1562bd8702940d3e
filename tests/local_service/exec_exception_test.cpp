// SPDX-License-Identifier: Apache-2.0
#include <filesystem>

#include "local_store.h"
#include "service/exectl.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class exec_exceptions : public local_store {
protected:
    static std::vector<std::string> files() { return fetch_list(orvex_scene_exectl_get_policy_for_file_permissive); }
    static std::vector<std::string> packages() {
        return fetch_list(orvex_scene_exectl_get_policy_for_package_permissive);
    }
    static int add(std::initializer_list<std::string> paths) {
        batch texts(paths);
        return orvex_scene_exectl_multi_add_file_in_permissive(texts.data(), texts.count());
    }
    static int remove(std::initializer_list<std::string> paths) {
        batch texts(paths);
        return orvex_scene_exectl_multi_remove_file_from_permissive(texts.data(), texts.count());
    }
};

TEST_F(exec_exceptions, are_none_in_a_fresh_store) {
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_THAT(packages(), IsEmpty());
}

TEST_F(exec_exceptions, show_a_directory_as_its_pattern) {
    const std::string file = write("file", "");
    const std::string dir = make_directory("dir");
    EXPECT_EQ(add({file, dir}), 0);
    EXPECT_THAT(files(), ElementsAre(file, dir + "/*"));
}

TEST_F(exec_exceptions, are_removed_by_their_plain_path) {
    const std::string file = write("file", "");
    const std::string dir = make_directory("dir");
    add({file, dir});
    EXPECT_EQ(remove({dir}), 0);
    EXPECT_THAT(files(), ElementsAre(file));
    EXPECT_EQ(remove({file}), 0);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(exec_exceptions, are_removed_when_gone_from_the_disk) {
    add({make_directory("dir"), make_directory("dir2")});
    std::filesystem::remove(path("dir"));
    std::filesystem::remove(path("dir2"));
    EXPECT_EQ(remove({path("dir"), path("dir2/")}), 0);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(exec_exceptions, may_be_named_twice_in_a_batch) {
    EXPECT_EQ(add({"/a", "/a"}), 0);
    EXPECT_THAT(files(), ElementsAre("/a"));
    EXPECT_EQ(remove({"/a", "/a"}), 0);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(exec_exceptions, are_removed_all_or_none) {
    add({"/a", "/b"});
    EXPECT_NE(remove({"/a", "/c"}), 0);
    EXPECT_EQ(last_error(), "/c is not on the list");
    EXPECT_THAT(files(), ElementsAre("/a", "/b"));
}

TEST_F(exec_exceptions, keep_packages_apart_by_name) {
    make_directory("tool");
    batch names{"tool", "bash"};
    EXPECT_EQ(orvex_scene_exectl_multi_add_package_in_permissive(names.data(), names.count()), 0);
    EXPECT_THAT(packages(), ElementsAre("tool", "bash"));
    EXPECT_THAT(files(), IsEmpty());
    batch removed{"tool"};
    EXPECT_EQ(orvex_scene_exectl_multi_remove_package_from_permissive(removed.data(), removed.count()), 0);
    EXPECT_THAT(packages(), ElementsAre("bash"));
    EXPECT_NE(orvex_scene_exectl_multi_remove_package_from_permissive(removed.data(), removed.count()), 0);
}

TEST_F(exec_exceptions, are_changed_by_root_and_the_security_administrator_alone) {
    become(1000);
    EXPECT_NE(add({"/a"}), 0);
    EXPECT_THAT(files(), IsEmpty());
    become(600);
    EXPECT_EQ(add({"/a"}), 0);
}

}  // namespace
