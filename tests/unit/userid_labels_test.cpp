// SPDX-License-Identifier: Apache-2.0
// What the operations of `userid` ask and print. A single file and a batch differ on purpose.
#include <gmock/gmock.h>

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "framework/output.h"
#include "modules/userid/userid_module.h"
#include "support/module_test.h"

namespace {

using testing::_;
using testing::DoAll;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

/// A module whose packages are the test's.
class userid_with_packages : public COrvexUserid {
public:
    MOCK_METHOD(int, get_pkg_files, (const std::string& pkg, std::list<std::string>& files), (override));
};

class userid_test : public module_test {
protected:
    /// Expects the question for a role's files.
    void expect_role(int user_type, const given_list& files) {
        EXPECT_CALL(service, orvex_scene_admctl_get_user_policy(user_type)).WillOnce(Return(files));
    }

    /// Expects the comparison of a role's file with a path, which are not the same text.
    void expect_comparison(const std::string& labelled, const std::string& path, int answer) {
        EXPECT_CALL(service, path_is_same(labelled, path)).WillOnce(Return(answer));
    }

    void expect_absolute(const std::string& path, const maybe_text& absolute_path) {
        EXPECT_CALL(service, get_absolute_path(path)).WillOnce(Return(absolute_path));
    }

    testing::StrictMock<userid_with_packages> userid;
};

const given_list no_files = give_no_list();

// One file.

class userid_by_file_test : public userid_test {
protected:
    call_result print(const std::string& path) {
        return capture([&] { return userid.print_userid_by_file(path); });
    }
};

TEST_F(userid_by_file_test, without_an_absolute_path_it_fails) {
    expect_absolute("a %s", std::nullopt);
    EXPECT_EQ(print("a %s"), (call_result{-1, "获取文件[a %s]的绝对路径失败!\n"}));
}

TEST_F(userid_by_file_test, the_role_is_printed_with_the_absolute_path) {
    expect_absolute("a", "/x/a");
    expect_role(0, give_list({"/x/a"}));
    EXPECT_EQ(print("a"), (call_result{0, "/x/a: root\n"}));

    expect_absolute("a", "/x/a");
    expect_role(0, no_files);
    expect_role(1, give_list({"/x/a"}));
    EXPECT_EQ(print("a"), (call_result{0, "/x/a: secadm\n"}));

    expect_absolute("a", "/x/a");
    expect_role(0, no_files);
    expect_role(1, no_files);
    expect_role(2, give_list({"/x/a"}));
    EXPECT_EQ(print("a"), (call_result{0, "/x/a: auditadm\n"}));
}

TEST_F(userid_by_file_test, a_file_on_no_list_has_none) {
    expect_absolute("/a", "/a");
    expect_role(0, give_list({}));
    expect_role(1, give_no_list(3));
    expect_role(2, give_list({"/b", "/a/", "/"}));
    expect_comparison("/b", "/a", 0);
    expect_comparison("/a/", "/a", 2);
    expect_comparison("/", "/a", -1);
    EXPECT_EQ(print("/a"), (call_result{0, "/a: none\n"}));
}

TEST_F(userid_by_file_test, the_first_role_counts_and_the_others_are_not_asked) {
    expect_absolute("/a", "/a");
    expect_role(0, give_list({"/b", "/a"}));
    expect_comparison("/b", "/a", 0);
    EXPECT_EQ(print("/a"), (call_result{0, "/a: root\n"}));

    expect_absolute("/a", "/a");
    expect_role(0, give_list({"/b"}));
    expect_comparison("/b", "/a", 0);
    expect_role(1, give_list({"/a"}));
    EXPECT_EQ(print("/a"), (call_result{0, "/a: secadm\n"}));
}

TEST_F(userid_by_file_test, equal_text_needs_no_comparison_and_ends_the_search) {
    expect_absolute("/a", "/a");
    expect_role(0, give_list({"/a", "/b"}));
    EXPECT_EQ(print("/a"), (call_result{0, "/a: root\n"}));
}

TEST_F(userid_by_file_test, the_same_file_under_another_name_ends_the_search) {
    expect_absolute("/a", "/a");
    expect_role(0, give_list({"/b", "/link", "/c", "/a"}));
    expect_comparison("/b", "/a", 0);
    expect_comparison("/link", "/a", 1);
    EXPECT_EQ(print("/a"), (call_result{0, "/a: root\n"}));
}

TEST_F(userid_by_file_test, null_entries_are_skipped) {
    expect_absolute("/a", "/a");
    expect_role(0, give_list({nullptr, nullptr}));
    expect_role(1, give_list({nullptr, "/b", nullptr, "/a"}));
    expect_comparison("/b", "/a", 0);
    EXPECT_EQ(print("/a"), (call_result{0, "/a: secadm\n"}));
}

TEST_F(userid_by_file_test, names_are_printed_as_they_are) {
    for (const std::string name : {"/a b", "/%s", "/a\nb", "/\xff", "/文件", ""}) {
        expect_absolute("x", name);
        expect_role(0, give_list({name.c_str()}));
        EXPECT_EQ(print("x"), (call_result{0, name + ": root\n"}));
    }
}

// A batch of files.

/// One kind of batch: how its files reach the operation.
enum class batch_kind {
    list,
    array,
    directory,
    package,
};

class userid_batch_test : public userid_test, public testing::WithParamInterface<batch_kind> {
protected:
    /// Expects what the batch is made from. Comes before the roles' expectations.
    void expect_files(const std::vector<std::string>& files) {
        files_ = files;
        if (GetParam() == batch_kind::directory) {
            expect_absolute("d", "/d");
            EXPECT_CALL(service, get_file_list_from_dir("/d"))
                .WillOnce(Return(give_items(std::vector<maybe_text>(files.begin(), files.end()))));
        }
        if (GetParam() == batch_kind::package) {
            const std::list<std::string> list(files.begin(), files.end());
            EXPECT_CALL(userid, get_pkg_files("p", IsEmpty())).WillOnce(DoAll(SetArgReferee<1>(list), Return(0)));
        }
    }

    /// Expects the question for all three roles' files, made once and in this order.
    void expect_roles(const given_list& root, const given_list& secadm, const given_list& auditadm) {
        expect_role(1, secadm);
        expect_role(2, auditadm);
        expect_role(0, root);
    }

    call_result print() {
        return capture([&] { return print_batch(); });
    }

private:
    int print_batch() {
        switch (GetParam()) {
            case batch_kind::list:
                userid.print_userid_of_file_list({files_.begin(), files_.end()});
                return 0;
            case batch_kind::array:
                print_array();
                return 0;
            case batch_kind::directory:
                return userid.print_userid_by_dir("d");
            default:
                return userid.print_userid_by_pkg("p");
        }
    }

    void print_array() {
        std::vector<char*> array;
        std::transform(files_.begin(), files_.end(), std::back_inserter(array),
                       [](std::string& file) { return file.data(); });
        userid.print_userid_of_file_array(array.data(), static_cast<int>(array.size()));
    }

    std::vector<std::string> files_;
};

TEST_P(userid_batch_test, no_files_print_nothing_but_the_roles_are_asked) {
    expect_files({});
    expect_roles(give_list({"/a"}), no_files, no_files);
    EXPECT_EQ(print(), (call_result{0, ""}));
}

TEST_P(userid_batch_test, each_file_is_a_row_in_the_batch_s_order) {
    expect_files({"/b", "/a b", "relative", "/b", "/%s", "/a\nb", "/\xff", "/文件"});
    expect_roles(no_files, no_files, no_files);
    EXPECT_EQ(print(), (call_result{0,
                                    "/b: none\n/a b: none\nrelative: none\n/b: none\n/%s: none\n/a\nb: none\n"
                                    "/\xff: none\n/文件: none\n"}));
}

TEST_P(userid_batch_test, the_last_role_counts) {
    const given_list here = give_list({"/a"});
    const given_list empty = give_list({});
    const struct {
        given_list root, secadm, auditadm;
        const char* row;
    } rows[] = {
        {empty, empty, empty, "/a: none\n"},    {here, empty, empty, "/a: root\n"},
        {empty, here, empty, "/a: secadm\n"},   {here, here, empty, "/a: secadm\n"},
        {empty, empty, here, "/a: auditadm\n"}, {here, empty, here, "/a: auditadm\n"},
        {empty, here, here, "/a: auditadm\n"},  {here, here, here, "/a: auditadm\n"},
    };
    for (const auto& row : rows) {
        expect_files({"/a"});
        expect_roles(row.root, row.secadm, row.auditadm);
        EXPECT_EQ(print(), (call_result{0, row.row}));
    }
}

TEST_P(userid_batch_test, each_file_is_compared_role_by_role_from_root_to_auditadm) {
    expect_files({"/1", "/2"});
    expect_roles(give_list({"/r"}), give_list({"/s"}), give_list({"/u"}));
    expect_comparison("/r", "/1", 1);
    expect_comparison("/s", "/1", 0);
    expect_comparison("/u", "/1", 2);
    expect_comparison("/r", "/2", 1);
    expect_comparison("/s", "/2", 1);
    expect_comparison("/u", "/2", -1);
    EXPECT_EQ(print(), (call_result{0, "/1: root\n/2: secadm\n"}));
}

TEST_P(userid_batch_test, a_match_ends_the_search_in_its_role_alone) {
    expect_files({"/a"});
    expect_roles(give_list({"/r", "/a", "/r2"}), give_list({"/s", "/s2"}), give_list({"/u"}));
    expect_comparison("/r", "/a", 0);
    expect_comparison("/s", "/a", 1);
    expect_comparison("/u", "/a", 0);
    EXPECT_EQ(print(), (call_result{0, "/a: secadm\n"}));
}

TEST_P(userid_batch_test, null_entries_and_null_lists_are_skipped) {
    expect_files({"/a"});
    expect_roles(give_no_list(3), give_list({nullptr, "/a"}), give_list({nullptr}));
    EXPECT_EQ(print(), (call_result{0, "/a: secadm\n"}));
}

std::string name_kind(const testing::TestParamInfo<batch_kind>& info) {
    switch (info.param) {
        case batch_kind::list:
            return "list";
        case batch_kind::array:
            return "array";
        case batch_kind::directory:
            return "directory";
        default:
            return "package";
    }
}

INSTANTIATE_TEST_SUITE_P(of, userid_batch_test,
                         testing::Values(batch_kind::list, batch_kind::array, batch_kind::directory,
                                         batch_kind::package),
                         name_kind);

// Where there is no batch.

TEST_F(userid_test, a_directory_without_an_absolute_path_fails) {
    expect_absolute("d %s", std::nullopt);
    EXPECT_EQ(capture([&] { return userid.print_userid_by_dir("d %s"); }),
              (call_result{-1, "获取目录[d %s]的绝对路径失败!\n"}));
}

TEST_F(userid_test, a_directory_that_cannot_be_read_prints_nothing_but_the_roles_are_asked) {
    for (const std::uint64_t count : {0U, 3U}) {
        expect_absolute("d", "/d");
        EXPECT_CALL(service, get_file_list_from_dir("/d")).WillOnce(Return(give_no_list(count)));
        expect_role(1, give_list({"/a"}));
        expect_role(2, no_files);
        expect_role(0, give_list({nullptr}));
        EXPECT_EQ(capture([&] { return userid.print_userid_by_dir("d"); }), (call_result{0, ""})) << count;
    }
}

TEST_F(userid_test, null_files_of_a_directory_are_left_out) {
    expect_absolute("d", "/d");
    EXPECT_CALL(service, get_file_list_from_dir("/d")).WillOnce(Return(give_list({nullptr, "/a", nullptr})));
    expect_role(1, no_files);
    expect_role(2, no_files);
    expect_role(0, no_files);
    EXPECT_EQ(capture([&] { return userid.print_userid_by_dir("d"); }), (call_result{0, "/a: none\n"}));
}

TEST_F(userid_test, a_package_without_a_file_list_fails) {
    for (const int result : {-1, 1}) {
        EXPECT_CALL(userid, get_pkg_files("p %s", _)).WillOnce(Return(result));
        EXPECT_EQ(capture([&] { return userid.print_userid_by_pkg("p %s"); }),
                  (call_result{-1, "获取软件包[p %s]中所有文件失败!\n"}))
            << result;
    }
}

TEST_F(userid_test, a_package_that_vanished_is_told_twice) {
    EXPECT_CALL(userid, get_pkg_files("p", _)).WillOnce([](const std::string& pkg, std::list<std::string>&) {
        print_line("软件包[", pkg, "]未安装!");
        return -1;
    });
    EXPECT_EQ(capture([&] { return userid.print_userid_by_pkg("p"); }),
              (call_result{-1, "软件包[p]未安装!\n获取软件包[p]中所有文件失败!\n"}));
}

}  // namespace
