// SPDX-License-Identifier: Apache-2.0
// What the tests of `exec` share.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "modules/exec/exec_module.h"
#include "support/given_variable.h"
#include "support/module_test.h"

/// The expectations of `exec`, in words. The user's home is /home/tavro.
class exec_test : public module_test {
protected:
    void expect_exists(const std::string& path, int answer = 1) {
        EXPECT_CALL(service, path_is_exist(path)).WillOnce(testing::Return(answer));
    }

    void expect_dir(const std::string& path, int answer) {
        EXPECT_CALL(service, path_is_dir(path)).WillOnce(testing::Return(answer));
    }

    void expect_absolute_path(const std::string& path, const maybe_text& answer) {
        EXPECT_CALL(service, get_absolute_path(path)).WillOnce(testing::Return(answer));
    }

    /// Expects the tests of a path that names a file, and lets it pass.
    void expect_good_file(const std::string& path, const std::string& absolute_path) {
        expect_exists(path);
        expect_absolute_path(path, absolute_path);
        expect_dir(absolute_path, 0);
    }

    /// Expects the tests of a path that names a directory, and lets it pass.
    void expect_good_dir(const std::string& path, const std::string& absolute_path) {
        expect_exists(path);
        expect_dir(path, 1);
        expect_absolute_path(path, absolute_path);
    }

    void expect_kind(const std::string& path, int kind) {
        EXPECT_CALL(service, parse_file_type(path)).WillOnce(testing::Return(kind));
    }

    void expect_look_up(const std::string& path, const given_exectl_lookup& answer) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_load_by_path(path)).WillOnce(testing::Return(answer));
    }

    void expect_record_given_back(const maybe_text& path) {
        EXPECT_CALL(service, orvex_scene_exectl_obj_free(testing::Eq(path)));
    }

    void expect_exception_files(const given_list& list) {
        EXPECT_CALL(service, orvex_scene_exectl_get_policy_for_file_permissive()).WillOnce(testing::Return(list));
    }

    void expect_exception_pkgs(const given_list& list) {
        EXPECT_CALL(service, orvex_scene_exectl_get_policy_for_package_permissive()).WillOnce(testing::Return(list));
    }

    /// Expects the log record of a failure in `function`.
    void expect_failure_log(const std::string& function, const std::string& format, const std::string& message) {
        expect_log("exec", function, format, message);
    }

private:
    const given_variable home_{"HOME", "/home/tavro"};
};
