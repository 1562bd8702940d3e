// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <ostream>
#include <string>

#include "support/module_test.h"

namespace {

constexpr const char* secadm_text = "当前用户无权限执行, 请切换secadm用户执行!";
constexpr const char* root_text = "当前用户无权限执行, 请切换root用户执行!";

/// Who may act while the role module and the framework have these states.
struct permission_row {
    int role_separation;
    int framework;
    uid_t who_may;
    const char* refusal;
};

void PrintTo(const permission_row& row, std::ostream* stream) {
    *stream << "roles " << row.role_separation << ", framework " << row.framework;
}

class permission_test : public module_test, public testing::WithParamInterface<permission_row> {
protected:
    /// Lets `user` ask, and tells the answer, with what the check left in a text that was "before".
    bool is_allowed(uid_t user, std::string& error) {
        expect_permission_check({0, user, GetParam().role_separation, GetParam().framework, 1});
        error = "before";
        COrvexBase base;
        const call_result result = capture([&] { return base.check_permission(error) ? 1 : 0; });
        EXPECT_EQ(result.output, "");
        return result.value == 1;
    }
};

TEST_P(permission_test, one_user_alone_may_act) {
    std::string error;

    EXPECT_TRUE(is_allowed(GetParam().who_may, error));
    EXPECT_EQ(error, "before");
}

TEST_P(permission_test, the_other_privileged_user_is_refused) {
    std::string error;

    EXPECT_FALSE(is_allowed(GetParam().who_may == 0 ? 600 : 0, error));
    EXPECT_EQ(error, GetParam().refusal);
}

TEST_P(permission_test, everybody_else_is_refused) {
    for (const uid_t user : {1U, 599U, 601U, 1000U, 65534U, 4294967295U}) {
        std::string error;

        EXPECT_FALSE(is_allowed(user, error)) << user;
        EXPECT_EQ(error, GetParam().refusal);
    }
}

INSTANTIATE_TEST_SUITE_P(roles_in_force, permission_test,
                         testing::Values(permission_row{1, 2, 600, secadm_text}, permission_row{1, 4, 600, secadm_text},
                                         permission_row{1, 3, 600, secadm_text},
                                         permission_row{1, -1, 600, secadm_text}));

INSTANTIATE_TEST_SUITE_P(framework_disabled, permission_test,
                         testing::Values(permission_row{1, 0, 0, root_text}, permission_row{0, 0, 0, root_text},
                                         permission_row{2, 0, 0, root_text}));

// Only 1 is on for the role module: a warning state is not.
INSTANTIATE_TEST_SUITE_P(roles_not_on, permission_test,
                         testing::Values(permission_row{0, 2, 0, root_text}, permission_row{0, 4, 0, root_text},
                                         permission_row{2, 2, 0, root_text}, permission_row{2, 4, 0, root_text},
                                         permission_row{7, 2, 0, root_text}, permission_row{-1, 4, 0, root_text}));

}  // namespace
