// SPDX-License-Identifier: Apache-2.0
// The owner query. rpm's query prints its answer instead of returning it, so it runs in a forked child whose standard
// output is a pipe. Whatever the child prints takes the road of an answer: its own error texts too.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "framework/module_base.h"
#include "framework/on_demand.h"

namespace {

constexpr std::size_t read_end = 0;
constexpr std::size_t write_end = 1;

/// The child's whole life: standard output becomes the pipe's `write_end`.
[[noreturn]] void run_child(const package_questions& packages, const std::array<int, 2>& ends,
                            const std::string& path) {
    close(ends[read_end]);
    dup2(ends[write_end], STDOUT_FILENO);
    close(ends[write_end]);
    const int status = packages.print_owner(path);
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
    // Asked for here, as each child would have to load rpm by itself.
    const package_questions& packages = ask_packages();
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
        run_child(packages, ends, path);
    }
    close(ends[write_end]);
    const std::optional<std::string> answer = read_answer(ends[read_end]);
    std::string owner = answer ? get_pkg_name_from_nevra(*answer) : std::string();
    waitpid(child, nullptr, 0);
    return owner;
}
