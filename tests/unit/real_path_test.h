// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/module_test.h"
#include "support/scratch_dir.h"

/// Fixture of the tests of what `file` and `proc` make of paths: some real ones, and the library's answers about them.
/// The kind of a path is what the library answers, so that a plain file does for a directory too.
class real_path_test : public module_test {
protected:
    real_path_test() { std::filesystem::create_symlink("a", link); }

    void expect_exists(const std::string& path, int answer = 1) {
        EXPECT_CALL(service, path_is_exist(path)).WillOnce(testing::Return(answer));
    }

    void expect_dir(const std::string& path, int answer) {
        EXPECT_CALL(service, path_is_dir(path)).WillOnce(testing::Return(answer));
    }

    using texts = std::vector<std::string>;

    static constexpr int add = 1;
    static constexpr int remove = 3;

    scratch_dir dir;
    const std::string a = dir.write("a", "");
    const std::string b = dir.write("b", "");
    /// Leads to `a`.
    const std::string link = dir.path() + "/link";
    const std::string gone = dir.path() + "/gone";
};
