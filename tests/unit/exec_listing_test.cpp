// SPDX-License-Identifier: Apache-2.0
// The listings by file, directory and package: which files get a row, and what stops a list.
#include <filesystem>
#include <list>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "framework/output.h"
#include "support/scratch_dir.h"
#include "unit/exec_test.h"

namespace {

namespace fs = std::filesystem;

using testing::DoAll;
using testing::InvokeWithoutArgs;
using testing::Return;
using testing::SetArgReferee;
using testing::Throw;

constexpr int from_user = 1;
constexpr int from_dir = 2;
constexpr int from_pkg = 3;

/// A module whose rows are watched, and whose questions the test answers.
class listing_exec : public COrvexExec {
public:
    MOCK_METHOD(int, print_whlist_status_by_file, (const std::string& path, const int& source, bool verbose),
                (override));
    MOCK_METHOD(bool, is_dir_in_except_list, (const std::string& path), (override));
    MOCK_METHOD(bool, is_pkg_in_except_list, (const std::string& pkg), (override));
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
    MOCK_METHOD(int, get_pkg_files, (const std::string& pkg, std::list<std::string>& files), (override));
};

class exec_listing_test : public exec_test {
protected:
    void expect_row(const std::string& path, int source, bool verbose, int result = 0) {
        EXPECT_CALL(exec, print_whlist_status_by_file(path, source, verbose))
            .WillOnce(DoAll(InvokeWithoutArgs([path] { print_line("row of ", path); }), Return(result)));
    }

    testing::StrictMock<listing_exec> exec;
};

// Files.

class exec_file_listing_test : public exec_listing_test {
protected:
    call_result list(const std::string& paths) {
        return capture([&] { return exec.get_whlist_status_by_file(paths); });
    }
};

TEST_F(exec_file_listing_test, each_file_has_its_row_under_its_absolute_path) {
    expect_good_file("b %s", "/desk/b %s");
    expect_row("/desk/b %s", from_user, true);
    expect_good_file("/home/tavro/a", "/home/tavro/a");
    expect_row("/home/tavro/a", from_user, true);
    EXPECT_EQ(list("b %s::~/a"), (call_result{0, "row of /desk/b %s\nrow of /home/tavro/a\n"}));
}

TEST_F(exec_file_listing_test, neither_a_bad_piece_nor_a_failed_row_stops_the_list) {
    expect_good_file("/a", "/a");
    expect_row("/a", from_user, true, -1);
    expect_exists("/missing", 0);
    expect_exists("/dir");
    expect_absolute_path("/dir", "/dir");
    expect_dir("/dir", 1);
    expect_good_file("/b", "/b");
    expect_row("/b", from_user, true);
    EXPECT_EQ(list("/a:/missing:/dir:/b"), (call_result{0,
                                                        "row of /a\n"
                                                        "文件路径[/missing]不存在!\n"
                                                        "路径[/dir]是目录, 请输入文件路径\n"
                                                        "row of /b\n"}));
}

// Directories: real ones, as the walk is the standard library's.

class exec_dir_listing_test : public exec_listing_test {
protected:
    call_result list(const std::string& paths) {
        return capture([&] { return exec.get_whlist_status_by_dir(paths); });
    }

    /// Expects a good directory that is no exception.
    void expect_plain_dir(const std::string& piece, const std::string& absolute_path) {
        expect_good_dir(piece, absolute_path);
        EXPECT_CALL(exec, is_dir_in_except_list(absolute_path)).WillOnce(Return(false));
    }

    /// The entries below the directory, in the order in which the file system gives them.
    std::vector<std::string> entries(const std::string& dir) const {
        std::vector<std::string> paths;
        for (const auto& entry : fs::recursive_directory_iterator(dir)) {
            paths.push_back(entry.path());
        }
        return paths;
    }

    const scratch_dir scratch;
};

TEST_F(exec_dir_listing_test, every_entry_but_the_directories_is_rated_in_the_order_of_the_walk) {
    scratch.write("d/b", "");
    scratch.write("d/a %s", "");
    scratch.write("d/sub/deep/c", "");
    scratch.write("d/.hidden", "");
    fs::create_directory(scratch.path() + "/d/empty");
    fs::create_symlink("b", scratch.path() + "/d/link");
    fs::create_symlink("nowhere", scratch.path() + "/d/dangling");
    const std::string dir = scratch.path() + "/d";
    expect_plain_dir("d", dir);
    std::string rows;
    for (const std::string& path : entries(dir)) {
        if (!fs::is_directory(path)) {
            expect_row(path, from_dir, false);
            rows += "row of " + path + "\n";
        }
    }
    EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 6);
    EXPECT_EQ(list("d"), (call_result{0, rows}));
}

TEST_F(exec_dir_listing_test, a_link_to_a_directory_is_neither_rated_nor_entered) {
    scratch.write("other/x", "");
    scratch.write("d/sub/a", "");
    fs::create_directory_symlink("../other", scratch.path() + "/d/link");
    fs::create_directory_symlink("..", scratch.path() + "/d/sub/up");
    const std::string dir = scratch.path() + "/d";
    expect_plain_dir(dir, dir);
    expect_row(dir + "/sub/a", from_dir, false);
    EXPECT_EQ(list(dir), (call_result{0, "row of " + dir + "/sub/a\n"}));
}

TEST_F(exec_dir_listing_test, a_directory_may_be_named_by_a_link) {
    scratch.write("d/a", "");
    fs::create_directory_symlink("d", scratch.path() + "/link");
    const std::string link = scratch.path() + "/link";
    expect_plain_dir(link, link);
    expect_row(link + "/a", from_dir, false);
    EXPECT_EQ(list(link), (call_result{0, "row of " + link + "/a\n"}));
}

TEST_F(exec_dir_listing_test, an_exception_directory_has_one_row_of_the_piece_as_typed) {
    expect_good_dir("/home/tavro/x %s/", "/home/tavro/x %s");
    EXPECT_CALL(exec, is_dir_in_except_list("/home/tavro/x %s")).WillOnce(Return(true));
    expect_good_dir("y", "/desk/y");
    EXPECT_CALL(exec, is_dir_in_except_list("/desk/y")).WillOnce(Return(true));
    EXPECT_EQ(list("~/x %s/:y"), (call_result{0, "~/x %s/       例外程序\ny       例外程序\n"}));
}

TEST_F(exec_dir_listing_test, a_bad_piece_stops_the_list_behind_the_rows_in_front_of_it) {
    const std::string file = scratch.write("d/a", "");
    const std::string dir = scratch.path() + "/d";
    expect_plain_dir(dir, dir);
    expect_row(file, from_dir, false);
    expect_exists("/missing", 0);
    EXPECT_EQ(list(dir + ":/missing:/b"), (call_result{-1, "row of " + file + "\n目录路径[/missing]不存在!\n"}));
}

TEST_F(exec_dir_listing_test, failed_rows_do_not_stop_the_walk) {
    scratch.write("d/a", "");
    scratch.write("d/b", "");
    const std::string dir = scratch.path() + "/d";
    expect_plain_dir(dir, dir);
    std::string rows;
    for (const std::string& path : entries(dir)) {
        expect_row(path, from_dir, false, -1);
        rows += "row of " + path + "\n";
    }
    EXPECT_EQ(list(dir), (call_result{0, rows}));
}

/// Returns the text of the error that the standard library makes of a link that leads to itself.
std::string loop_error(const std::string& link) {
    try {
        static_cast<void>(fs::status(link));
    } catch (const fs::filesystem_error& error) {
        return error.what();
    }
    return "no error";
}

TEST_F(exec_dir_listing_test, a_file_system_error_ends_one_directory_and_keeps_its_rows) {
    scratch.write("d %s/a", "");
    scratch.write("d %s/b", "");
    const std::string other = scratch.write("e/c", "");
    const std::string dir = scratch.path() + "/d %s";
    const std::string loop = dir + "/loop";
    fs::create_symlink("loop", loop);
    const given_variable home("HOME", scratch.path().c_str());

    expect_plain_dir(dir, dir);
    std::string rows;
    for (const std::string& path : entries(dir)) {
        if (path == loop) {
            break;
        }
        expect_row(path, from_dir, false);
        rows += "row of " + path + "\n";
    }
    expect_failure_log("get_whlist_status_by_dir", "recursive dir failed, path: %s",
                       "recursive dir failed, path: ~/d %s");
    expect_plain_dir(scratch.path() + "/e", scratch.path() + "/e");
    expect_row(other, from_dir, false);
    EXPECT_EQ(list("~/d %s:~/e"),
              (call_result{0, rows + "文件系统错误: " + loop_error(loop) + "\nrow of " + other + "\n"}));
}

TEST_F(exec_dir_listing_test, a_directory_that_is_gone_before_the_walk_is_a_file_system_error) {
    const std::string gone = scratch.path() + "/gone";
    expect_plain_dir(gone, gone);
    expect_failure_log("get_whlist_status_by_dir", "recursive dir failed, path: %s",
                       "recursive dir failed, path: " + gone);
    const call_result result = list(gone);
    EXPECT_EQ(result.value, 0);
    EXPECT_THAT(result.output, testing::StartsWith("文件系统错误: filesystem error: "));
    EXPECT_THAT(result.output, testing::EndsWith(": No such file or directory [" + gone + "]\n"));
}

TEST_F(exec_dir_listing_test, only_file_system_errors_are_caught) {
    const std::string file = scratch.write("d/a", "");
    const std::string dir = scratch.path() + "/d";
    expect_plain_dir(dir, dir);
    EXPECT_CALL(exec, print_whlist_status_by_file(file, from_dir, false)).WillOnce(Throw(std::runtime_error("other")));
    EXPECT_THROW(list(dir), std::runtime_error);

    expect_plain_dir(dir, dir);
    EXPECT_CALL(exec, print_whlist_status_by_file(file, from_dir, false))
        .WillOnce(Throw(std::system_error(std::make_error_code(std::errc::io_error))));
    EXPECT_THROW(list(dir), std::system_error);
}

// Packages.

class exec_pkg_listing_test : public exec_listing_test {
protected:
    call_result list(const std::string& pkgs) {
        return capture([&] { return exec.get_whlist_status_by_pkg(pkgs); });
    }

    /// Expects an installed package and the question whether it is an exception.
    void expect_installed(const std::string& pkg, bool is_excepted) {
        EXPECT_CALL(exec, is_pkg_installed(pkg)).WillOnce(Return(true));
        EXPECT_CALL(exec, is_pkg_in_except_list(pkg)).WillOnce(Return(is_excepted));
    }

    /// Expects that the files of a package are fetched; each package's list begins empty.
    void expect_files(const std::string& pkg, const std::list<std::string>& files, int result = 0) {
        EXPECT_CALL(exec, get_pkg_files(pkg, testing::IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(files), Return(result)));
    }
};

TEST_F(exec_pkg_listing_test, each_file_has_its_row_in_the_order_of_the_package) {
    expect_installed("p", false);
    expect_files("p", {"/z", "/a %s"});
    expect_row("/z", from_pkg, false, -1);
    expect_row("/a %s", from_pkg, false);
    expect_installed("q", false);
    expect_files("q", {"/z"});
    expect_row("/z", from_pkg, false);
    EXPECT_EQ(list("p::q"), (call_result{0, "row of /z\nrow of /a %s\nrow of /z\n"}));
}

TEST_F(exec_pkg_listing_test, a_package_without_files_is_silent) {
    expect_installed("p", false);
    expect_files("p", {});
    EXPECT_EQ(list("p"), (call_result{0, ""}));
}

TEST_F(exec_pkg_listing_test, an_exception_package_has_one_row_and_its_files_none) {
    expect_installed("p %s", true);
    expect_installed("q", false);
    expect_files("q", {"/b"});
    expect_row("/b", from_pkg, false);
    EXPECT_EQ(list("p %s:q"), (call_result{0, "p %s       例外程序\nrow of /b\n"}));
}

TEST_F(exec_pkg_listing_test, a_package_that_is_not_installed_does_not_stop_the_list) {
    EXPECT_CALL(exec, is_pkg_installed("gone %s")).WillOnce(Return(false));
    expect_installed("q", false);
    expect_files("q", {"/b"});
    expect_row("/b", from_pkg, false);
    EXPECT_EQ(list("gone %s:q"), (call_result{0, "不支持未安装的软件包[gone %s]查询\nrow of /b\n"}));
}

TEST_F(exec_pkg_listing_test, a_package_whose_files_cannot_be_had_stops_the_list) {
    for (const int result : {-1, 1}) {
        expect_installed("p", false);
        expect_files("p", {"/a"});
        expect_row("/a", from_pkg, false);
        expect_installed("lost", false);
        expect_files("lost", {"/half"}, result);
        EXPECT_EQ(list("p:lost:q"), (call_result{-1, "row of /a\n获取软件包中所有文件失败!\n"})) << result;
    }
}

}  // namespace
