// SPDX-License-Identifier: Apache-2.0
// The owner query. rpm's query prints its answer instead of returning it, so it runs in a forked child whose standard
// output is a pipe. Whatever the child prints takes the road of an answer: its own error texts too.
#include <popt.h>
#include <rpm/argv.h>
#include <rpm/rpmcli.h>
#include <rpm/rpmts.h>
#include <rpm/rpmtypes.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <type_traits>

#include "framework/module_base.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/owned_rpm.h"

namespace {

constexpr std::size_t read_end = 0;
constexpr std::size_t write_end = 1;

struct option_context_deleter {
    void operator()(poptContext context) const noexcept { rpmcliFini(context); }
};
using owned_option_context = std::unique_ptr<std::remove_pointer_t<poptContext>, option_context_deleter>;

poptOption include_table(poptOption* table, const char* description) {
    return {
        .longName = nullptr,
        .shortName = '\0',
        .argInfo = POPT_ARG_INCLUDE_TABLE,
        .arg = table,
        .val = 0,
        .descrip = description,
        .argDescrip = nullptr,
    };
}

/// Points standard error to `path`. The text of a failure goes the way of all the child's output.
void redirect_standard_error(const char* path) {
    if (std::freopen(path, "w", stderr) == nullptr) {
        print_line("重定向stderr错误");
    }
}

/// Runs the query proper; its answer goes to standard output. Returns what the library's query returned.
int query(rpmts transaction, poptContext context, QVA_t arguments) {
    redirect_standard_error("/dev/null");
    const int ret = rpmcliQuery(transaction, arguments, const_cast<ARGV_const_t>(poptGetArgs(context)));
    redirect_standard_error("/dev/tty");
    return ret;
}

/// Lets rpm print the owner of `path`. Returns the text of what went wrong, or nothing; by then all is given back.
std::optional<std::string> ask_rpm(std::string path) {
    const owned_memory<rpmQVKArguments_s> arguments(static_cast<QVA_t>(std::calloc(1, sizeof(rpmQVKArguments_s))));
    arguments->qva_source = RPMQV_PATH;
    arguments->qva_mode = 'q';

    std::array<poptOption, 7> options = {
        include_table(rpmQVSourcePoptTable, "Query/Verify package selection options:"),
        include_table(rpmcliAllPoptTable, "common options for all rpm modes and executables:"),
        // The misspelt word is the table's own.
        include_table(rpmQueryPoptTable, "Query optinos(with -q or --query):"),
        include_table(rpmVerifyPoptTable, "Verify options(with -V or --verify):"),
        include_table(poptAliasOptions, "Options implemented via popt alias/exec:"),
        include_table(poptHelpOptions, "Help options:"),
        poptOption{},
    };
    std::string program = "rpm";
    std::string query_file = "-qf";
    const std::array<char*, 4> argv = {program.data(), query_file.data(), path.data(), nullptr};
    const owned_option_context context(rpmcliInit(3, argv.data(), options.data()));
    if (context == nullptr) {
        return "错误: rpmcliInit 执行失败";
    }
    const owned_transaction transaction(rpmtsCreate());
    if (transaction == nullptr) {
        return "错误: 创建rpm查询事务失败!";
    }
    const int ret = query(transaction.get(), context.get(), arguments.get());
    return ret == 0 ? std::nullopt : std::optional("错误: 查询失败, ret=" + std::to_string(ret) + "!");
}

/// Prints the owner of `path`, or whatever went wrong, on standard output. Returns the child's exit status.
int print_owner(const std::string& path) {
    const std::optional<std::string> complaint = ask_rpm(path);
    if (!complaint) {
        return 0;
    }
    print_line(*complaint);
    return 1;
}

/// The child's whole life: standard output becomes the pipe's `write_end`.
[[noreturn]] void run_child(const std::array<int, 2>& ends, const std::string& path) {
    close(ends[read_end]);
    dup2(ends[write_end], STDOUT_FILENO);
    close(ends[write_end]);
    const int status = print_owner(path);
    static_cast<void>(std::fflush(stdout));
    _exit(status);
}

/// Makes one single read from the pipe and closes its `read_end`. Returns what came, up to its first NUL, or nothing.
/// An answer that comes in several pieces is cut at the first one, which is accepted.
std::optional<std::string> read_answer(int descriptor) {
    std::array<char, 4096> buffer{};
    const ssize_t size = read(descriptor, buffer.data(), buffer.size() - 1);
    close(descriptor);
    if (size == -1) {
        std::perror("read");
    }
    return size > 0 ? std::optional<std::string>(buffer.data()) : std::nullopt;
}

}  // namespace

std::string COrvexBase::get_pkg_by_file(const std::string& path) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) == -1) {
        std::perror("pipe");
        return {};
    }
    // What is still buffered here would reach the pipe from the child.
    static_cast<void>(std::fflush(stdout));
    const pid_t child = fork();
    if (child == -1) {
        std::perror("fork");
        close(ends[read_end]);
        close(ends[write_end]);
        return {};
    }
    if (child == 0) {
        run_child(ends, path);
    }
    close(ends[write_end]);
    const std::optional<std::string> answer = read_answer(ends[read_end]);
    std::string owner = answer ? get_pkg_name_from_nevra(*answer) : std::string();
    waitpid(child, nullptr, 0);
    return owner;
}
