// SPDX-License-Identifier: Apache-2.0
// The options of `file`, and which operation gets what. What the operations do is in the tests of protection_*,
// file_* and exception_*.
#include "modules/file/file_module.h"
#include "support/captured_stream.h"
#include "unit/help_texts.h"
#include "unit/option_rows.h"

namespace {

using testing::Return;

/// A module whose operations are heard.
class heard_file : public COrvexFile {
public:
    explicit heard_file(heard_operation& operation) : operation_(operation) {}

    int set_file_policy_by_file(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_file_policy_by_file", paths, action));
    }
    int set_file_policy_by_dir(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_file_policy_by_dir", paths, action));
    }
    int set_file_policy_by_pkg(const std::string& packages, const int& action) override {
        return operation_.call(show_call("set_file_policy_by_pkg", packages, action));
    }
    int set_file_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                               const std::int32_t& except_kind, const std::string& except_object,
                               const int& action) override {
        return operation_.call(
            show_call("set_file_except_policy", first_kind, first_object, except_kind, except_object, action));
    }
    int list_file_policy() override { return operation_.call(show_call("list_file_policy")); }

private:
    heard_operation& operation_;
};

class file_run_test : public option_rows_test {
protected:
    file_run_test() : option_rows_test("file", file_ladder), file(operation) {}

    COrvexBase& module() override { return file; }

    heard_file file;
};

const std::string no_object_line = "请输入需要设置只读文件保护文件策略的路径或者软件包名!\n";
const std::string no_exception_line = "请输入需要设置例外程序策略的路径、目录或者软件包!\n";
const std::string no_dir_line = "不支持以目录的方式添加例外程序!\n";
const std::string invalid_line = "无效的参数!\n";

TEST_F(file_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  file.usage();
                  return 0;
              }),
              (call_result{0, file_help()}));
}

// Protected objects.

TEST_F(file_run_test, each_kind_of_object_has_its_operation) {
    expect_chosen({
        {{"-A", "-f", "/a"}, "set_file_policy_by_file [/a] [1]"},
        {{"-A", "-d", "/a"}, "set_file_policy_by_dir [/a] [1]"},
        {{"-A", "-P", "a"}, "set_file_policy_by_pkg [a] [1]"},
        {{"-D", "-f", "/a"}, "set_file_policy_by_file [/a] [3]"},
        {{"-D", "-d", "/a"}, "set_file_policy_by_dir [/a] [3]"},
        {{"-D", "-P", "a"}, "set_file_policy_by_pkg [a] [3]"},
    });
}

TEST_F(file_run_test, the_options_may_be_written_in_every_way_of_getopt) {
    expect_chosen({
        {{"--add", "--file", "/a"}, "set_file_policy_by_file [/a] [1]"},
        {{"--file=/a", "--delete"}, "set_file_policy_by_file [/a] [3]"},
        {{"-Af/a"}, "set_file_policy_by_file [/a] [1]"},
        {{"--ad", "--fi", "/a"}, "set_file_policy_by_file [/a] [1]"},
        {{"--dir", "/a", "-D"}, "set_file_policy_by_dir [/a] [3]"},
        {{"--di=/a", "--del"}, "set_file_policy_by_dir [/a] [3]"},
        {{"-Dd/a"}, "set_file_policy_by_dir [/a] [3]"},
        {{"--package", "a", "-A"}, "set_file_policy_by_pkg [a] [1]"},
        {{"--pack=a", "--add"}, "set_file_policy_by_pkg [a] [1]"},
        {{"-Pa", "word", "-A"}, "set_file_policy_by_pkg [a] [1]"},
    });
}

TEST_F(file_run_test, the_value_goes_on_as_it_was_typed) {
    for (const std::string value :
         {"/a:/b", ":", "~/a", "%s%n", "a'b\"c", "-x", "--", "a\nb", "\xff\xfe", "文件", " "}) {
        expect_chosen({
            {{"-A", "-f", value}, show_call("set_file_policy_by_file", value, 1)},
            {{"-D", "-d", value}, show_call("set_file_policy_by_dir", value, 3)},
            {{"-D", "-P", value}, show_call("set_file_policy_by_pkg", value, 3)},
            {{"-A", "-P", value, "-e", "-f", value}, show_call("set_file_except_policy", 3, value, 1, value, 1)},
        });
    }
}

TEST_F(file_run_test, file_goes_before_directory_before_package_whatever_their_order) {
    expect_chosen({
        {{"-A", "-f", "/a", "-d", "/b"}, "set_file_policy_by_file [/a] [1]"},
        {{"-A", "-d", "/b", "-f", "/a"}, "set_file_policy_by_file [/a] [1]"},
        {{"-P", "c", "-d", "/b", "-f", "/a", "-D"}, "set_file_policy_by_file [/a] [3]"},
        {{"-D", "-P", "c", "-f", "/a"}, "set_file_policy_by_file [/a] [3]"},
        {{"-D", "-P", "c", "-d", "/b"}, "set_file_policy_by_dir [/b] [3]"},
        {{"-A", "-d", "/b", "-P", "c"}, "set_file_policy_by_dir [/b] [1]"},
    });
}

TEST_F(file_run_test, a_later_value_replaces_an_earlier_one_of_its_option) {
    expect_chosen({
        {{"-A", "-f", "/1", "-f", "/2"}, "set_file_policy_by_file [/2] [1]"},
        {{"-d", "/1", "-A", "-d", "/2"}, "set_file_policy_by_dir [/2] [1]"},
        {{"-P", "1", "-P", "2", "-D"}, "set_file_policy_by_pkg [2] [3]"},
        {{"-A", "-f", "/1", "-f", "", "-d", "/2"}, "set_file_policy_by_dir [/2] [1]"},
    });
}

TEST_F(file_run_test, an_empty_value_counts_as_none) {
    expect_chosen({
        {{"-A", "-f", "", "-d", "/b"}, "set_file_policy_by_dir [/b] [1]"},
        {{"-A", "-f", "", "-d", "", "-P", "c"}, "set_file_policy_by_pkg [c] [1]"},
    });
}

TEST_F(file_run_test, without_an_object_the_line_and_the_help_follow) {
    const std::string told = no_object_line + file_help();
    expect_refused({
        {{"-A"}, -1, told},
        {{"--add"}, -1, told},
        {{"-D"}, -1, told},
        {{"-A", "-f", ""}, -1, told},
        {{"-D", "-f", "", "-d", "", "-P", ""}, -1, told},
        {{"-A", "/a"}, -1, told},
        {{"-A", "--", "-f", "/a"}, -1, told},
    });
}

// Exceptions.

TEST_F(file_run_test, what_stands_behind_e_is_the_exception) {
    expect_chosen({
        {{"-A", "-f", "/a", "-e", "-f", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-d", "/a/", "-e", "-f", "/b"}, "set_file_except_policy [2] [/a/] [1] [/b] [1]"},
        {{"-D", "-f", "/a", "-e", "-P", "b"}, "set_file_except_policy [1] [/a] [3] [b] [3]"},
        {{"-D", "-P", "a", "-e", "-P", "b"}, "set_file_except_policy [3] [a] [3] [b] [3]"},
        {{"-P", "a", "-e", "--file=/b", "-D"}, "set_file_except_policy [3] [a] [1] [/b] [3]"},
        {{"-f", "/a", "-Aef", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-f", "/a:/b", "-e", "-f", "/c:/d"}, "set_file_except_policy [1] [/a:/b] [1] [/c:/d] [1]"},
    });
}

TEST_F(file_run_test, with_e_the_latest_object_in_front_of_it_counts_whatever_its_kind) {
    expect_chosen({
        {{"-A", "-f", "/a", "-d", "/b", "-e", "-f", "/c"}, "set_file_except_policy [2] [/b] [1] [/c] [1]"},
        {{"-A", "-d", "/b", "-f", "/a", "-e", "-f", "/c"}, "set_file_except_policy [1] [/a] [1] [/c] [1]"},
        {{"-A", "-f", "/a", "-d", "/b", "-P", "p", "-e", "-f", "/c"}, "set_file_except_policy [3] [p] [1] [/c] [1]"},
        {{"-A", "-f", "/1", "-f", "/2", "-e", "-P", "q"}, "set_file_except_policy [1] [/2] [3] [q] [1]"},
    });
}

TEST_F(file_run_test, the_latest_exception_counts_whatever_its_kind) {
    expect_chosen({
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-f", "/c"}, "set_file_except_policy [1] [/a] [1] [/c] [1]"},
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-P", "q"}, "set_file_except_policy [1] [/a] [3] [q] [1]"},
        {{"-A", "-f", "/a", "-e", "-P", "q", "-f", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
    });
}

TEST_F(file_run_test, e_is_never_taken_back) {
    expect_chosen({
        {{"-f", "/a", "-e", "-e", "-f", "/b", "-A"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-f", "/a", "-e", "-f", "/b", "-e", "-f", "/c", "-D"}, "set_file_except_policy [1] [/a] [1] [/c] [3]"},
    });
}

TEST_F(file_run_test, the_long_form_of_e_takes_a_value_that_is_lost) {
    expect_chosen({
        {{"-A", "-f", "/a", "--except", "x", "-f", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-f", "/a", "--except=x", "-f", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-f", "/a", "--ex", "-P", "-f", "/b"}, "set_file_except_policy [1] [/a] [1] [/b] [1]"},
    });
}

TEST_F(file_run_test, with_e_and_one_side_missing_the_line_and_the_help_follow) {
    const std::string told = no_exception_line + file_help();
    expect_refused({
        {{"-A", "-e"}, -1, told},
        {{"-A", "-e", "-f", "/b", "-f", "/c"}, -1, told},
        {{"-D", "-e", "-P", "b"}, -1, told},
        {{"-A", "-f", "/a", "-e"}, -1, told},
        {{"-A", "-f", "/a", "-e", "-f", ""}, -1, told},
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-P", ""}, -1, told},
        {{"-D", "-f", "", "-e", "-f", "/b"}, -1, told},
        // The latest object counts, even where it is empty and an earlier one is not.
        {{"-A", "-f", "/a", "-P", "", "-e", "-f", "/b"}, -1, told},
        // "-f" is the value of the long form here, and "/b" is no option.
        {{"-A", "-f", "/a", "--except", "-f", "/b"}, -1, told},
    });
}

TEST_F(file_run_test, a_directory_behind_e_ends_the_run_at_its_option) {
    expect_refused({
        {{"-A", "-f", "/a", "-e", "-d", "/x"}, 0, no_dir_line},
        {{"-A", "-e", "-d", "/x", "-L"}, 0, no_dir_line},
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-d", "/x", "-f", "/c"}, 0, no_dir_line},
        {{"-A", "-f", "/a", "--except", "x", "--dir=/x"}, 0, no_dir_line},
        {{"-A", "-f", "/a", "-e", "-d", ""}, 0, no_dir_line},
        {{"-L", "-e", "-d", "/x"}, 0, no_dir_line},
        {{"-e", "-d", "/x"}, 0, no_dir_line},
        // What is wrong behind it is never seen.
        {{"-e", "-d", "/x", "-A", "-A", "-x", "-h"}, 0, no_dir_line},
    });
}

TEST_F(file_run_test, what_ends_the_run_in_front_of_a_directory_behind_e_comes_first) {
    expect_refused({
        {{"-h", "-e", "-d", "/x"}, 0, file_help()},
        {{"-A", "-A", "-e", "-d", "/x"}, -1, file_help()},
        {{"-e", "-x", "-d", "/x"}, -1, invalid_line + file_help()},
    });
}

// The listing and the rest.

TEST_F(file_run_test, the_listing_looks_at_nothing_else) {
    expect_chosen({
        {{"-L"}, "list_file_policy"},
        {{"--list"}, "list_file_policy"},
        {{"--li"}, "list_file_policy"},
        {{"-L", "-f", "/a"}, "list_file_policy"},
        {{"-f", "/a", "-d", "/b", "-P", "c", "word", "-L"}, "list_file_policy"},
        {{"-L", "-e"}, "list_file_policy"},
        {{"-f", "/a", "-e", "-f", "/b", "-L"}, "list_file_policy"},
    });
}

TEST_F(file_run_test, a_caller_without_rights_may_list_where_the_word_stands_first) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder(file_ladder, {0, 1000, 0, 2, 1});
        EXPECT_CALL(operation, call("list_file_policy")).WillOnce(Return(0));
        EXPECT_EQ(run_open({word}), (call_result{0, ""})) << word;
    }
    expect_ladder_to_rights(file_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-f", "/x", "-L"}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
    expect_ladder_to_rights(file_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-A", "-f", "/x"}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

TEST_F(file_run_test, every_result_of_an_operation_is_returned) {
    for (const int result : {0, -1, -3, -4, 5}) {
        for (const char* letter : {"-A", "-D"}) {
            expect_ladder(file_ladder);
            EXPECT_CALL(operation, call(testing::_)).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-f", "/a"}), (call_result{result, ""}));
        }
    }
}

TEST_F(file_run_test, without_a_command_the_help_follows) {
    expect_refused({
        {{"-f", "/a"}, 0, file_help()},
        {{"-e", "-f", "/a"}, 0, file_help()},
        {{"-e"}, 0, file_help()},
        {{"-f", "/a", "-e", "-P", "b"}, 0, file_help()},
    });
}

TEST_F(file_run_test, an_unknown_option_and_a_missing_value_are_told_with_the_help) {
    const captured_stream errors(stderr);
    for (const char* word : {"-f", "-d", "-P", "--file", "--dir", "--package", "--except", "-U", "-n", "-p", "--pid"}) {
        expect_ladder(file_ladder);
        EXPECT_EQ(run_open({"-A", word}), (call_result{-1, invalid_line + file_help()})) << word;
    }
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option requires an argument -- 'd'\n"
              "orvex_policy: option requires an argument -- 'P'\n"
              "orvex_policy: option '--file' requires an argument\n"
              "orvex_policy: option '--dir' requires an argument\n"
              "orvex_policy: option '--package' requires an argument\n"
              "orvex_policy: option '--except' requires an argument\n"
              "orvex_policy: invalid option -- 'U'\n"
              "orvex_policy: invalid option -- 'n'\n"
              "orvex_policy: invalid option -- 'p'\n"
              "orvex_policy: unrecognized option '--pid'\n");
}

}  // namespace
