// SPDX-License-Identifier: Apache-2.0
#include "services/private_host.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace {

const std::string packages_dir = TEST_PACKAGES_DIR;

std::string& obstacle() {
    static std::string text;
    return text;
}

/// Throws where `result` tells of a failure.
void check(int result, const std::string& what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

void write_file(const std::string& path, const std::string& content) {
    std::ofstream file(path);
    file << content << std::flush;
    check(file ? 0 : -1, "writing " + path);
}

void mount_over(const std::string& source, const std::string& target) {
    check(mount(source.c_str(), target.c_str(), "none", MS_BIND, nullptr), "mounting over " + target);
}

/// Throws where the system does not allow it.
void enter_namespaces() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    check(unshare(CLONE_NEWUSER | CLONE_NEWNS), "entering a user namespace");
    write_file("/proc/self/setgroups", "deny");
    write_file("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    write_file("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    check(mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr), "keeping the mounts private");
}

}  // namespace

void private_host::SetUp() {
    try {
        enter_namespaces();
    } catch (const std::system_error& error) {
        obstacle() = error.what();
        return;
    }
    mount_over(packages_dir + "/root/opt", "/opt");
    check(setenv("HOME", (packages_dir + "/home").c_str(), 1), "setting HOME");
}

const std::string& private_host::get_obstacle() {
    return obstacle();
}

void private_host_test::SetUp() {
    if (!private_host::get_obstacle().empty()) {
        GTEST_SKIP() << "no namespace for a private host: " << private_host::get_obstacle();
    }
}

std::string get_home_of_other_packages() {
    return packages_dir + "/other";
}

bound_path::bound_path(const std::string& source, std::string target) : target_(std::move(target)) {
    mount_over(source, target_);
}

bound_path::~bound_path() {
    static_cast<void>(umount2(target_.c_str(), MNT_DETACH));
}
