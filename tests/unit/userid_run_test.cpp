// SPDX-License-Identifier: Apache-2.0
// The options of `userid`, and which operation gets what. What the operations do is in userid_labels_test.cpp.
#include "modules/userid/userid_module.h"
#include "support/captured_stream.h"
#include "unit/help_texts.h"
#include "unit/option_rows.h"

namespace {

using testing::Return;

/// A module whose operations are heard and whose packages are the test's.
class heard_userid : public COrvexUserid {
public:
    explicit heard_userid(heard_operation& operation) : operation_(operation) {}

    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));

    int print_userid_by_file(const std::string& path) override {
        return operation_.call(show_call("print_userid_by_file", path));
    }
    int print_userid_by_dir(const std::string& dir) override {
        return operation_.call(show_call("print_userid_by_dir", dir));
    }
    int print_userid_by_pkg(const std::string& pkg) override {
        return operation_.call(show_call("print_userid_by_pkg", pkg));
    }

private:
    heard_operation& operation_;
};

class userid_run_test : public option_rows_test {
protected:
    userid_run_test() : option_rows_test("userid", userid_ladder), userid(operation) {}

    COrvexBase& module() override { return userid; }

    void expect_good_file(const std::string& path) {
        EXPECT_CALL(service, path_is_exist(path)).WillOnce(Return(1));
        EXPECT_CALL(service, path_is_dir(path)).WillOnce(Return(0));
    }

    void expect_good_dir(const std::string& path) { EXPECT_CALL(service, path_is_exist(path)).WillOnce(Return(1)); }

    void expect_good_pkg(const std::string& pkg) { EXPECT_CALL(userid, is_pkg_installed(pkg)).WillOnce(Return(true)); }

    /// Expects that `words` run one operation, behind the tests of their values, which `expect_tests` expects.
    void expect_operation(const std::vector<std::string>& words, const std::function<void()>& expect_tests,
                          const std::string& operation_call) {
        for (const int result : {0, -1, 5}) {
            expect_ladder(userid_ladder);
            expect_tests();
            EXPECT_CALL(operation, call(operation_call)).WillOnce(Return(result));
            EXPECT_EQ(run_open(words), (call_result{result, ""})) << operation_call;
        }
    }

    testing::StrictMock<heard_userid> userid;
};

const std::string no_target_line = "请输入需要查询三员用户标记的文件、目录或者软件包!\n";

TEST_F(userid_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  userid.usage();
                  return 0;
              }),
              (call_result{0, userid_help()}));
}

// Which operation runs.

/// The ways in which getopt takes a listing of `value`.
std::vector<std::vector<std::string>> write_in_all_ways(const std::string& letter, const std::string& word,
                                                        const std::string& value) {
    return {
        {"-L", "-" + letter, value},
        {"-" + letter, value, "-L"},
        {"-L" + letter + value},
        {"--list", "--" + word, value},
        {"word", "--" + word.substr(0, 2) + "=" + value, "--li"},
    };
}

TEST_F(userid_run_test, each_option_hands_its_value_to_its_operation) {
    for (const auto& words : write_in_all_ways("f", "file", "/a b")) {
        expect_operation(
            words, [&] { expect_good_file("/a b"); }, "print_userid_by_file [/a b]");
    }
    for (const auto& words : write_in_all_ways("d", "dir", "/d")) {
        expect_operation(
            words, [&] { expect_good_dir("/d"); }, "print_userid_by_dir [/d]");
    }
    for (const auto& words : write_in_all_ways("P", "package", "p-q")) {
        expect_operation(
            words, [&] { expect_good_pkg("p-q"); }, "print_userid_by_pkg [p-q]");
    }
}

TEST_F(userid_run_test, the_value_goes_on_as_it_was_typed) {
    for (const std::string value : {"/a:/b", "~/a", "%s%n", "a'b\"c", "-x", "--", "a\nb", "\xff\xfe", "文件", " "}) {
        expect_operation(
            {"-L", "-f", value}, [&] { expect_good_file(value); }, show_call("print_userid_by_file", value));
        expect_operation(
            {"-L", "-d", value}, [&] { expect_good_dir(value); }, show_call("print_userid_by_dir", value));
        expect_operation(
            {"-L", "-P", value}, [&] { expect_good_pkg(value); }, show_call("print_userid_by_pkg", value));
    }
}

TEST_F(userid_run_test, the_file_goes_before_the_directory_and_the_directory_before_the_package) {
    expect_operation(
        {"-L", "-P", "p", "-d", "/d", "-f", "/f"},
        [&] {
            expect_good_pkg("p");
            expect_good_dir("/d");
            expect_good_file("/f");
        },
        "print_userid_by_file [/f]");
    expect_operation(
        {"-f", "/f", "-d", "/d", "-L"},
        [&] {
            expect_good_file("/f");
            expect_good_dir("/d");
        },
        "print_userid_by_file [/f]");
    expect_operation(
        {"-P", "p", "-L", "-d", "/d"},
        [&] {
            expect_good_pkg("p");
            expect_good_dir("/d");
        },
        "print_userid_by_dir [/d]");
}

TEST_F(userid_run_test, an_empty_value_is_tested_and_counts_as_none) {
    expect_operation(
        {"-L", "-f", "", "-d", "", "-P", "p"},
        [&] {
            expect_good_file("");
            expect_good_dir("");
            expect_good_pkg("p");
        },
        "print_userid_by_pkg [p]");

    expect_ladder(userid_ladder);
    expect_good_pkg("");
    EXPECT_EQ(run_open({"-L", "-P", ""}), (call_result{-1, no_target_line + userid_help()}));
}

TEST_F(userid_run_test, a_later_value_replaces_an_earlier_one_of_its_option) {
    expect_operation(
        {"-L", "-f", "/1", "-f", "/2"},
        [&] {
            expect_good_file("/1");
            expect_good_file("/2");
        },
        "print_userid_by_file [/2]");
    expect_operation(
        {"-d", "/1", "-L", "-d", "/2"},
        [&] {
            expect_good_dir("/1");
            expect_good_dir("/2");
        },
        "print_userid_by_dir [/2]");
    expect_operation(
        {"-P", "1", "-P", "2", "-L"},
        [&] {
            expect_good_pkg("1");
            expect_good_pkg("2");
        },
        "print_userid_by_pkg [2]");
}

// Bad use.

TEST_F(userid_run_test, a_listing_without_a_target_is_told_with_the_help) {
    const std::string told = no_target_line + userid_help();
    expect_refused({
        {{"-L"}, -1, told},
        {{"--list"}, -1, told},
        {{"-L", "/a"}, -1, told},
        {{"-L", "--", "-f", "/a"}, -1, told},
    });
}

TEST_F(userid_run_test, a_target_without_a_listing_is_tested_and_gives_the_help) {
    expect_ladder(userid_ladder);
    expect_good_file("/f");
    EXPECT_EQ(run_open({"-f", "/f"}), (call_result{0, userid_help()}));

    expect_ladder(userid_ladder);
    expect_good_dir("/d");
    EXPECT_EQ(run_open({"-d", "/d"}), (call_result{0, userid_help()}));

    expect_ladder(userid_ladder);
    expect_good_pkg("p");
    EXPECT_EQ(run_open({"-P", "p"}), (call_result{0, userid_help()}));
}

TEST_F(userid_run_test, an_option_without_its_value_is_invalid) {
    const std::string told = "无效的参数\n" + userid_help();
    expect_refused({
        {{"-L", "-f"}, -1, told},
        {{"-L", "-d"}, -1, told},
        {{"-L", "-P"}, -1, told},
        {{"-L", "--file"}, -1, told},
        {{"-L", "--dir"}, -1, told},
        {{"-L", "--package"}, -1, told},
    });
}

TEST_F(userid_run_test, the_letters_of_other_modules_are_invalid) {
    const std::string told = "无效的参数\n" + userid_help();
    expect_refused({
        {{"-A"}, -1, told},
        {{"-D"}, -1, told},
        {{"-U"}, -1, told},
        {{"-L", "-e"}, -1, told},
        {{"--add"}, -1, told},
    });
}

TEST_F(userid_run_test, there_is_no_switch) {
    for (const char* word : {"on", "off"}) {
        expect_ladder(userid_ladder);
        EXPECT_EQ(run_open({word}), (call_result{0, userid_help()})) << word;
        expect_ladder_to_states(userid_ladder, {0, 0, 0, 2, 0});
        EXPECT_EQ(run_open({word}), (call_result{0, "三权分立功能未开启!\n"})) << word;
        expect_ladder_to_states(userid_ladder, {0, 0, 1, 0, 1});
        EXPECT_EQ(run_open({word}), (call_result{0, "三权分立功能未开启!\n"})) << word;
    }
}

TEST_F(userid_run_test, a_caller_without_rights_may_list_where_the_listing_stands_first) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder(userid_ladder, {0, 1000, 1, 2, 1});
        expect_good_file("/f");
        EXPECT_CALL(operation, call("print_userid_by_file [/f]")).WillOnce(Return(0));
        EXPECT_EQ(run_open({word, "-f", "/f"}), (call_result{0, ""})) << word;
    }
    expect_ladder_to_rights(userid_ladder, {0, 1000, 1, 2, 1});
    EXPECT_EQ(run_open({"-f", "/f", "-L"}), (call_result{-1, "当前用户无权限执行, 请切换secadm用户执行!\n"}));
}

// The tests of the values, made when their option is met.

TEST_F(userid_run_test, a_missing_file_ends_the_run_at_its_option) {
    for (const int answer : {0, 2, -1}) {
        expect_ladder(userid_ladder);
        EXPECT_CALL(service, path_is_exist("/missing %s")).WillOnce(Return(answer));
        EXPECT_EQ(run_open({"-L", "-f", "/missing %s", "-d", "/d"}),
                  (call_result{-1, "路径[/missing %s]不存在, 请输入正确的文件路径!\n"}))
            << answer;
    }
}

TEST_F(userid_run_test, a_directory_in_place_of_a_file_ends_the_run_at_its_option) {
    expect_ladder(userid_ladder);
    EXPECT_CALL(service, path_is_exist("/tmp")).WillOnce(Return(1));
    EXPECT_CALL(service, path_is_dir("/tmp")).WillOnce(Return(1));
    EXPECT_EQ(run_open({"-f", "/tmp", "-L"}), (call_result{-1, "路径[/tmp]是目录, 请输入文件路径\n"}));
}

TEST_F(userid_run_test, any_other_answer_than_1_is_no_directory_for_a_file) {
    for (const int answer : {2, -1}) {
        expect_operation(
            {"-L", "-f", "/f"},
            [&] {
                EXPECT_CALL(service, path_is_exist("/f")).WillOnce(Return(1));
                EXPECT_CALL(service, path_is_dir("/f")).WillOnce(Return(answer));
            },
            "print_userid_by_file [/f]");
    }
}

TEST_F(userid_run_test, a_path_that_exists_passes_for_a_directory_unseen) {
    expect_operation(
        {"-L", "-d", "/etc/passwd"}, [&] { EXPECT_CALL(service, path_is_exist("/etc/passwd")).WillOnce(Return(1)); },
        "print_userid_by_dir [/etc/passwd]");
}

TEST_F(userid_run_test, a_directory_passes_without_existing) {
    for (const int answer : {0, 2, -1}) {
        expect_operation(
            {"-L", "-d", "/d"},
            [&] {
                EXPECT_CALL(service, path_is_exist("/d")).WillOnce(Return(answer));
                EXPECT_CALL(service, path_is_dir("/d")).WillOnce(Return(1));
            },
            "print_userid_by_dir [/d]");
    }
}

TEST_F(userid_run_test, what_neither_exists_nor_is_a_directory_ends_the_run_at_its_option) {
    for (const int answer : {0, 2, -1}) {
        expect_ladder(userid_ladder);
        EXPECT_CALL(service, path_is_exist("/missing %s")).WillOnce(Return(0));
        EXPECT_CALL(service, path_is_dir("/missing %s")).WillOnce(Return(answer));
        EXPECT_EQ(run_open({"-L", "-d", "/missing %s", "-P", "p"}),
                  (call_result{-1, "路径[/missing %s]不存在或者非目录, 请输入正确的路径!\n"}))
            << answer;
    }
}

TEST_F(userid_run_test, a_missing_package_ends_the_run_at_its_option) {
    expect_ladder(userid_ladder);
    EXPECT_CALL(userid, is_pkg_installed("missing %s")).WillOnce(Return(false));
    EXPECT_EQ(run_open({"-L", "-P", "missing %s", "-f", "/f"}),
              (call_result{-1, "软件包[missing %s]未安装, 不支持查询\n"}));
}

TEST_F(userid_run_test, the_loser_s_bad_value_ends_the_run_too) {
    expect_ladder(userid_ladder);
    expect_good_file("/f");
    EXPECT_CALL(userid, is_pkg_installed("p")).WillOnce(Return(false));
    EXPECT_EQ(run_open({"-L", "-f", "/f", "-P", "p"}), (call_result{-1, "软件包[p]未安装, 不支持查询\n"}));
}

TEST_F(userid_run_test, the_first_fault_on_the_command_line_counts) {
    expect_ladder(userid_ladder);
    EXPECT_CALL(service, path_is_exist("/missing")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-f", "/missing", "-L", "-L", "-x", "-h"}),
              (call_result{-1, "路径[/missing]不存在, 请输入正确的文件路径!\n"}));
    expect_refused({
        {{"-L", "-L", "-f", "/missing"}, -1, userid_help()},
        {{"-h", "-P", "missing"}, 0, userid_help()},
        {{"-x", "-d", "/missing"}, -1, "无效的参数\n" + userid_help()},
    });
}

}  // namespace
