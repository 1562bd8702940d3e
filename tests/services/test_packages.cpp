// SPDX-License-Identifier: Apache-2.0
#include "services/test_packages.h"

#include <cstdlib>

namespace {

constexpr const char* packages_dir = TEST_PACKAGES_DIR;

}  // namespace

void test_packages::SetUp() {
    ASSERT_EQ(setenv("HOME", (std::string(packages_dir) + "/home").c_str(), 1), 0);
}

std::string get_packaged_path(const std::string& path) {
    return std::string(packages_dir) + "/root/" + path;
}

std::string get_home_of_other_packages() {
    return std::string(packages_dir) + "/other";
}
