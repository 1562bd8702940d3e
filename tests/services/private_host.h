// SPDX-License-Identifier: Apache-2.0
// What the tests change of the host they run on. Nobody else sees it: it is done in a mount namespace of their own.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/module_test.h"
#include "support/scratch_dir.h"

/// Takes this process into a user and mount namespace of its own, where it is root, lays the files of the test packages
/// over /opt and leads rpm to their database. Has to come before anything starts a thread.
class private_host : public testing::Environment {
public:
    void SetUp() override;

    /// Why there is no such namespace; empty where there is one.
    static const std::string& get_obstacle();
};

/// Fixture of the tests that need the private host: where there is none they are skipped.
class private_host_test : public module_test {
protected:
    void SetUp() override;
};

/// The value of HOME with which rpm finds the packages of other_specs.
std::string get_home_of_other_packages();

/// Shows `source`, a file or a directory, in the place of `target` while the object lives.
class bound_path {
public:
    bound_path(const std::string& source, std::string target);
    bound_path(const bound_path&) = delete;
    bound_path& operator=(const bound_path&) = delete;
    ~bound_path();

private:
    std::string target_;
};
