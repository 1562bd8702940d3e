// SPDX-License-Identifier: Apache-2.0
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "framework/module_base.h"
#include "services/heard_calls.h"
#include "services/test_packages.h"
#include "support/captured_stream.h"
#include "support/module_test.h"
#include "support/scratch_dir.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// Shows the text that the query's child gave.
class showing_base : public COrvexBase {
public:
    std::string get_pkg_name_from_nevra(const std::string& nevra) override {
        text = nevra;
        hear("name");
        return COrvexBase::get_pkg_name_from_nevra(nevra);
    }

    std::string text;
};

struct query_result {
    std::string name;
    std::string output;
    std::string errors;
};

bool operator==(const query_result& left, const query_result& right) {
    return left.name == right.name && left.output == right.output && left.errors == right.errors;
}

void PrintTo(const query_result& result, std::ostream* stream) {
    *stream << "[" << result.name << "] with the output [" << result.output << "] and the errors [" << result.errors
            << "]";
}

class package_owner_test : public module_test {
protected:
    query_result query(const std::string& path) {
        query_result result;
        const captured_stream errors(stderr);
        result.output = capture([&] {
                            result.name = base.get_pkg_by_file(path);
                            return 0;
                        }).output;
        result.errors = errors.read_all();
        return result;
    }

    /// Expects `name`, with nothing on the screen.
    void expect_owner(const std::string& path, const std::string& name) {
        EXPECT_EQ(query(path), (query_result{name, "", ""}));
    }

    /// Expects `name` cut out of `text`, with nothing on the screen. Returns the calls of the child.
    std::vector<std::string> expect_owner_with(const planned_faults& faults, const std::string& name,
                                               const std::string& text) {
        const heard_calls heard(faults);
        expect_owner(owned_file, name);
        EXPECT_EQ(base.text, text);
        return heard.get_calls_in_child();
    }

    const std::string owned_file = get_packaged_path("orvex-demo/bin/hello");
    const std::string owner_line = "orvex-demo-tools-1.0-1.noarch\n";
    showing_base base;
};

TEST_F(package_owner_test, name_is_that_of_the_package) {
    expect_owner_with({}, "orvex-demo-tools", owner_line);
}

TEST_F(package_owner_test, directories_and_links_have_owners_too) {
    expect_owner(get_packaged_path("orvex-demo"), "orvex-demo-tools");
    expect_owner(get_packaged_path("orvex-demo/bin/hi"), "orvex-demo-tools");
    expect_owner(get_packaged_path("orvex-demo/share/dangling"), "orvex-demo-tools");
}

TEST_F(package_owner_test, path_is_taken_as_it_is) {
    expect_owner(get_packaged_path("orvex-demo/share/文件"), "orvex-demo-tools");
    expect_owner(get_packaged_path("orvex-demo/share/100%s \"two words\""), "orvex-demo-tools");
}

TEST_F(package_owner_test, first_of_two_stands_whole_in_front_of_the_second) {
    const heard_calls heard;
    expect_owner(get_packaged_path("orvex-shared/common"), "orvex-shared-a-1.0-1.noarch\norvex-shared-b");
}

TEST_F(package_owner_test, file_of_no_package_has_none) {
    const scratch_dir scratch;
    const std::string path = scratch.write("x", "");
    const heard_calls heard;
    expect_owner(path, "");
    EXPECT_EQ(base.text, "file " + path + " is not owned by any package\n错误: 查询失败, ret=1!\n");
}

TEST_F(package_owner_test, missing_file_has_none) {
    const heard_calls heard;
    expect_owner("/opt/orvex-missing", "");
    EXPECT_EQ(base.text, "错误: 查询失败, ret=1!\n");
}

TEST_F(package_owner_test, message_that_looks_like_a_name_gives_one) {
    const scratch_dir scratch;
    const std::string path = scratch.write("a-b-c.d", "");
    expect_owner(path, "file " + path.substr(0, path.size() - std::string("-b-c.d").size()));
}

TEST_F(package_owner_test, parent_makes_one_read_and_waits) {
    const heard_calls heard;
    expect_owner(owned_file, "orvex-demo-tools");
    EXPECT_THAT(heard.get_calls_here(),
                ElementsAre("pipe", "fork", "close write end", "read 4095", "close read end", "name", "waitpid"));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(package_owner_test, child_makes_its_calls_in_order_and_gives_all_back) {
    const heard_calls heard;
    expect_owner(owned_file, "orvex-demo-tools");
    EXPECT_THAT(
        heard.get_calls_in_child(),
        ElementsAre(
            "close read end", "close write end", "rpmcliInit 3 rpm -qf " + owned_file,
            "option without name, kind 4, table source, value 0, Query/Verify package selection options:",
            "option without name, kind 4, table all, value 0, common options for all rpm modes and executables:",
            "option without name, kind 4, table query, value 0, Query optinos(with -q or --query):",
            "option without name, kind 4, table verify, value 0, Verify options(with -V or --verify):",
            "option without name, kind 4, table alias, value 0, Options implemented via popt alias/exec:",
            "option without name, kind 4, table help, value 0, Help options:", "rpmtsCreate",
            "freopen /dev/null w stderr", "rpmcliQuery source 1, mode q, nothing else, " + owned_file,
            "freopen /dev/tty w stderr", "rpmtsFree", "rpmcliFini behind output", "_exit 0"));
}

TEST_F(package_owner_test, child_keeps_no_end_of_the_pipe_but_its_output) {
    const std::size_t before = count_descriptors();
    const heard_calls heard;
    expect_owner(owned_file, "orvex-demo-tools");
    EXPECT_EQ(heard.get_pipe_ends_in_child(), 1U);
    EXPECT_EQ(count_descriptors(), before);
}

TEST_F(package_owner_test, null_option_context_is_told_into_the_pipe) {
    planned_faults faults;
    faults.option_context = true;
    const std::vector<std::string> calls = expect_owner_with(faults, "", "错误: rpmcliInit 执行失败\n");
    EXPECT_THAT(calls, Contains("_exit 1"));
    EXPECT_THAT(calls, Not(Contains("rpmtsCreate")));
    EXPECT_THAT(calls, Not(Contains("rpmcliFini")));
}

TEST_F(package_owner_test, null_transaction_is_told_into_the_pipe) {
    planned_faults faults;
    faults.transaction = true;
    std::vector<std::string> calls = expect_owner_with(faults, "", "错误: 创建rpm查询事务失败!\n");
    ASSERT_GE(calls.size(), 3U);
    calls.erase(calls.begin(), calls.end() - 3);
    EXPECT_THAT(calls, ElementsAre("rpmtsCreate", "rpmcliFini", "_exit 1"));
}

TEST_F(package_owner_test, failing_redirections_are_told_into_the_pipe_and_the_query_goes_on) {
    planned_faults faults;
    faults.reopened_files = {"/dev/null", "/dev/tty"};
    // The first of the two messages stands in front of the name and is taken for a part of it.
    const auto calls = expect_owner_with(faults, "重定向stderr错误\norvex-demo-tools",
                                         "重定向stderr错误\n" + owner_line + "重定向stderr错误\n");
    EXPECT_THAT(calls, Contains("_exit 0"));
}

TEST_F(package_owner_test, missing_terminal_is_ignored) {
    planned_faults faults;
    faults.reopened_files = {"/dev/tty"};
    const auto calls = expect_owner_with(faults, "orvex-demo-tools", owner_line + "重定向stderr错误\n");
    EXPECT_THAT(calls, Contains("_exit 0"));
}

TEST_F(package_owner_test, failing_query_is_told_behind_its_output) {
    planned_faults faults;
    faults.printed_by_query = "a-b-1-2.x\n";
    faults.query_result = -7;
    EXPECT_THAT(expect_owner_with(faults, "a-b", "a-b-1-2.x\n错误: 查询失败, ret=-7!\n"), Contains("_exit 1"));
}

TEST_F(package_owner_test, silent_child_asks_for_no_name) {
    planned_faults faults;
    faults.printed_by_query = "";
    const heard_calls heard(faults);
    query(owned_file);
    EXPECT_THAT(heard.get_calls_here(),
                ElementsAre("pipe", "fork", "close write end", "read 4095", "close read end", "waitpid"));
}

TEST_F(package_owner_test, failing_read_asks_for_no_name_and_is_complained_about_behind_the_close) {
    planned_faults faults;
    faults.read = true;
    const heard_calls heard(faults);
    query(owned_file);
    EXPECT_THAT(heard.get_calls_here(), ElementsAre("pipe", "fork", "close write end", "read 4095", "close read end",
                                                    "perror read", "waitpid"));
}

TEST_F(package_owner_test, child_complains_when_all_is_given_back) {
    planned_faults no_transaction;
    no_transaction.transaction = true;
    planned_faults bad_query;
    bad_query.printed_by_query = "a-b-1-2.x\n";
    bad_query.query_result = -7;
    for (const planned_faults& faults : {no_transaction, bad_query}) {
        const heard_calls heard(faults);
        query(owned_file);
        EXPECT_THAT(heard.get_calls_in_child(), Contains("rpmcliFini"));
        EXPECT_THAT(heard.get_calls_in_child(), Not(Contains("rpmcliFini behind output")));
    }
}

TEST_F(package_owner_test, silent_child_gives_none) {
    planned_faults faults;
    faults.printed_by_query = "";
    EXPECT_THAT(expect_owner_with(faults, "", ""), Contains("_exit 0"));
}

TEST_F(package_owner_test, answer_in_pieces_is_cut_at_the_first) {
    planned_faults faults;
    faults.printed_by_query = "a-1-1.x\n";
    faults.printed_after_the_read = "b-2-2.x\n";
    expect_owner_with(faults, "a", "a-1-1.x\n");
}

TEST_F(package_owner_test, answer_is_cut_behind_4095_bytes) {
    planned_faults faults;
    faults.printed_by_query = "a-1-1.x" + std::string(5000, 'y') + "-b.c";
    expect_owner_with(faults, "a", "a-1-1.x" + std::string(4088, 'y'));
}

TEST_F(package_owner_test, answer_ends_at_its_first_nul) {
    planned_faults faults;
    faults.printed_by_query = std::string("a-1-1.x\0b-2-2.x", 15);
    expect_owner_with(faults, "a", "a-1-1.x");
}

TEST_F(package_owner_test, failing_pipe_is_told_as_an_error) {
    planned_faults faults;
    faults.pipe = true;
    const heard_calls heard(faults);
    EXPECT_EQ(query(owned_file), (query_result{"", "", "pipe: Too many open files\n"}));
    EXPECT_THAT(heard.get_calls_here(), ElementsAre("pipe", "perror pipe"));
}

TEST_F(package_owner_test, failing_fork_is_told_as_an_error_and_leaves_no_descriptor) {
    const std::size_t before = count_descriptors();
    planned_faults faults;
    faults.fork = true;
    const heard_calls heard(faults);
    EXPECT_EQ(query(owned_file), (query_result{"", "", "fork: Resource temporarily unavailable\n"}));
    EXPECT_THAT(heard.get_calls_here(),
                ElementsAre("pipe", "fork", "perror fork", "close read end", "close write end"));
    EXPECT_EQ(count_descriptors(), before);
}

TEST_F(package_owner_test, failing_read_is_told_as_an_error_and_leaves_nothing_behind) {
    const std::size_t before = count_descriptors();
    planned_faults faults;
    faults.read = true;
    const heard_calls heard(faults);
    EXPECT_EQ(query(owned_file), (query_result{"", "", "read: Input/output error\n"}));
    EXPECT_EQ(count_descriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(package_owner_test, pending_output_of_the_parent_is_printed_once_and_in_its_place) {
    const heard_calls heard;
    std::string name;
    const call_result result = capture([&] {
        std::printf("by printf;");
        std::cout << "by stream;";
        name = base.get_pkg_by_file(owned_file);
        std::cout << "behind;";
        return 0;
    });
    EXPECT_EQ(result.output, "by printf;by stream;behind;");
    EXPECT_EQ(base.text, owner_line);
    EXPECT_EQ(name, "orvex-demo-tools");
}

TEST_F(package_owner_test, thousand_queries_leave_no_child_and_no_descriptor) {
    const std::size_t before = count_descriptors();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(base.get_pkg_by_file(owned_file), "orvex-demo-tools");
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    EXPECT_EQ(count_descriptors(), before);
}

}  // namespace
