// SPDX-License-Identifier: Apache-2.0
// How the pieces of a list are refused, as a table over the operations of `exec` that take files, and over those that
// take directories.
#include <functional>
#include <ostream>
#include <string>

#include "unit/exec_test.h"

namespace {

/// One operation with everything but its list.
struct operation_row {
    const char* name;
    int (*call)(COrvexExec& exec, const std::string& list);
    /// The listings have some lines of their own.
    bool is_listing;
};

void PrintTo(const operation_row& row, std::ostream* stream) {
    *stream << row.name;
}

std::string name_row(const testing::TestParamInfo<operation_row>& info) {
    return info.param.name;
}

/// A module whose package database the test answers.
class exec_without_packages : public COrvexExec {
public:
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
};

class exec_piece_test : public exec_test, public testing::WithParamInterface<operation_row> {
protected:
    call_result call(const std::string& list) {
        return capture([&] { return GetParam().call(exec, list); });
    }

    testing::StrictMock<exec_without_packages> exec;
};

// Files.

class exec_file_piece_test : public exec_piece_test {};

const operation_row file_operations[] = {
    {"add", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_file(list, 1); }, false},
    {"remove", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_file(list, 3); }, false},
    {"add_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_file(list, 1); }, false},
    {"remove_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_file(list, 3); }, false},
    {"list", [](COrvexExec& exec, const std::string& list) { return exec.get_whlist_status_by_file(list); }, true},
};

TEST_P(exec_file_piece_test, a_list_without_pieces_is_silent) {
    for (const char* const list : {"", ":", ":::"}) {
        EXPECT_EQ(call(list), (call_result{0, ""})) << list;
    }
}

TEST_P(exec_file_piece_test, a_missing_file_is_told_and_the_list_goes_on) {
    // Only 1 is a yes.
    expect_exists("a", 0);
    expect_exists("/b c", 2);
    expect_exists("%s", -1);
    EXPECT_EQ(call("a::/b c:%s:"), (call_result{0,
                                                "文件路径[a]不存在!\n"
                                                "文件路径[/b c]不存在!\n"
                                                "文件路径[%s]不存在!\n"}));
}

TEST_P(exec_file_piece_test, a_file_without_an_absolute_path_is_told_and_the_list_goes_on) {
    expect_exists("a");
    expect_absolute_path("a", std::nullopt);
    expect_exists("%s");
    expect_absolute_path("%s", std::nullopt);
    EXPECT_EQ(call("a:%s"), (call_result{0,
                                         "获取文件[a]的绝对路径失败\n"
                                         "获取文件[%s]的绝对路径失败\n"}));
}

TEST_P(exec_file_piece_test, a_directory_is_told_and_the_list_goes_on) {
    expect_exists("d");
    expect_absolute_path("d", "/desk/d");
    expect_dir("/desk/d", 1);
    expect_exists("/e");
    expect_absolute_path("/e", "/e");
    expect_dir("/e", 1);
    EXPECT_EQ(call("d:/e"), (call_result{0,
                                         "路径[d]是目录, 请输入文件路径\n"
                                         "路径[/e]是目录, 请输入文件路径\n"}));
}

TEST_P(exec_file_piece_test, the_tilde_is_expanded_before_the_tests_and_in_the_lines) {
    expect_exists("/home/tavro/a", 0);
    expect_exists("/home/tavro/b");
    expect_absolute_path("/home/tavro/b", std::nullopt);
    expect_exists("/home/tavro");
    expect_absolute_path("/home/tavro", "/home/tavro");
    expect_dir("/home/tavro", 1);
    expect_exists("~other/c", 0);
    EXPECT_EQ(call("~/a:~/b:~:~other/c"), (call_result{0,
                                                       "文件路径[/home/tavro/a]不存在!\n"
                                                       "获取文件[/home/tavro/b]的绝对路径失败\n"
                                                       "路径[/home/tavro]是目录, 请输入文件路径\n"
                                                       "文件路径[~other/c]不存在!\n"}));
}

TEST_P(exec_file_piece_test, without_a_home_the_tilde_stays_with_two_lines) {
    const given_variable no_home("HOME", nullptr);
    expect_exists("~/a", 0);
    EXPECT_EQ(call("~/a"), (call_result{0,
                                        "错误: HOME环境变量未设置!\n"
                                        "错误: home无效, 无法扩展~字符!\n"
                                        "文件路径[~/a]不存在!\n"}));
}

INSTANTIATE_TEST_SUITE_P(operations, exec_file_piece_test, testing::ValuesIn(file_operations), name_row);

// Directories.

class exec_dir_piece_test : public exec_piece_test {};

const operation_row dir_operations[] = {
    {"add", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_dir(list, 1); }, false},
    {"remove", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_dir(list, 3); }, false},
    {"add_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_dir(list, 1); }, false},
    {"remove_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_dir(list, 3); }, false},
    {"list", [](COrvexExec& exec, const std::string& list) { return exec.get_whlist_status_by_dir(list); }, true},
};

TEST_P(exec_dir_piece_test, a_list_without_pieces_is_silent) {
    for (const char* const list : {"", ":", ":::"}) {
        EXPECT_EQ(call(list), (call_result{0, ""})) << list;
    }
}

TEST_P(exec_dir_piece_test, a_missing_directory_stops_the_list) {
    // Only 1 is a yes.
    for (const int answer : {0, 2, -1}) {
        expect_exists("/missing %s", answer);
        EXPECT_EQ(call("/missing %s:/b"), (call_result{-1, "目录路径[/missing %s]不存在!\n"})) << answer;
    }
}

TEST_P(exec_dir_piece_test, a_file_stops_the_list) {
    for (const int answer : {0, 2, -1}) {
        expect_exists("file %s");
        expect_dir("file %s", answer);
        EXPECT_EQ(call("file %s:/b"), (call_result{-1, "路径[file %s]非目录, 请输入目录路径\n"})) << answer;
    }
}

TEST_P(exec_dir_piece_test, a_directory_without_an_absolute_path_does_not_stop_the_list) {
    for (const char* const piece : {"a %s", "b"}) {
        expect_exists(piece);
        expect_dir(piece, 1);
        expect_absolute_path(piece, std::nullopt);
    }
    EXPECT_EQ(call("a %s:b"), (call_result{0,
                                           "获取目录[a %s]的绝对路径失败\n"
                                           "获取目录[b]的绝对路径失败\n"}));
}

TEST_P(exec_dir_piece_test, the_tilde_is_expanded_before_the_tests) {
    expect_exists("/home/tavro/a");
    expect_dir("/home/tavro/a", 1);
    expect_absolute_path("/home/tavro/a", std::nullopt);
    expect_exists("/home/tavro", 0);
    // The listing shows the piece as the user typed it.
    const std::string shown = GetParam().is_listing ? "~/a" : "/home/tavro/a";
    EXPECT_EQ(call("~/a:~"), (call_result{-1, "获取目录[" + shown +
                                                  "]的绝对路径失败\n"
                                                  "目录路径[/home/tavro]不存在!\n"}));

    expect_exists("/home/tavro/file");
    expect_dir("/home/tavro/file", 0);
    EXPECT_EQ(call("~/file"), (call_result{-1, "路径[/home/tavro/file]非目录, 请输入目录路径\n"}));
}

INSTANTIATE_TEST_SUITE_P(operations, exec_dir_piece_test, testing::ValuesIn(dir_operations), name_row);

// Packages.

class exec_pkg_piece_test : public exec_piece_test {};

const operation_row pkg_operations[] = {
    {"add", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_pkg(list, 1); }, false},
    {"remove", [](COrvexExec& exec, const std::string& list) { return exec.set_exec_policy_by_pkg(list, 3); }, false},
    {"add_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_pkg(list, 1); }, false},
    {"remove_exception",
     [](COrvexExec& exec, const std::string& list) { return exec.set_exec_except_policy_by_pkg(list, 3); }, false},
    {"list", [](COrvexExec& exec, const std::string& list) { return exec.get_whlist_status_by_pkg(list); }, true},
};

TEST_P(exec_pkg_piece_test, a_list_without_pieces_is_silent) {
    for (const char* const list : {"", ":", ":::"}) {
        EXPECT_EQ(call(list), (call_result{0, ""})) << list;
    }
}

TEST_P(exec_pkg_piece_test, packages_that_are_not_installed_are_told_and_the_list_goes_on) {
    EXPECT_CALL(exec, is_pkg_installed("a")).WillOnce(testing::Return(false));
    EXPECT_CALL(exec, is_pkg_installed("~/%s")).WillOnce(testing::Return(false));
    const std::string end = GetParam().is_listing ? "]查询\n" : "]设置\n";
    EXPECT_EQ(call("a::~/%s"), (call_result{0, "不支持未安装的软件包[a" + end + "不支持未安装的软件包[~/%s" + end}));
}

INSTANTIATE_TEST_SUITE_P(operations, exec_pkg_piece_test, testing::ValuesIn(pkg_operations), name_row);

}  // namespace
