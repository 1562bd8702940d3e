// SPDX-License-Identifier: Apache-2.0
// The packages that the tests ask rpm about.
#pragma once

#include <gtest/gtest.h>

#include <string>

/// Leads rpm to the database of the test packages, for all tests of the process.
class test_packages : public testing::Environment {
public:
    void SetUp() override;
};

/// The path of a file of the test packages, from its path below the root that their files have in common.
std::string get_packaged_path(const std::string& path);

/// The value of HOME with which rpm finds the packages of other_specs.
std::string get_home_of_other_packages();
