// SPDX-License-Identifier: Apache-2.0
#include "tool/command_runner.h"

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "core/failure.h"
#include "core/library_directory.h"
#include "core/paths.h"
#include "core/state_directory.h"
#include "core/trace.h"

namespace local_service {
namespace {

/// Above what a shell and its scripts use for themselves.
constexpr int first_trace_descriptor = 100;

[[noreturn]] void throw_error(const std::string& what) {
    throw failure(what + ": " + std::strerror(errno));
}

void set_variable(const char* name, const std::string& value) {
    if (setenv(name, value.c_str(), 1) != 0) {
        throw_error(std::string("cannot set ") + name);
    }
}

void use_libraries() {
    const char* present = std::getenv("LD_LIBRARY_PATH");
    const bool is_set = present != nullptr && *present != '\0';
    // An empty entry would stand for the working directory.
    set_variable("LD_LIBRARY_PATH", library_directory() + (is_set ? ":" + std::string(present) : ""));
}

void write_file(const char* path, const std::string& text) {
    std::ofstream file(path);
    if (!(file << text << std::flush)) {
        throw_error(std::string("cannot write ") + path);
    }
}

/// A namespace in which the present user has the number `user`, on the files of the present user.
void enter_namespace(uid_t user) {
    const std::string user_map = std::to_string(user) + " " + std::to_string(geteuid()) + " 1";
    const std::string group_map = std::to_string(user) + " " + std::to_string(getegid()) + " 1";
    if (unshare(CLONE_NEWUSER) != 0) {
        throw_error("cannot become user " + std::to_string(user) + ", as this machine gives no user namespace");
    }
    write_file("/proc/self/uid_map", user_map);
    write_file("/proc/self/setgroups", "deny");
    write_file("/proc/self/gid_map", group_map);
}

/// Root becomes the user for good; everybody else, and root where there is no such user, in a namespace.
void become(uid_t user) {
    if (getuid() == user && geteuid() == user) {
        return;
    }
    if (geteuid() == 0 && setgroups(0, nullptr) == 0 && setresgid(user, user, user) == 0 &&
        setresuid(user, user, user) == 0) {
        return;
    }
    enter_namespace(user);
}

/// A directory that is made here serves both administrators, like the one of the system.
void make_state_directory(const std::string& path) {
    if (mkdir(path.c_str(), 0755) == 0) {
        give_to(security_administrator, path);
    } else if (errno != EEXIST) {
        throw_error("cannot make " + path);
    }
}

void open_trace(const trace_wish& wish) {
    const bool is_file = !wish.file.empty();
    const int opened =
        is_file ? open(wish.file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644) : STDERR_FILENO;
    if (opened < 0) {
        throw_error("cannot write " + wish.file);
    }
    const int inherited = fcntl(opened, F_DUPFD, first_trace_descriptor);
    if (inherited < 0) {
        throw_error("cannot trace to " + (is_file ? wish.file : "standard error"));
    }
    if (is_file) {
        close(opened);
    }
    set_variable(trace_variable, (wish.is_json ? "json:" : "text:") + std::to_string(inherited));
}

int execute(const std::vector<std::string>& words) {
    constexpr int cannot_execute = 126;
    constexpr int not_found = 127;
    std::vector<std::string> copies = words;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& word : copies) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    execvp(pointers.front(), pointers.data());
    const int error = errno;
    std::cerr << "orvex_local: cannot run " << words.front() << ": " << std::strerror(error) << '\n';
    return error == ENOENT ? not_found : cannot_execute;
}

}  // namespace

int run_command(const std::vector<std::string>& words, const run_place& place) {
    use_libraries();
    if (!place.state.empty()) {
        const std::string state = absolute_path(place.state);
        make_state_directory(state);
        set_variable("ORVEX_LOCAL_STATE", state);
    }
    if (place.user.has_value()) {
        become(*place.user);
    }
    return execute(words);
}

int trace_command(const std::vector<std::string>& words, const trace_wish& wish) {
    use_libraries();
    open_trace(wish);
    return execute(words);
}

}  // namespace local_service
