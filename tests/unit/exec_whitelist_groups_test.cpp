// SPDX-License-Identifier: Apache-2.0
// Changing the whitelist by directory, one call for each, and by package, one call for all.
#include <list>
#include <string>
#include <vector>

#include "unit/exec_test.h"

namespace {

using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;
using texts = std::vector<std::string>;

// Directories.

class exec_dir_change_test : public exec_test {
protected:
    void expect_add(const std::string& path, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_add_by_dir(path)).WillOnce(Return(result));
    }

    void expect_delete(const std::string& path, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_delete_by_dir(path)).WillOnce(Return(result));
    }

    call_result add(const std::string& paths) {
        return capture([&] { return exec.set_exec_policy_by_dir(paths, 1); });
    }

    call_result remove(const std::string& paths) {
        return capture([&] { return exec.set_exec_policy_by_dir(paths, 3); });
    }

    COrvexExec exec;
};

TEST_F(exec_dir_change_test, each_directory_is_changed_by_its_absolute_path_before_the_next_is_looked_at) {
    expect_good_dir("a %s/", "/desk/a %s");
    expect_add("/desk/a %s");
    expect_good_dir("/home/tavro/b", "/home/tavro/b");
    expect_add("/home/tavro/b");
    EXPECT_EQ(add("a %s/::~/b"), (call_result{0, ""}));

    expect_good_dir("a %s/", "/desk/a %s");
    expect_delete("/desk/a %s");
    expect_good_dir("/home/tavro/b", "/home/tavro/b");
    expect_delete("/home/tavro/b");
    EXPECT_EQ(remove("a %s/::~/b"), (call_result{0, ""}));
}

TEST_F(exec_dir_change_test, what_stands_before_a_bad_piece_stays_done) {
    expect_good_dir("/a", "/a");
    expect_add("/a");
    expect_exists("/missing", 0);
    EXPECT_EQ(add("/a:/missing:/b"), (call_result{-1, "目录路径[/missing]不存在!\n"}));

    expect_good_dir("/a", "/a");
    expect_delete("/a");
    expect_exists("/file");
    expect_dir("/file", 0);
    EXPECT_EQ(remove("/a:/file:/b"), (call_result{-1, "路径[/file]非目录, 请输入目录路径\n"}));
}

TEST_F(exec_dir_change_test, a_directory_without_an_absolute_path_is_left_out) {
    expect_exists("/a");
    expect_dir("/a", 1);
    expect_absolute_path("/a", std::nullopt);
    expect_good_dir("/b", "/b");
    expect_add("/b");
    EXPECT_EQ(add("/a:/b"), (call_result{0, "获取目录[/a]的绝对路径失败\n"}));
}

TEST_F(exec_dir_change_test, a_negative_result_is_told_and_logged_and_the_list_goes_on) {
    for (const int result : {-1, -4, -2147483647}) {
        expect_good_dir("~x %s", "/desk/~x %s");
        expect_add("/desk/~x %s", result);
        expect_failure_log("set_exec_policy_by_dir", "add exectl whlist failed, path: %s, ret: %d",
                           "add exectl whlist failed, path: /desk/~x %s, ret: " + std::to_string(result));
        expect_good_dir("/b", "/b");
        expect_add("/b");
        EXPECT_EQ(add("~x %s:/b"), (call_result{0, "添加目录[~x %s]下所有文件可执行失败!\n"})) << result;

        expect_good_dir("/home/tavro/x", "/data/tavro/x");
        expect_delete("/data/tavro/x", result);
        expect_failure_log("set_exec_policy_by_dir", "del exectl whlist failed, path: %s, ret: %d",
                           "del exectl whlist failed, path: /data/tavro/x, ret: " + std::to_string(result));
        expect_good_dir("/b", "/b");
        expect_delete("/b");
        EXPECT_EQ(remove("~/x:/b"), (call_result{0, "删除目录[/home/tavro/x]下所有文件可执行失败!\n"})) << result;
    }
}

TEST_F(exec_dir_change_test, a_positive_result_is_a_success) {
    for (const int result : {1, 2147483647}) {
        expect_good_dir("/a", "/a");
        expect_add("/a", result);
        EXPECT_EQ(add("/a"), (call_result{0, ""})) << result;
        expect_good_dir("/a", "/a");
        expect_delete("/a", result);
        EXPECT_EQ(remove("/a"), (call_result{0, ""})) << result;
    }
}

TEST_F(exec_dir_change_test, an_action_that_is_neither_add_nor_delete_calls_nothing) {
    for (const int action : {0, 2, 4}) {
        expect_good_dir("/a", "/a");
        EXPECT_EQ(capture([&] { return exec.set_exec_policy_by_dir("/a", action); }), (call_result{0, ""})) << action;
    }
}

// Packages.

/// A module whose package database the test answers.
class exec_with_packages : public COrvexExec {
public:
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
    MOCK_METHOD(int, get_pkg_files, (const std::string& pkg, std::list<std::string>& files), (override));
};

class exec_pkg_change_test : public exec_test {
protected:
    void expect_installed(const std::string& pkg, bool answer = true) {
        EXPECT_CALL(exec, is_pkg_installed(pkg)).WillOnce(Return(answer));
    }

    /// Expects an installed package with these files. Each package's list begins empty.
    void expect_pkg(const std::string& pkg, const std::list<std::string>& files, int result = 0) {
        expect_installed(pkg);
        EXPECT_CALL(exec, get_pkg_files(pkg, testing::IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(files), Return(result)));
    }

    void expect_add(const texts& paths, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_multi_add(paths)).WillOnce(Return(result));
    }

    void expect_delete(const texts& paths, int result = 0) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_multi_delete(paths)).WillOnce(Return(result));
    }

    call_result add(const std::string& pkgs) {
        return capture([&] { return exec.set_exec_policy_by_pkg(pkgs, 1); });
    }

    call_result remove(const std::string& pkgs) {
        return capture([&] { return exec.set_exec_policy_by_pkg(pkgs, 3); });
    }

    testing::StrictMock<exec_with_packages> exec;
};

TEST_F(exec_pkg_change_test, the_controlled_files_of_all_packages_go_out_in_one_call_in_their_order) {
    for (const bool is_add : {true, false}) {
        expect_pkg("p", {"/z", "/a %s", "/m"});
        expect_kind("/z", 3);
        expect_kind("/a %s", 0);
        expect_kind("/m", 1);
        expect_pkg("q", {"/b", "/z"});
        expect_kind("/b", 2);
        expect_kind("/z", 3);
        const texts files = {"/z", "/a %s", "/m", "/b", "/z"};
        if (is_add) {
            expect_add(files);
            EXPECT_EQ(add("p::q"), (call_result{0, ""}));
        } else {
            expect_delete(files);
            EXPECT_EQ(remove("p::q"), (call_result{0, ""}));
        }
    }
}

TEST_F(exec_pkg_change_test, files_of_other_kinds_stay_out_without_a_word_and_links_are_not_resolved) {
    expect_pkg("p", {"/link", "/text", "/a", "/dir", "/bad"});
    expect_kind("/link", 5);
    expect_kind("/text", 4);
    expect_kind("/a", 1);
    expect_kind("/dir", 6);
    expect_kind("/bad", -1);
    expect_add({"/a"});
    EXPECT_EQ(add("p"), (call_result{0, ""}));
}

TEST_F(exec_pkg_change_test, without_a_controlled_file_there_is_no_call) {
    expect_pkg("p", {"/text", "/link"});
    expect_kind("/text", 4);
    expect_kind("/link", 5);
    expect_pkg("empty", {});
    EXPECT_EQ(add("p:empty"), (call_result{0, ""}));
}

TEST_F(exec_pkg_change_test, an_action_that_is_neither_add_nor_delete_calls_nothing) {
    for (const int action : {0, 2, 4}) {
        expect_pkg("p", {"/a"});
        expect_kind("/a", 1);
        EXPECT_EQ(capture([&] { return exec.set_exec_policy_by_pkg("p", action); }), (call_result{0, ""})) << action;
    }
}

TEST_F(exec_pkg_change_test, a_package_that_is_not_installed_leaves_the_others_in) {
    expect_installed("gone", false);
    expect_pkg("p", {"/a"});
    expect_kind("/a", 0);
    expect_installed("~/x", false);
    expect_add({"/a"});
    EXPECT_EQ(add("gone:p:~/x"), (call_result{0,
                                              "不支持未安装的软件包[gone]设置\n"
                                              "不支持未安装的软件包[~/x]设置\n"}));
}

TEST_F(exec_pkg_change_test, a_package_whose_files_cannot_be_had_leaves_the_others_in) {
    for (const int result : {-1, 1}) {
        expect_pkg("p", {"/a"});
        expect_kind("/a", 0);
        // What the list holds all the same does not count.
        expect_pkg("lost %s", {"/half"}, result);
        expect_pkg("q", {"/b"});
        expect_kind("/b", 0);
        expect_delete({"/a", "/b"});
        EXPECT_EQ(remove("p:lost %s:q"), (call_result{0, "获取软件包[lost %s]中所有文件失败!\n"})) << result;
    }
}

TEST_F(exec_pkg_change_test, without_a_good_package_the_result_is_0) {
    expect_pkg("lost", {}, -1);
    EXPECT_EQ(add("lost"), (call_result{0, "获取软件包[lost]中所有文件失败!\n"}));
    expect_installed("gone", false);
    EXPECT_EQ(remove("gone"), (call_result{0, "不支持未安装的软件包[gone]设置\n"}));
}

TEST_F(exec_pkg_change_test, a_negative_result_is_told_and_logged_with_the_whole_argument_and_returned) {
    for (const int result : {-1, -4, -2147483647}) {
        for (const bool is_add : {true, false}) {
            expect_pkg("p %s", {"/a"});
            expect_kind("/a", 0);
            expect_installed("q", false);
            if (is_add) {
                expect_add({"/a"}, result);
            } else {
                expect_delete({"/a"}, result);
            }
            // The word "set" stands for the delete too.
            expect_failure_log("set_exec_policy_by_pkg", "set exectl whlist failed, pkg: %s, ret: %d",
                               "set exectl whlist failed, pkg: p %s:q:, ret: " + std::to_string(result));
            const std::string refusal = "不支持未安装的软件包[q]设置\n";
            if (is_add) {
                EXPECT_EQ(add("p %s:q:"),
                          (call_result{result, refusal + "添加软件包[p %s:q:]中所有文件可执行失败!\n"}));
            } else {
                EXPECT_EQ(remove("p %s:q:"),
                          (call_result{result, refusal + "删除软件包[p %s:q:]中所有文件可执行失败!\n"}));
            }
        }
    }
}

TEST_F(exec_pkg_change_test, a_positive_result_is_returned_without_a_word) {
    for (const int result : {1, 2147483647}) {
        expect_pkg("p", {"/a"});
        expect_kind("/a", 0);
        expect_add({"/a"}, result);
        EXPECT_EQ(add("p"), (call_result{result, ""}));
        expect_pkg("p", {"/a"});
        expect_kind("/a", 0);
        expect_delete({"/a"}, result);
        EXPECT_EQ(remove("p"), (call_result{result, ""}));
    }
}

TEST_F(exec_pkg_change_test, a_package_that_vanishes_between_the_two_look_ups_is_left_out) {
    expect_pkg("p", {}, -1);
    expect_pkg("q", {"/b"});
    expect_kind("/b", 0);
    expect_add({"/b"}, 3);
    EXPECT_EQ(add("p:q"), (call_result{3, "获取软件包[p]中所有文件失败!\n"}));
}

}  // namespace
