// SPDX-License-Identifier: Apache-2.0
// Changing the whitelist by file: the state of a file, the kinds that are controlled, the batch.
#include <filesystem>
#include <string>
#include <vector>

#include "support/scratch_dir.h"
#include "unit/exec_test.h"

namespace {

using testing::Return;
using texts = std::vector<std::string>;

// The state of one file.

class exec_state_test : public exec_test {
protected:
    call_result check(const std::string& path) {
        return capture([&] { return exec.check_file_in_policy(path); });
    }

    COrvexExec exec;
};

TEST_F(exec_state_test, a_file_without_a_record_is_0) {
    // Without a path the state is no state.
    for (const std::int32_t status : {0, 1, 2}) {
        expect_look_up("/a %s", {0, {std::nullopt, status}});
        expect_record_given_back(std::nullopt);
        EXPECT_EQ(check("/a %s"), (call_result{0, ""})) << status;
    }
}

TEST_F(exec_state_test, an_intact_file_is_1_and_a_tampered_one_2) {
    expect_look_up("/a", {0, {"/a", 0}});
    expect_record_given_back("/a");
    EXPECT_EQ(check("/a"), (call_result{1, ""}));

    expect_look_up("/a", {0, {"/other", 1}});
    expect_record_given_back("/other");
    EXPECT_EQ(check("/a"), (call_result{2, ""}));
}

TEST_F(exec_state_test, an_unknown_state_is_told_and_a_failure) {
    for (const std::int32_t status : {2, 3, -1, 2147483647}) {
        expect_look_up("/a", {0, {"/a", status}});
        expect_record_given_back("/a");
        EXPECT_EQ(check("/a"), (call_result{-1, "未知的白名单状态[" + std::to_string(status) + "]!\n"}));
    }
}

TEST_F(exec_state_test, a_failed_look_up_is_told_and_logged_and_the_record_given_back) {
    for (const int result : {-1, -4, 1}) {
        // What the library may have left in the record does not count.
        for (const maybe_text& path : {maybe_text(), maybe_text("/left")}) {
            expect_look_up("/a %s", {result, {path, 0}});
            expect_failure_log("check_file_in_policy", "failed to get exectl whlist list by path, path:%s,  ret: %d",
                               "failed to get exectl whlist list by path, path:/a %s,  ret: " + std::to_string(result));
            expect_record_given_back(path);
            EXPECT_EQ(check("/a %s"), (call_result{-1, "查询文件[/a %s]是否在白名单中失败!\n"})) << result;
        }
    }
}

// The operation.

constexpr int no_record = 0;
constexpr int intact = 1;
constexpr int tampered = 2;
constexpr int failed = -1;

/// A module whose look-up of a file's state the test answers.
class exec_with_states : public COrvexExec {
public:
    MOCK_METHOD(int, check_file_in_policy, (const std::string& path), (override));
};

class exec_file_change_test : public exec_test {
protected:
    void expect_state(const std::string& path, int state) {
        EXPECT_CALL(exec, check_file_in_policy(path)).WillOnce(Return(state));
    }

    /// Expects all that is asked of a piece that gets into the batch.
    void expect_taken(const std::string& path, const std::string& absolute_path, int state = intact) {
        expect_good_file(path, absolute_path);
        expect_kind(absolute_path, 3);
        expect_state(absolute_path, state);
    }

    void expect_add(const texts& paths, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_multi_add(paths)).WillOnce(Return(result));
    }

    void expect_delete(const texts& paths, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_multi_delete(paths)).WillOnce(Return(result));
    }

    call_result add(const std::string& paths) {
        return capture([&] { return exec.set_exec_policy_by_file(paths, 1); });
    }

    call_result remove(const std::string& paths) {
        return capture([&] { return exec.set_exec_policy_by_file(paths, 3); });
    }

    testing::StrictMock<exec_with_states> exec;
};

const char* const not_controlled = "无需管控的文件类型, 无需添加或删除执行管控!\n";

// The batch.

TEST_F(exec_file_change_test, all_good_files_go_out_in_one_call_by_their_absolute_paths) {
    expect_taken("b %s", "/desk/b %s", no_record);
    expect_taken("/home/tavro/a", "/home/tavro/a", no_record);
    expect_taken("b %s", "/desk/b %s", no_record);
    expect_add({"/desk/b %s", "/home/tavro/a", "/desk/b %s"});
    EXPECT_EQ(add("b %s:~/a::b %s"), (call_result{0, ""}));

    expect_taken("b %s", "/desk/b %s");
    expect_taken("/home/tavro/a", "/home/tavro/a");
    expect_delete({"/desk/b %s", "/home/tavro/a"});
    EXPECT_EQ(remove("b %s:~/a"), (call_result{0, ""}));
}

TEST_F(exec_file_change_test, bad_pieces_do_not_stop_the_good_ones) {
    expect_exists("gone", 0);
    expect_taken("a", "/a");
    expect_good_file("text", "/text");
    expect_kind("/text", 4);
    expect_exists("lost");
    expect_absolute_path("lost", std::nullopt);
    expect_taken("b", "/b");
    expect_exists("dir");
    expect_absolute_path("dir", "/dir");
    expect_dir("/dir", 1);
    expect_add({"/a", "/b"});
    EXPECT_EQ(add("gone:a:text:lost:b:dir"), (call_result{0, std::string("文件路径[gone]不存在!\n") + not_controlled +
                                                                 "获取文件[lost]的绝对路径失败\n"
                                                                 "路径[dir]是目录, 请输入文件路径\n"}));
}

TEST_F(exec_file_change_test, a_long_list_goes_out_whole) {
    std::string list;
    texts paths;
    for (int number = 0; number < 300; ++number) {
        const std::string path = "/" + std::to_string(number);
        expect_taken(path, path);
        list += path + ":";
        paths.push_back(path);
    }
    expect_add(paths);
    EXPECT_EQ(add(list), (call_result{0, ""}));
}

TEST_F(exec_file_change_test, an_action_that_is_neither_add_nor_delete_calls_nothing) {
    for (const int action : {0, 2, 4}) {
        expect_taken("/a", "/a", no_record);
        EXPECT_EQ(capture([&] { return exec.set_exec_policy_by_file("/a", action); }), (call_result{0, ""})) << action;
    }
}

// The state of a file.

TEST_F(exec_file_change_test, every_state_is_added) {
    for (const int state : {no_record, intact, tampered, failed}) {
        expect_taken("/a", "/a", state);
        expect_add({"/a"});
        EXPECT_EQ(add("/a"), (call_result{0, ""})) << state;
    }
}

TEST_F(exec_file_change_test, every_state_but_none_is_deleted) {
    for (const int state : {intact, tampered, failed}) {
        expect_taken("/a", "/a", state);
        expect_delete({"/a"});
        EXPECT_EQ(remove("/a"), (call_result{0, ""})) << state;
    }
}

TEST_F(exec_file_change_test, a_file_without_a_record_need_not_be_deleted) {
    expect_taken("a", "/a", no_record);
    expect_taken("b", "/b", intact);
    expect_taken("/home/tavro/c %s", "/home/tavro/c %s", no_record);
    expect_delete({"/b"});
    EXPECT_EQ(remove("a:b:~/c %s"), (call_result{0,
                                                 "文件[a]不在白名单列表中, 无需删除!\n"
                                                 "文件[/home/tavro/c %s]不在白名单列表中, 无需删除!\n"}));

    expect_taken("a", "/a", no_record);
    EXPECT_EQ(remove("a"), (call_result{0, "文件[a]不在白名单列表中, 无需删除!\n"}));
}

TEST_F(exec_file_change_test, the_lines_of_a_failed_look_up_do_not_keep_a_file_out) {
    COrvexExec real;
    for (const int action : {1, 3}) {
        expect_good_file("a", "/a");
        expect_kind("/a", 0);
        expect_look_up("/a", {-5, {}});
        expect_failure_log("check_file_in_policy", "failed to get exectl whlist list by path, path:%s,  ret: %d",
                           "failed to get exectl whlist list by path, path:/a,  ret: -5");
        expect_record_given_back(std::nullopt);
        expect_good_file("b", "/b");
        expect_kind("/b", 0);
        expect_look_up("/b", {0, {"/b", 7}});
        expect_record_given_back("/b");
        if (action == 1) {
            expect_add({"/a", "/b"});
        } else {
            expect_delete({"/a", "/b"});
        }
        EXPECT_EQ(capture([&] { return real.set_exec_policy_by_file("a:b", action); }),
                  (call_result{0,
                               "查询文件[/a]是否在白名单中失败!\n"
                               "未知的白名单状态[7]!\n"}));
    }
}

// The kinds of files.

TEST_F(exec_file_change_test, the_four_controlled_kinds_are_taken) {
    for (const int kind : {0, 1, 2, 3}) {
        expect_good_file("/a", "/a");
        expect_kind("/a", kind);
        expect_state("/a", no_record);
        expect_add({"/a"});
        EXPECT_EQ(add("/a"), (call_result{0, ""})) << kind;
    }
}

TEST_F(exec_file_change_test, every_other_kind_is_refused) {
    for (const int kind : {4, 6, 7, 100, 2147483647, -1, -2147483647 - 1}) {
        expect_good_file("a", "/a");
        expect_kind("/a", kind);
        EXPECT_EQ(add("a"), (call_result{0, not_controlled})) << kind;
        expect_good_file("a", "/a");
        expect_kind("/a", kind);
        EXPECT_EQ(remove("a"), (call_result{0, not_controlled})) << kind;
    }
}

/// Real links: they are resolved by the C library.
class exec_link_change_test : public exec_file_change_test {
protected:
    exec_link_change_test() : target(scratch.write("target", "")), link(scratch.path() + "/link") {
        std::filesystem::create_symlink("target", link);
    }

    const scratch_dir scratch;
    const std::string target;
    const std::string link;
};

TEST_F(exec_link_change_test, a_link_to_a_controlled_file_is_taken_by_its_own_path) {
    for (const int kind : {0, 1, 2, 3}) {
        expect_good_file("link", link);
        expect_kind(link, 5);
        expect_kind(target, kind);
        expect_state(link, intact);
        expect_add({link});
        EXPECT_EQ(add("link"), (call_result{0, ""})) << kind;
    }
    expect_good_file("link", link);
    expect_kind(link, 5);
    expect_kind(target, 1);
    expect_state(link, intact);
    expect_delete({link});
    EXPECT_EQ(remove("link"), (call_result{0, ""}));
}

TEST_F(exec_link_change_test, a_link_to_another_kind_is_refused) {
    // A target that calls itself a link is not followed any further.
    for (const int kind : {4, 5, 6, -1}) {
        expect_good_file("link", link);
        expect_kind(link, 5);
        expect_kind(target, kind);
        EXPECT_EQ(add("link"), (call_result{0, not_controlled})) << kind;
    }
}

TEST_F(exec_link_change_test, a_link_that_cannot_be_resolved_is_dropped_without_a_word) {
    const std::string dangling = scratch.path() + "/dangling";
    const std::string loop = scratch.path() + "/loop";
    std::filesystem::create_symlink("nowhere", dangling);
    std::filesystem::create_symlink("loop", loop);
    for (const std::string& path : {dangling, loop}) {
        expect_good_file(path, path);
        expect_kind(path, 5);
        EXPECT_EQ(add(path), (call_result{0, ""})) << path;
    }
    expect_good_file(dangling, dangling);
    expect_kind(dangling, 5);
    expect_taken("/a", "/a");
    expect_delete({"/a"});
    EXPECT_EQ(remove(dangling + ":/a"), (call_result{0, ""}));
}

// The call.

TEST_F(exec_file_change_test, a_negative_result_is_told_and_logged_with_the_whole_argument) {
    for (const int result : {-1, -4, -2147483647}) {
        expect_taken("a", "/a");
        expect_exists("%s", 0);
        expect_add({"/a"}, result);
        expect_failure_log("set_exec_policy_by_file", "add exectl whlist failed, path: %s, ret: %d",
                           "add exectl whlist failed, path: a:%s:, ret: " + std::to_string(result));
        EXPECT_EQ(add("a:%s:"), (call_result{0, "文件路径[%s]不存在!\n添加文件可执行失败!\n"})) << result;

        expect_taken("/home/tavro/a", "/home/tavro/a");
        expect_delete({"/home/tavro/a"}, result);
        expect_failure_log("set_exec_policy_by_file", "del exectl whlist failed, path: %s, ret: %d",
                           "del exectl whlist failed, path: ~/a, ret: " + std::to_string(result));
        EXPECT_EQ(remove("~/a"), (call_result{0, "删除文件可执行失败!\n"})) << result;
    }
}

TEST_F(exec_file_change_test, a_positive_result_is_a_success) {
    for (const int result : {1, 4, 2147483647}) {
        expect_taken("a", "/a");
        expect_add({"/a"}, result);
        EXPECT_EQ(add("a"), (call_result{0, ""})) << result;
        expect_taken("a", "/a");
        expect_delete({"/a"}, result);
        EXPECT_EQ(remove("a"), (call_result{0, ""})) << result;
    }
}

}  // namespace
