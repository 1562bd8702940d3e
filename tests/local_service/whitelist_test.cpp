// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "local_store.h"
#include "service/exectl.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

constexpr int absent = -1;

class whitelist : public local_store {
protected:
    /// Returns the status of the record of `file`, or `absent`.
    static int status_of(const std::string& file) {
        orvex_exectl_obj record{};
        EXPECT_EQ(orvex_scene_exectl_wlist_load_by_path(file.c_str(), &record), 0);
        const int status = record.path == nullptr ? absent : record.status;
        if (record.path != nullptr) {
            EXPECT_EQ(record.path, file);
        }
        orvex_scene_exectl_obj_free(&record);
        return status;
    }

    static std::vector<std::pair<std::string, int>> all_records() {
        orvex_exectl_list_obj* head = nullptr;
        EXPECT_EQ(orvex_scene_exectl_wlist_load_all(&head), 0);
        std::vector<std::pair<std::string, int>> records;
        for (const orvex_exectl_list_obj* link = head; link != nullptr; link = link->next) {
            records.emplace_back(link->obj.path, link->obj.status);
        }
        orvex_scene_exectl_objs_free(&head);
        EXPECT_EQ(head, nullptr);
        return records;
    }

    static int add(std::initializer_list<std::string> files) {
        batch paths(files);
        return orvex_scene_exectl_wlist_multi_add(paths.data(), paths.count());
    }

    static int remove(std::initializer_list<std::string> files) {
        batch paths(files);
        return orvex_scene_exectl_wlist_multi_delete(paths.data(), paths.count());
    }
};

TEST_F(whitelist, is_empty_in_a_fresh_store) {
    EXPECT_THAT(all_records(), IsEmpty());
    EXPECT_EQ(status_of("/usr/bin/env"), absent);
}

TEST_F(whitelist, holds_what_was_added_in_order) {
    const std::string second = write("b.sh", "#!/bin/sh\n");
    const std::string first = write("a.sh", "#!/bin/sh\n");
    EXPECT_EQ(add({second, first}), 0);
    EXPECT_THAT(all_records(), ElementsAre(Pair(second, 0), Pair(first, 0)));
}

TEST_F(whitelist, shows_a_changed_byte) {
    const std::string file = write("a.sh", "#!/bin/sh\nexit 0\n");
    add({file});
    EXPECT_EQ(status_of(file), 0);
    write("a.sh", "#!/bin/sh\nexit 1\n");
    EXPECT_EQ(status_of(file), 1);
    EXPECT_THAT(all_records(), ElementsAre(Pair(file, 1)));
}

TEST_F(whitelist, shows_a_file_that_is_gone) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    add({file});
    std::filesystem::remove(file);
    EXPECT_EQ(status_of(file), 1);
    make_directory("a.sh");
    EXPECT_EQ(status_of(file), 1);
}

TEST_F(whitelist, is_content_with_the_same_bytes_in_a_new_file) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    add({file});
    std::filesystem::remove(file);
    write("a.sh", "#!/bin/sh\n");
    EXPECT_EQ(status_of(file), 0);
}

TEST_F(whitelist, takes_a_file_again_as_it_is_now) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    const std::string other = write("b.sh", "#!/bin/sh\n");
    add({file, other});
    write("a.sh", "#!/bin/bash\n");
    EXPECT_EQ(add({file}), 0);
    EXPECT_THAT(all_records(), ElementsAre(Pair(file, 0), Pair(other, 0)));
}

TEST_F(whitelist, keeps_a_link_by_its_own_path_and_what_it_leads_to) {
    write("target", "#!/bin/sh\n");
    link("link", "target");
    EXPECT_EQ(add({path("link")}), 0);
    EXPECT_EQ(status_of(path("link")), 0);
    EXPECT_EQ(status_of(path("target")), absent);
    write("target", "#!/bin/bash\n");
    EXPECT_EQ(status_of(path("link")), 1);
}

TEST_F(whitelist, knows_nothing_of_a_file_that_the_caller_may_not_read) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    add({file});
    chmod(file.c_str(), 0);
    EXPECT_EQ(status_of(file), geteuid() == 0 ? 0 : 2);
}

TEST_F(whitelist, knows_nothing_of_a_file_that_fails_while_it_is_read) {
    write("target", "#!/bin/sh\n");
    link("link", "target");
    add({path("link")});
    std::filesystem::remove(path("link"));
    std::filesystem::create_symlink("/proc/self/mem", path("link"));
    EXPECT_EQ(status_of(path("link")), 2);
}

TEST_F(whitelist, takes_a_file_where_standard_input_is_closed) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    EXPECT_THAT(all_records(), IsEmpty());
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    EXPECT_EQ(add({file}), 0);
    dup2(input, STDIN_FILENO);
    close(input);
}

TEST_F(whitelist, takes_the_whole_batch_or_nothing) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    EXPECT_LT(add({file, path("missing")}), 0);
    EXPECT_EQ(last_error(), path("missing") + " cannot be read as a file");
    EXPECT_LT(add({file, directory()}), 0);
    EXPECT_THAT(all_records(), IsEmpty());
}

TEST_F(whitelist, does_not_wait_for_a_fifo) {
    mkfifo(path("fifo").c_str(), 0600);
    EXPECT_LT(add({path("fifo")}), 0);
}

TEST_F(whitelist, loses_what_is_deleted_and_minds_no_stranger) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    const std::string other = write("b.sh", "#!/bin/sh\n");
    add({file, other});
    EXPECT_EQ(remove({file, "/never/added"}), 0);
    EXPECT_THAT(all_records(), ElementsAre(Pair(other, 0)));
}

TEST_F(whitelist, takes_the_controlled_files_below_a_directory) {
    make_directory("dir/deep");
    const std::string script = write("dir/a.sh", "#!/bin/sh\n");
    const std::string deep = write("dir/deep/b.sh", "#!/bin/sh\n");
    write("dir/text", "text\n");
    link("dir/link", "a.sh");
    make_directory("elsewhere");
    write("elsewhere/c.sh", "#!/bin/sh\n");
    link("dir/way_out", path("elsewhere"));
    EXPECT_EQ(orvex_scene_exectl_wlist_add_by_dir(path("dir").c_str()), 0);
    EXPECT_THAT(all_records(), testing::UnorderedElementsAre(Pair(script, 0), Pair(deep, 0)));
}

TEST_F(whitelist, loses_all_below_a_directory_gone_files_too) {
    make_directory("dir/deep");
    make_directory("dir-2");
    const std::string gone = write("dir/deep/a.sh", "#!/bin/sh\n");
    const std::string beside = write("dir-2/b.sh", "#!/bin/sh\n");
    const std::string close_name = write("dir.sh", "#!/bin/sh\n");
    add({gone, beside, close_name});
    std::filesystem::remove(gone);
    EXPECT_EQ(orvex_scene_exectl_wlist_delete_by_dir(path("dir/").c_str()), 0);
    EXPECT_THAT(all_records(), ElementsAre(Pair(beside, 0), Pair(close_name, 0)));
    EXPECT_EQ(orvex_scene_exectl_wlist_delete_by_dir(path("dir").c_str()), 0);
    EXPECT_EQ(orvex_scene_exectl_wlist_delete_by_dir("/"), 0);
    EXPECT_THAT(all_records(), IsEmpty());
}

TEST_F(whitelist, takes_nothing_from_a_directory_that_is_none) {
    EXPECT_LT(orvex_scene_exectl_wlist_add_by_dir(path("missing").c_str()), 0);
    EXPECT_LT(orvex_scene_exectl_wlist_add_by_dir(write("file", "#!").c_str()), 0);
    EXPECT_LT(orvex_scene_exectl_wlist_add_by_dir(nullptr), 0);
    EXPECT_THAT(all_records(), IsEmpty());
}

TEST_F(whitelist, is_changed_by_root_and_the_security_administrator_alone) {
    const std::string file = write("a.sh", "#!/bin/sh\n");
    become(1000);
    EXPECT_LT(add({file}), 0);
    EXPECT_LT(remove({file}), 0);
    EXPECT_LT(orvex_scene_exectl_wlist_add_by_dir(directory().c_str()), 0);
    EXPECT_LT(orvex_scene_exectl_wlist_delete_by_dir(directory().c_str()), 0);
    EXPECT_LT(orvex_scene_exectl_wlist_add_by_dir(path("missing").c_str()), 0);
    EXPECT_EQ(last_error(), "user 1000 may not change this: only root and the security administrator");
    become(600);
    EXPECT_EQ(add({file}), 0);
    become(1000);
    EXPECT_EQ(status_of(file), 0);
}

TEST_F(whitelist, keeps_every_byte_of_a_path) {
    const std::string file = write("a b'\"%s\n\xFF-", "#!/bin/sh\n");
    EXPECT_EQ(add({file}), 0);
    EXPECT_THAT(all_records(), ElementsAre(Pair(file, 0)));
}

TEST_F(whitelist, a_failed_look_up_is_not_0) {
    orvex_exectl_obj record{};
    EXPECT_NE(orvex_scene_exectl_wlist_load_by_path(nullptr, &record), 0);
    setenv("ORVEX_LOCAL_STATE", (write("file", "") + "/state").c_str(), 1);
    orvex_exectl_list_obj* head = nullptr;
    EXPECT_NE(orvex_scene_exectl_wlist_load_by_path("/usr/bin/env", &record), 0);
    EXPECT_NE(orvex_scene_exectl_wlist_load_all(&head), 0);
    EXPECT_EQ(head, nullptr);
}

}  // namespace
