// SPDX-License-Identifier: Apache-2.0
// Changing the exceptions by file, directory and package, as a table over the six ways.
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "unit/exec_test.h"

namespace {

using testing::Return;
using texts = std::vector<std::string>;

/// A module whose questions the test answers.
class asked_exec : public COrvexExec {
public:
    MOCK_METHOD(bool, is_file_in_except_list, (const std::string& path), (override));
    MOCK_METHOD(bool, has_except_dir, (const std::string& path), (override));
    MOCK_METHOD(bool, has_except_pkg, (const std::string& pkg), (override));
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
};

using strict_exec = testing::StrictMock<asked_exec>;

enum class object_kind { file, dir, pkg };

/// One way to change the exceptions: its call and its words.
struct change_row {
    const char* name;
    object_kind kind;
    int action;
    void (*expect_call)(service_double& service, const texts& objects, int result);
    const char* needless_head;
    const char* needless_tail;
    const char* failure_head;
    const char* failure_tail;
    const char* function;
    const char* log_format;
    const char* log_head;
};

void PrintTo(const change_row& row, std::ostream* stream) {
    *stream << row.name;
}

std::string name_row(const testing::TestParamInfo<change_row>& info) {
    return info.param.name;
}

void expect_add_files(service_double& service, const texts& objects, int result) {
    EXPECT_CALL(service, orvex_scene_exectl_multi_add_file_in_permissive(objects)).WillOnce(Return(result));
}

void expect_remove_files(service_double& service, const texts& objects, int result) {
    EXPECT_CALL(service, orvex_scene_exectl_multi_remove_file_from_permissive(objects)).WillOnce(Return(result));
}

void expect_add_pkgs(service_double& service, const texts& objects, int result) {
    EXPECT_CALL(service, orvex_scene_exectl_multi_add_package_in_permissive(objects)).WillOnce(Return(result));
}

void expect_remove_pkgs(service_double& service, const texts& objects, int result) {
    EXPECT_CALL(service, orvex_scene_exectl_multi_remove_package_from_permissive(objects)).WillOnce(Return(result));
}

const change_row changes[] = {
    {"add_files", object_kind::file, 1, expect_add_files, "文件[", "]已存在例外程序列表中, 无需重复添加!\n",
     "添加文件[", "]为例外程序失败!\n", "set_exec_except_policy_by_file", "set exectl except failed, path: %s, ret: %d",
     "set exectl except failed, path: "},
    {"delete_files", object_kind::file, 3, expect_remove_files, "文件[", "]不在例外程序列表中, 无需删除!\n",
     "删除文件[", "]为例外程序失败!\n", "set_exec_except_policy_by_file", "del exectl except failed, path: %s, ret: %d",
     "del exectl except failed, path: "},
    {"add_dirs", object_kind::dir, 1, expect_add_files, "目录[", "]已存在例外程序列表中, 无需重复添加!\n", "添加目录[",
     "]下所有文件为例外程序失败!\n", "set_exec_except_policy_by_dir", "set exectl except failed, path: %s, ret: %d",
     "set exectl except failed, path: "},
    {"delete_dirs", object_kind::dir, 3, expect_remove_files, "目录[", "]不在例外程序列表中, 无需删除!\n", "删除目录[",
     "]下所有文件的例外程序失败!\n", "set_exec_except_policy_by_dir", "del exectl except failed, path: %s, ret: %d",
     "del exectl except failed, path: "},
    {"add_pkgs", object_kind::pkg, 1, expect_add_pkgs, "软件包[", "]已存在例外程序列表中, 无需重复添加!\n",
     "添加软件包[", "]中所有例外程序失败!\n", "set_exec_except_policy_by_pkg",
     "set exectl except failed, pkg: %s, ret: %d", "set exectl except failed, pkg: "},
    {"delete_pkgs", object_kind::pkg, 3, expect_remove_pkgs, "软件包[", "]不在例外程序列表中, 无需删除!\n",
     "删除软件包[", "]中所有例外程序失败!\n", "set_exec_except_policy_by_pkg",
     "del exectl except failed, pkg: %s, ret: %d", "del exectl except failed, pkg: "},
};

class exec_exception_test : public exec_test, public testing::WithParamInterface<change_row> {
protected:
    call_result change(const std::string& list) { return change(exec, list, GetParam().action); }

    call_result change(COrvexExec& module, const std::string& list, int action) {
        return capture([&] {
            switch (GetParam().kind) {
                case object_kind::file:
                    return module.set_exec_except_policy_by_file(list, action);
                case object_kind::dir:
                    return module.set_exec_except_policy_by_dir(list, action);
                default:
                    return module.set_exec_except_policy_by_pkg(list, action);
            }
        });
    }

    /// Expects the tests of a piece, which it passes, and the question whether it is an exception.
    void expect_piece(const std::string& piece, const std::string& object, bool is_listed) {
        switch (GetParam().kind) {
            case object_kind::file:
                expect_good_file(piece, object);
                EXPECT_CALL(exec, is_file_in_except_list(object)).WillOnce(Return(is_listed));
                break;
            case object_kind::dir:
                expect_good_dir(piece, object);
                EXPECT_CALL(exec, has_except_dir(object)).WillOnce(Return(is_listed));
                break;
            case object_kind::pkg:
                EXPECT_CALL(exec, is_pkg_installed(piece)).WillOnce(Return(true));
                EXPECT_CALL(exec, has_except_pkg(piece)).WillOnce(Return(is_listed));
                break;
        }
    }

    /// Expects a piece that needs the change.
    void expect_taken(const std::string& piece, const std::string& object) {
        expect_piece(piece, object, GetParam().action != 1);
    }

    /// Expects a piece that is in the wanted state already.
    void expect_needless(const std::string& piece, const std::string& object) {
        expect_piece(piece, object, GetParam().action == 1);
    }

    static std::string needless_line(const std::string& shown) {
        return GetParam().needless_head + shown + GetParam().needless_tail;
    }

    /// What goes to the library and into the question: paths absolute, packages as they were typed.
    static std::string absolute(const std::string& piece) {
        return GetParam().kind == object_kind::pkg ? piece : "/desk/" + piece;
    }

    strict_exec exec;
};

TEST_P(exec_exception_test, all_pieces_go_out_in_one_call) {
    expect_taken("b %s", absolute("b %s"));
    expect_taken("a", absolute("a"));
    expect_taken("b %s", absolute("b %s"));
    GetParam().expect_call(service, {absolute("b %s"), absolute("a"), absolute("b %s")}, 0);
    EXPECT_EQ(change("b %s::a:b %s"), (call_result{0, ""}));
}

TEST_P(exec_exception_test, a_piece_in_the_wanted_state_is_told_and_left_out) {
    expect_needless("a %s", absolute("a %s"));
    expect_taken("b", absolute("b"));
    expect_needless("c", absolute("c"));
    GetParam().expect_call(service, {absolute("b")}, 0);
    EXPECT_EQ(change("a %s:b:c"), (call_result{0, needless_line("a %s") + needless_line("c")}));
}

TEST_P(exec_exception_test, without_a_piece_left_there_is_no_call) {
    expect_needless("a", absolute("a"));
    EXPECT_EQ(change("a"), (call_result{0, needless_line("a")}));
}

TEST_P(exec_exception_test, any_other_result_is_told_and_logged_with_the_whole_argument) {
    for (const int result : {-1, -4, 1, 2147483647}) {
        expect_taken("a %s", absolute("a %s"));
        expect_needless("b", absolute("b"));
        GetParam().expect_call(service, {absolute("a %s")}, result);
        expect_failure_log(GetParam().function, GetParam().log_format,
                           GetParam().log_head + std::string("a %s:b:, ret: ") + std::to_string(result));
        EXPECT_EQ(change("a %s:b:"),
                  (call_result{0, needless_line("b") + GetParam().failure_head + "a %s:b:" + GetParam().failure_tail}))
            << result;
    }
}

TEST_P(exec_exception_test, the_tilde_is_expanded_for_paths_and_kept_for_packages) {
    const bool is_path = GetParam().kind != object_kind::pkg;
    const std::string object = is_path ? "/home/tavro/a" : "~/a";
    expect_needless(object, object);
    EXPECT_EQ(change("~/a"), (call_result{0, needless_line(object)}));

    expect_taken(object, object);
    GetParam().expect_call(service, {object}, 1);
    expect_failure_log(GetParam().function, GetParam().log_format, GetParam().log_head + std::string("~/a, ret: 1"));
    EXPECT_EQ(change("~/a"), (call_result{0, GetParam().failure_head + std::string("~/a") + GetParam().failure_tail}));
}

TEST_P(exec_exception_test, a_list_that_cannot_be_fetched_counts_as_empty) {
    class installed_exec : public COrvexExec {
        bool is_pkg_installed(const std::string& /*pkg*/) override { return true; }
    };
    installed_exec real;
    if (GetParam().kind == object_kind::pkg) {
        expect_exception_pkgs(give_no_list());
    } else {
        if (GetParam().kind == object_kind::file) {
            expect_good_file("/a", "/a");
        } else {
            expect_good_dir("/a", "/a");
        }
        expect_exception_files(give_no_list());
    }
    if (GetParam().action == 1) {
        GetParam().expect_call(service, {"/a"}, 0);
        EXPECT_EQ(change(real, "/a", 1), (call_result{0, ""}));
    } else {
        EXPECT_EQ(change(real, "/a", 3), (call_result{0, needless_line("/a")}));
    }
}

TEST_P(exec_exception_test, an_action_that_is_neither_add_nor_delete_calls_nothing) {
    for (const int action : {0, 2, 4}) {
        for (const bool is_listed : {true, false}) {
            expect_piece("a", absolute("a"), is_listed);
            EXPECT_EQ(change(exec, "a", action), (call_result{0, ""})) << action;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ways, exec_exception_test, testing::ValuesIn(changes), name_row);

// How a bad piece counts is where the three differ.

class exec_bad_exception_test : public exec_test {
protected:
    void expect_new_file(const std::string& path) {
        expect_good_file(path, path);
        EXPECT_CALL(exec, is_file_in_except_list(path)).WillOnce(Return(false));
    }

    void expect_new_dir(const std::string& path) {
        expect_good_dir(path, path);
        EXPECT_CALL(exec, has_except_dir(path)).WillOnce(Return(false));
    }

    call_result add_files(const std::string& paths) {
        return capture([&] { return exec.set_exec_except_policy_by_file(paths, 1); });
    }

    call_result add_dirs(const std::string& paths) {
        return capture([&] { return exec.set_exec_except_policy_by_dir(paths, 1); });
    }

    strict_exec exec;
};

TEST_F(exec_bad_exception_test, a_bad_file_leaves_the_others_in) {
    expect_new_file("/a");
    expect_exists("/missing", 0);
    expect_exists("/dir");
    expect_absolute_path("/dir", "/dir");
    expect_dir("/dir", 1);
    expect_new_file("/b");
    expect_add_files(service, {"/a", "/b"}, 0);
    EXPECT_EQ(add_files("/a:/missing:/dir:/b"), (call_result{0,
                                                             "文件路径[/missing]不存在!\n"
                                                             "路径[/dir]是目录, 请输入文件路径\n"}));
}

TEST_F(exec_bad_exception_test, a_file_of_any_kind_may_be_one) {
    // No kind is asked for.
    expect_new_file("/text");
    expect_add_files(service, {"/text"}, 0);
    EXPECT_EQ(add_files("/text"), (call_result{0, ""}));
}

TEST_F(exec_bad_exception_test, a_bad_directory_keeps_the_whole_list_out) {
    expect_new_dir("/a");
    expect_exists("/missing", 0);
    EXPECT_EQ(add_dirs("/a:/missing:/b"), (call_result{-1, "目录路径[/missing]不存在!\n"}));

    expect_new_dir("/a");
    expect_exists("/file");
    expect_dir("/file", 0);
    EXPECT_EQ(add_dirs("/a:/file:/b"), (call_result{-1, "路径[/file]非目录, 请输入目录路径\n"}));
}

TEST_F(exec_bad_exception_test, a_directory_without_an_absolute_path_leaves_the_others_in) {
    expect_exists("/a");
    expect_dir("/a", 1);
    expect_absolute_path("/a", std::nullopt);
    expect_new_dir("/b");
    expect_add_files(service, {"/b"}, 0);
    EXPECT_EQ(add_dirs("/a:/b"), (call_result{0, "获取目录[/a]的绝对路径失败\n"}));
}

TEST_F(exec_bad_exception_test, a_package_that_is_not_installed_leaves_the_others_in) {
    EXPECT_CALL(exec, is_pkg_installed("gone")).WillOnce(Return(false));
    EXPECT_CALL(exec, is_pkg_installed("p")).WillOnce(Return(true));
    EXPECT_CALL(exec, has_except_pkg("p")).WillOnce(Return(true));
    expect_remove_pkgs(service, {"p"}, 0);
    EXPECT_EQ(capture([&] { return exec.set_exec_except_policy_by_pkg("gone:p", 3); }),
              (call_result{0, "不支持未安装的软件包[gone]设置\n"}));
}

// On the lists as the library keeps them.

class exec_listed_exception_test : public exec_test {
protected:
    COrvexExec exec;
};

TEST_F(exec_listed_exception_test, a_directory_is_found_by_its_entry_with_the_star) {
    expect_good_dir("/a/b/", "/a/b");
    expect_exception_files(give_list({"/x", "/a/b/*"}));
    EXPECT_EQ(capture([&] { return exec.set_exec_except_policy_by_dir("/a/b/", 1); }),
              (call_result{0, "目录[/a/b/]已存在例外程序列表中, 无需重复添加!\n"}));

    expect_good_dir("/a/b/", "/a/b");
    expect_exception_files(give_list({"/x", "/a/b/*"}));
    expect_remove_files(service, {"/a/b"}, 0);
    EXPECT_EQ(capture([&] { return exec.set_exec_except_policy_by_dir("/a/b/", 3); }), (call_result{0, ""}));
}

TEST_F(exec_listed_exception_test, a_file_inside_an_exception_directory_is_no_entry) {
    expect_good_file("/a/b/x", "/a/b/x");
    expect_exception_files(give_list({"/a/b/*"}));
    EXPECT_EQ(capture([&] { return exec.set_exec_except_policy_by_file("/a/b/x", 3); }),
              (call_result{0, "文件[/a/b/x]不在例外程序列表中, 无需删除!\n"}));
}

TEST_F(exec_listed_exception_test, the_list_is_fetched_anew_for_each_piece) {
    expect_good_file("/a", "/a");
    expect_exception_files(give_list({"/a"}));
    expect_good_file("/b", "/b");
    expect_exception_files(give_list({"/b", nullptr}));
    EXPECT_EQ(capture([&] { return exec.set_exec_except_policy_by_file("/a:/b", 1); }),
              (call_result{0,
                           "文件[/a]已存在例外程序列表中, 无需重复添加!\n"
                           "文件[/b]已存在例外程序列表中, 无需重复添加!\n"}));
}

}  // namespace
