// SPDX-License-Identifier: Apache-2.0
// How the operations of `net` on program files resolve the path that the user gave.
#include <stdexcept>

#include "unit/net_program_cases.h"

namespace {

using operation = net_operation;
using testing::Eq;
using testing::Return;

/// The answers to a yes-or-no question that mean no: only 1 means yes.
constexpr int answers_for_no[] = {0, 2, -1};

class net_paths_test : public net_program_test {
protected:
    void expect_exists(const std::string& path, int answer) {
        EXPECT_CALL(service, path_is_exist(path)).WillOnce(Return(answer));
    }

    void expect_dir(const std::string& path, int answer) {
        EXPECT_CALL(service, path_is_dir(path)).WillOnce(Return(answer));
    }

    void expect_absolute(const std::string& path, const maybe_text& answer) {
        EXPECT_CALL(service, get_absolute_path(path)).WillOnce(Return(answer));
    }

    /// Expects that a file without policies is looked up in this form.
    void expect_look_up(const std::string& path) {
        expect_ext_read(path, std::nullopt);
        EXPECT_CALL(net, get_pkg_by_file(path)).WillOnce([this](const std::string& /*path*/) {
            EXPECT_EQ(service.memory().count_out(), 0U) << "the path of the library is not needed any more";
            return "";
        });
    }
};

// Adding and updating.

TEST_F(net_paths_test, a_missing_file_is_not_added_nor_updated) {
    for (const operation wanted : {operation::add, operation::update}) {
        for (const char* path : {"no/such %s", "/no/such %s"}) {
            for (const int answer : answers_for_no) {
                expect_exists(path, answer);
                EXPECT_EQ(change(wanted, path, 1), (call_result{-1, std::string("文件路径[") + path + "]不存在!\n"}));
            }
        }
    }
}

TEST_F(net_paths_test, a_directory_is_not_added_nor_updated) {
    for (const operation wanted : {operation::add, operation::update}) {
        expect_exists("/etc", 1);
        expect_dir("/etc", 1);
        EXPECT_EQ(change(wanted, "/etc", 1), (call_result{-1, "路径[/etc]是目录, 请输入文件路径\n"}));
    }
}

TEST_F(net_paths_test, a_file_without_an_absolute_path_is_not_added_nor_updated) {
    for (const operation wanted : {operation::add, operation::update}) {
        expect_exists("a %s", 1);
        expect_dir("a %s", 0);
        expect_absolute("a %s", std::nullopt);
        EXPECT_EQ(change(wanted, "a %s", 1), (call_result{-1, "获取文件[a %s]的绝对路径失败\n"}));
    }
}

TEST_F(net_paths_test, any_other_answer_than_1_is_no_directory) {
    for (const int answer : answers_for_no) {
        expect_exists("a", 1);
        expect_dir("a", answer);
        expect_absolute("a", "/home/a");
        expect_look_up("/home/a");
        EXPECT_EQ(change(operation::update, "a", 1), (call_result{0, "程序[a]的联网管控策略不存在, 请先添加!\n"}));
    }
}

TEST_F(net_paths_test, an_absolute_path_is_made_absolute_all_the_same) {
    expect_good_file("/a/../b", "/b");
    expect_look_up("/b");
    EXPECT_EQ(change(operation::update, "/a/../b", 1),
              (call_result{0, "程序[/a/../b]的联网管控策略不存在, 请先添加!\n"}));

    expect_good_file("/a/../b", "/b");
    expect_look_up("/b");
    EXPECT_CALL(service, orvex_netctl_ext_add(0, "/b", 2, "/b", Eq(std::nullopt), Eq(std::nullopt), 2))
        .WillOnce(Return(0));
    EXPECT_EQ(change(operation::add, "/a/../b", 0), (call_result{0, ""}));
}

// Deleting.

TEST_F(net_paths_test, an_absolute_path_is_deleted_untested_and_as_it_stands) {
    for (const char* path : {"/no/such %s", "/a/../b", "/etc/", "/", "//"}) {
        expect_look_up(path);
        EXPECT_EQ(change(operation::remove, path, 0),
                  (call_result{0, std::string("程序[") + path + "]的联网管控策略不存在, 无需删除!\n"}));
    }
}

TEST_F(net_paths_test, a_missing_relative_path_asks_for_an_absolute_one) {
    for (const int answer : answers_for_no) {
        expect_exists("no/such %s", answer);
        EXPECT_EQ(change(operation::remove, "no/such %s", 0),
                  (call_result{-1, "文件[no/such %s]不存在, 请输入文件据对路径!\n"}));
    }
}

TEST_F(net_paths_test, a_relative_directory_is_not_deleted) {
    expect_exists("dir", 1);
    expect_dir("dir", 1);
    EXPECT_EQ(change(operation::remove, "dir", 0), (call_result{-1, "路径[dir]是目录, 请输入文件路径\n"}));
}

TEST_F(net_paths_test, a_relative_path_without_an_absolute_one_is_not_deleted) {
    expect_exists("a %s", 1);
    expect_dir("a %s", 0);
    expect_absolute("a %s", std::nullopt);
    EXPECT_EQ(change(operation::remove, "a %s", 0), (call_result{-1, "获取文件[a %s]的绝对路径失败\n"}));
}

TEST_F(net_paths_test, a_relative_path_is_deleted_and_told_in_its_absolute_form) {
    for (const int answer : answers_for_no) {
        expect_exists("a", 1);
        expect_dir("a", answer);
        expect_absolute("a", "/home/a");
        expect_look_up("/home/a");
        EXPECT_EQ(change(operation::remove, "a", 0),
                  (call_result{0, "程序[/home/a]的联网管控策略不存在, 无需删除!\n"}));
    }
}

TEST_F(net_paths_test, whether_the_path_is_absolute_is_asked_of_the_object) {
    class absolute_watcher : public asked_net {
    public:
        MOCK_METHOD(bool, is_absolute_path, (const std::string& path), (override));
    };
    testing::StrictMock<absolute_watcher> watched;
    EXPECT_CALL(watched, is_absolute_path("a")).WillOnce(Return(true));
    expect_ext_read("a", std::nullopt);
    EXPECT_CALL(watched, get_pkg_by_file("a")).WillOnce(Return(""));
    EXPECT_EQ(capture([&] { return watched.del_net_policy_by_file("a"); }),
              (call_result{0, "程序[a]的联网管控策略不存在, 无需删除!\n"}));
}

TEST_F(net_paths_test, an_empty_path_cannot_be_deleted_at_all) {
    EXPECT_THROW(net.del_net_policy_by_file(""), std::out_of_range);
}

// A path is one path.

TEST_F(net_paths_test, lists_and_homes_are_not_known_here) {
    for (const char* path : {"~/a", "~", "a:b", "/a:/b", "-x", " ", "a\nb", "\xff", "程序"}) {
        expect_exists(path, 0);
        EXPECT_EQ(change(operation::add, path, 0), (call_result{-1, std::string("文件路径[") + path + "]不存在!\n"}));
        expect_exists(path, 0);
        EXPECT_EQ(change(operation::update, path, 1),
                  (call_result{-1, std::string("文件路径[") + path + "]不存在!\n"}));
    }
}

}  // namespace
