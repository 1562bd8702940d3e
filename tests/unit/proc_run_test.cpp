// SPDX-License-Identifier: Apache-2.0
// The options of `proc`, and which operation gets what. What the operations do is in the tests of protection_*,
// proc_* and exception_*.
#include "modules/proc/proc_module.h"
#include "support/captured_stream.h"
#include "unit/help_texts.h"
#include "unit/option_rows.h"

namespace {

using testing::Return;

/// A module whose operations are heard.
class heard_proc : public COrvexProc {
public:
    explicit heard_proc(heard_operation& operation) : operation_(operation) {}

    int set_proc_policy_by_file(const std::string& paths, const int& action) override {
        return operation_.call(show_call("set_proc_policy_by_file", paths, action));
    }
    int set_proc_policy_by_pid(const std::string& pids, const int& action) override {
        return operation_.call(show_call("set_proc_policy_by_pid", pids, action));
    }
    int set_proc_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                               const std::int32_t& except_kind, const std::string& except_object,
                               const int& action) override {
        return operation_.call(
            show_call("set_proc_except_policy", first_kind, first_object, except_kind, except_object, action));
    }
    int set_proc_except_policy_by_pid(const std::string& pid, const std::int32_t& except_kind,
                                      const std::string& except_object, const int& action) override {
        return operation_.call(show_call("set_proc_except_policy_by_pid", pid, except_kind, except_object, action));
    }
    int list_proc_policy() override { return operation_.call(show_call("list_proc_policy")); }

private:
    heard_operation& operation_;
};

class proc_run_test : public option_rows_test {
protected:
    proc_run_test() : option_rows_test("proc", proc_ladder), proc(operation) {}

    COrvexBase& module() override { return proc; }

    heard_proc proc;
};

const std::string no_object_line = "请输入需要设置进程防杀死策略的路径或者pid!\n";
const std::string no_program_line = "请输入需要设置例外程序的防杀死进程!\n";
const std::string invalid_line = "无效的参数\n";

TEST_F(proc_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  proc.usage();
                  return 0;
              }),
              (call_result{0, proc_help()}));
}

// Protected programs.

TEST_F(proc_run_test, a_path_and_a_process_have_each_their_operation) {
    expect_chosen({
        {{"-A", "-f", "/a"}, "set_proc_policy_by_file [/a] [1]"},
        {{"-D", "-f", "/a"}, "set_proc_policy_by_file [/a] [3]"},
        {{"-A", "-p", "12"}, "set_proc_policy_by_pid [12] [1]"},
        {{"-D", "-p", "12"}, "set_proc_policy_by_pid [12] [3]"},
    });
}

TEST_F(proc_run_test, the_options_may_be_written_in_every_way_of_getopt) {
    expect_chosen({
        {{"--add", "--file", "/a"}, "set_proc_policy_by_file [/a] [1]"},
        {{"--fi=/a", "--delete"}, "set_proc_policy_by_file [/a] [3]"},
        {{"-Af/a"}, "set_proc_policy_by_file [/a] [1]"},
        {{"--pid", "12", "word", "--ad"}, "set_proc_policy_by_pid [12] [1]"},
        {{"--pi=12", "--del"}, "set_proc_policy_by_pid [12] [3]"},
        {{"-Dp12"}, "set_proc_policy_by_pid [12] [3]"},
    });
}

TEST_F(proc_run_test, the_value_goes_on_as_it_was_typed) {
    for (const std::string value :
         {"/a:/b", ":", "~/a", "%s%n", "a'b\"c", "-x", "--", "a\nb", "\xff\xfe", "进程", " "}) {
        expect_chosen({
            {{"-A", "-f", value}, show_call("set_proc_policy_by_file", value, 1)},
            {{"-D", "-p", value}, show_call("set_proc_policy_by_pid", value, 3)},
            {{"-A", "-f", value, "-e", "-d", value}, show_call("set_proc_except_policy", 1, value, 2, value, 1)},
            {{"-D", "-p", value, "-e", "-f", value}, show_call("set_proc_except_policy_by_pid", value, 1, value, 3)},
        });
    }
}

TEST_F(proc_run_test, without_e_the_path_goes_before_the_process) {
    expect_chosen({
        {{"-A", "-f", "/a", "-p", "12"}, "set_proc_policy_by_file [/a] [1]"},
        {{"-D", "-p", "12", "-f", "/a"}, "set_proc_policy_by_file [/a] [3]"},
        {{"-A", "-f", "", "-p", "12"}, "set_proc_policy_by_pid [12] [1]"},
        {{"-A", "-f", "/1", "-f", "", "-p", "12"}, "set_proc_policy_by_pid [12] [1]"},
    });
}

TEST_F(proc_run_test, without_e_directories_and_packages_are_dropped) {
    expect_chosen({
        {{"-A", "-f", "/a", "-d", "/usr/bin/"}, "set_proc_policy_by_file [/a] [1]"},
        {{"-A", "-P", "b", "-p", "12"}, "set_proc_policy_by_pid [12] [1]"},
        {{"-D", "-d", "/b", "-P", "b", "-f", "/a"}, "set_proc_policy_by_file [/a] [3]"},
    });
}

TEST_F(proc_run_test, a_later_value_replaces_an_earlier_one_of_its_option) {
    expect_chosen({
        {{"-A", "-f", "/1", "-f", "/2"}, "set_proc_policy_by_file [/2] [1]"},
        {{"-p", "1", "-p", "2", "-D"}, "set_proc_policy_by_pid [2] [3]"},
    });
}

TEST_F(proc_run_test, without_a_program_the_line_and_the_help_follow) {
    const std::string told = no_object_line + proc_help();
    expect_refused({
        {{"-A"}, -1, told},
        {{"--delete"}, -1, told},
        {{"-A", "-f", ""}, -1, told},
        {{"-D", "-p", "", "-f", ""}, -1, told},
        {{"-A", "-d", "/usr/bin/"}, -1, told},
        {{"-D", "-P", "b"}, -1, told},
        {{"-A", "/a"}, -1, told},
        {{"-A", "--", "-f", "/a"}, -1, told},
    });
}

// Exceptions.

TEST_F(proc_run_test, a_file_behind_e_is_the_exception) {
    expect_chosen({
        {{"-A", "-f", "/a", "-e", "-f", "/b"}, "set_proc_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-f", "/a", "-e", "--file=/b", "-D"}, "set_proc_except_policy [1] [/a] [1] [/b] [3]"},
        {{"-f", "/a", "-Aef", "/b"}, "set_proc_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-p", "12", "-e", "-f", "/b"}, "set_proc_except_policy_by_pid [12] [1] [/b] [1]"},
        {{"-A", "-f", "/1", "-f", "/2", "-e", "-f", "/b"}, "set_proc_except_policy [1] [/2] [1] [/b] [1]"},
        {{"-A", "-f", "/a:/b", "-e", "-f", "/c:/d"}, "set_proc_except_policy [1] [/a:/b] [1] [/c:/d] [1]"},
    });
}

TEST_F(proc_run_test, directories_and_packages_are_exceptions_wherever_they_stand) {
    expect_chosen({
        {{"-A", "-f", "/a", "-e", "-d", "/b/"}, "set_proc_except_policy [1] [/a] [2] [/b/] [1]"},
        {{"-A", "-f", "/a", "-d", "/b/", "-e"}, "set_proc_except_policy [1] [/a] [2] [/b/] [1]"},
        {{"--dir=/b", "-D", "-f", "/a", "-e"}, "set_proc_except_policy [1] [/a] [2] [/b] [3]"},
        {{"-A", "-f", "/a", "-e", "-P", "q"}, "set_proc_except_policy [1] [/a] [3] [q] [1]"},
        {{"-A", "-f", "/a", "-P", "q", "-e"}, "set_proc_except_policy [1] [/a] [3] [q] [1]"},
        {{"-P", "q", "-A", "-f", "/a", "-e"}, "set_proc_except_policy [1] [/a] [3] [q] [1]"},
    });
}

TEST_F(proc_run_test, with_e_the_process_goes_before_the_path) {
    expect_chosen({
        {{"-A", "-f", "/a", "-p", "12", "-e", "-f", "/x"}, "set_proc_except_policy_by_pid [12] [1] [/x] [1]"},
        {{"-D", "-p", "12", "-f", "/a", "-e", "-f", "/x"}, "set_proc_except_policy_by_pid [12] [1] [/x] [3]"},
        {{"-A", "-f", "/a", "-p", "12", "-p", "", "-e", "-f", "/x"}, "set_proc_except_policy [1] [/a] [1] [/x] [1]"},
    });
}

TEST_F(proc_run_test, a_process_is_written_into_the_exception_too) {
    expect_chosen({
        {{"-A", "-p", "12", "-e"}, "set_proc_except_policy_by_pid [12] [2] [12] [1]"},
        {{"-A", "-e", "-f", "/x", "-p", "12"}, "set_proc_except_policy_by_pid [12] [2] [12] [1]"},
        {{"-A", "-e", "-P", "q", "-p", "12"}, "set_proc_except_policy_by_pid [12] [2] [12] [1]"},
        {{"-A", "-e", "-d", "/x", "-p", "12"}, "set_proc_except_policy_by_pid [12] [2] [12] [1]"},
        {{"-P", "q", "-p", "12", "-D", "-e"}, "set_proc_except_policy_by_pid [12] [2] [12] [3]"},
        {{"-A", "-f", "/a", "-P", "q", "-p", "", "-e"}, "set_proc_except_policy [1] [/a] [2] [] [1]"},
    });
}

TEST_F(proc_run_test, the_latest_exception_counts_whatever_its_kind) {
    expect_chosen({
        {{"-D", "-p", "32323", "-e", "-d", "/usr/bin/"}, "set_proc_except_policy_by_pid [32323] [2] [/usr/bin/] [3]"},
        {{"-A", "-e", "-p", "12", "-P", "q"}, "set_proc_except_policy_by_pid [12] [3] [q] [1]"},
        {{"-A", "-e", "-p", "12", "-f", "/x"}, "set_proc_except_policy_by_pid [12] [1] [/x] [1]"},
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-f", "/c"}, "set_proc_except_policy [1] [/a] [1] [/c] [1]"},
        {{"-A", "-f", "/a", "-e", "-f", "/b", "-d", "/c"}, "set_proc_except_policy [1] [/a] [2] [/c] [1]"},
        {{"-A", "-f", "/a", "-e", "-d", "/b", "-P", "q"}, "set_proc_except_policy [1] [/a] [3] [q] [1]"},
        {{"-A", "-P", "q", "-f", "/a", "-e", "-f", "/b"}, "set_proc_except_policy [1] [/a] [1] [/b] [1]"},
    });
}

TEST_F(proc_run_test, e_is_never_taken_back) {
    expect_chosen({
        {{"-f", "/a", "-e", "-e", "-f", "/b", "-A"}, "set_proc_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-f", "/a", "-e", "-f", "/b", "-e", "-f", "/c", "-D"}, "set_proc_except_policy [1] [/a] [1] [/c] [3]"},
    });
}

TEST_F(proc_run_test, the_long_form_of_e_takes_a_value_that_is_lost) {
    expect_chosen({
        {{"-A", "-f", "/a", "--except", "x", "-f", "/b"}, "set_proc_except_policy [1] [/a] [1] [/b] [1]"},
        {{"-A", "-f", "/a", "--except=x", "-P", "q"}, "set_proc_except_policy [1] [/a] [3] [q] [1]"},
    });
}

TEST_F(proc_run_test, an_exception_that_is_missing_is_passed_on_empty) {
    expect_chosen({
        {{"-A", "-f", "/a", "-e"}, "set_proc_except_policy [1] [/a] [0] [] [1]"},
        {{"-D", "-f", "/a", "-e"}, "set_proc_except_policy [1] [/a] [0] [] [3]"},
        // "-f" is the value of the long form here, and "/b" is no option.
        {{"-A", "-f", "/a", "--except", "-f", "/b"}, "set_proc_except_policy [1] [/a] [0] [] [1]"},
        {{"-A", "-f", "/a", "-e", "-f", ""}, "set_proc_except_policy [1] [/a] [1] [] [1]"},
        {{"-A", "-f", "/a", "-e", "-d", ""}, "set_proc_except_policy [1] [/a] [2] [] [1]"},
        {{"-A", "-f", "/a", "-e", "-P", ""}, "set_proc_except_policy [1] [/a] [3] [] [1]"},
        {{"-A", "-p", "12", "-e", "-f", ""}, "set_proc_except_policy_by_pid [12] [1] [] [1]"},
    });
}

TEST_F(proc_run_test, with_e_and_no_program_the_line_and_the_help_follow) {
    const std::string told = no_program_line + proc_help();
    expect_refused({
        {{"-A", "-e"}, -1, told},
        {{"-A", "-e", "-f", "/x"}, -1, told},
        {{"-D", "-e", "-d", "/x"}, -1, told},
        {{"-D", "-P", "q", "-e"}, -1, told},
        {{"-A", "-f", "", "-e", "-f", "/x"}, -1, told},
        {{"-A", "-p", "", "-e", "-f", "/x"}, -1, told},
        {{"-A", "-f", "/a", "-f", "", "-e", "-f", "/x"}, -1, told},
    });
}

// The listing and the rest.

TEST_F(proc_run_test, the_listing_looks_at_nothing_else) {
    expect_chosen({
        {{"-L"}, "list_proc_policy"},
        {{"--list"}, "list_proc_policy"},
        {{"-f", "/a", "-p", "1", "-d", "/b", "-P", "c", "word", "-L"}, "list_proc_policy"},
        {{"-L", "-e"}, "list_proc_policy"},
        {{"-f", "/a", "-e", "-d", "/b", "-L"}, "list_proc_policy"},
    });
}

TEST_F(proc_run_test, a_caller_without_rights_may_list_where_the_word_stands_first) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder(proc_ladder, {0, 1000, 0, 2, 1});
        EXPECT_CALL(operation, call("list_proc_policy")).WillOnce(Return(0));
        EXPECT_EQ(run_open({word}), (call_result{0, ""})) << word;
    }
    expect_ladder_to_rights(proc_ladder, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_open({"-f", "/x", "-A"}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

TEST_F(proc_run_test, every_result_of_an_operation_is_returned) {
    for (const int result : {0, -1, -3, -4, 5}) {
        for (const char* letter : {"-A", "-D"}) {
            expect_ladder(proc_ladder);
            EXPECT_CALL(operation, call(testing::_)).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-p", "1", "-e"}), (call_result{result, ""}));
        }
    }
}

TEST_F(proc_run_test, without_a_command_the_help_follows) {
    expect_refused({
        {{"-f", "/a"}, 0, proc_help()},
        {{"-p", "12"}, 0, proc_help()},
        {{"-e", "-f", "/a"}, 0, proc_help()},
        {{"-f", "/a", "-e", "-P", "b"}, 0, proc_help()},
    });
}

TEST_F(proc_run_test, an_unknown_option_and_a_missing_value_are_told_with_the_help) {
    const captured_stream errors(stderr);
    for (const char* word : {"-f", "-p", "-d", "-P", "--file", "--pid", "--dir", "--package", "--except", "-U", "-n"}) {
        expect_ladder(proc_ladder);
        EXPECT_EQ(run_open({"-A", word}), (call_result{-1, invalid_line + proc_help()})) << word;
    }
    // Two long options begin like this.
    expect_ladder(proc_ladder);
    EXPECT_EQ(run_open({"-A", "--p", "1"}), (call_result{-1, invalid_line + proc_help()}));
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option requires an argument -- 'p'\n"
              "orvex_policy: option requires an argument -- 'd'\n"
              "orvex_policy: option requires an argument -- 'P'\n"
              "orvex_policy: option '--file' requires an argument\n"
              "orvex_policy: option '--pid' requires an argument\n"
              "orvex_policy: option '--dir' requires an argument\n"
              "orvex_policy: option '--package' requires an argument\n"
              "orvex_policy: option '--except' requires an argument\n"
              "orvex_policy: invalid option -- 'U'\n"
              "orvex_policy: invalid option -- 'n'\n"
              "orvex_policy: option '--p' is ambiguous; possibilities: '--pid' '--package'\n");
}

}  // namespace
