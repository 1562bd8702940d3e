// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "support/module_test.h"

namespace {

using testing::Return;

class switching_test : public module_test {
protected:
    call_result switch_module(orvex_module_type module, int status) {
        return capture([&] { return base.set_module_status(module, status); });
    }

    void expect_framework(int answer) { EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(answer)); }

    void expect_framework_enabling(int answer) {
        EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 3, 11, 0, 1, 0)).WillOnce(Return(answer));
    }

    /// Expects that each of `modules` is set to off as a part of the batch.
    void expect_off(std::initializer_list<int> modules) {
        for (const int module : modules) {
            EXPECT_CALL(service, orvex_scene_set_multi_module_status(module, 0, 0)).WillOnce(Return(0));
        }
    }

    COrvexBase base;
};

TEST_F(switching_test, the_table_is_filled_afterwards) {
    expect_framework(2);
    EXPECT_CALL(service, orvex_scene_set_module_status(11, 1)).WillOnce(Return(0));

    switch_module(module_box, 1);

    EXPECT_EQ(base.get_module_names().size(), 8U);
    EXPECT_EQ(base.get_module_types().size(), 8U);
}

// With the framework running.

class running_switch_test : public switching_test, public testing::WithParamInterface<int> {};

TEST_P(running_switch_test, success_is_silent) {
    for (const int status : {0, 1}) {
        expect_framework(GetParam());
        EXPECT_CALL(service, orvex_scene_set_module_status(3, status)).WillOnce(Return(0));

        EXPECT_EQ(switch_module(module_kmod, status), (call_result{0, ""}));
    }
}

TEST_P(running_switch_test, missing_rights_are_told_and_not_logged) {
    expect_framework(GetParam());
    EXPECT_CALL(service, orvex_scene_set_module_status(7, 1)).WillOnce(Return(-4));

    EXPECT_EQ(switch_module(module_exec_script, 1),
              (call_result{-1, "设置安全模块[exec script]状态失败! 用户无权限!\n"}));
}

TEST_P(running_switch_test, any_other_failure_is_told_and_logged) {
    expect_framework(GetParam());
    EXPECT_CALL(service, orvex_scene_set_module_status(1, 0)).WillOnce(Return(-5));
    expect_log("base", "set_module_status", "set module status failed, module=%s, status=%d, ret=%d",
               "set module status failed, module=net, status=0, ret=-5");

    EXPECT_EQ(switch_module(module_net, 0), (call_result{-1, "设置安全模块[net]状态失败!\n"}));
}

TEST_P(running_switch_test, a_positive_result_is_a_failure_too) {
    expect_framework(GetParam());
    EXPECT_CALL(service, orvex_scene_set_module_status(11, 1)).WillOnce(Return(1));
    expect_log("base", "set_module_status", "set module status failed, module=%s, status=%d, ret=%d",
               "set module status failed, module=box, status=1, ret=1");

    EXPECT_EQ(switch_module(module_box, 1), (call_result{-1, "设置安全模块[box]状态失败!\n"}));
}

INSTANTIATE_TEST_SUITE_P(framework_states, running_switch_test, testing::Values(2, 4, 3, -1));

TEST_F(switching_test, a_type_that_is_not_in_the_table_has_an_empty_name) {
    expect_framework(2);
    EXPECT_CALL(service, orvex_scene_set_module_status(6, 1)).WillOnce(Return(-4));

    EXPECT_EQ(switch_module(static_cast<orvex_module_type>(6), 1),
              (call_result{-1, "设置安全模块[]状态失败! 用户无权限!\n"}));
}

// With the framework disabled.

TEST_F(switching_test, starting_puts_all_others_off_and_the_requested_module_last) {
    expect_framework(0);
    expect_framework_enabling(0);
    expect_off({0, 7, 1, 2, 5, 4, 11});
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(3, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(switch_module(module_kmod, 1),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[kmod]开启成功, 重启后生效!\n"}));
}

TEST_F(switching_test, starting_with_script_control_puts_exec_off) {
    expect_framework(0);
    expect_framework_enabling(0);
    expect_off({0, 1, 3, 2, 5, 4, 11});
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(7, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(switch_module(module_exec_script, 1),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[exec script]开启成功, 重启后生效!\n"}));
}

TEST_F(switching_test, starting_says_on_also_where_the_module_goes_off) {
    expect_framework(0);
    expect_framework_enabling(0);
    expect_off({0, 7, 1, 3, 2, 5, 4});
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(11, 0, 1)).WillOnce(Return(0));

    EXPECT_EQ(switch_module(module_box, 0),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[box]开启成功, 重启后生效!\n"}));
}

TEST_F(switching_test, a_framework_that_cannot_be_enabled_ends_it) {
    for (const int failure : {-1, -4, 1}) {
        expect_framework(0);
        expect_framework_enabling(failure);
        EXPECT_CALL(service, orvex_get_error()).WillOnce(Return("bus 断开"));
        expect_log("base", "set_module_status", "set orvex status failed, ret: %d",
                   "set orvex status failed, ret: " + std::to_string(failure), "error: bus 断开\n");

        EXPECT_EQ(switch_module(module_kmod, 1),
                  (call_result{-1, "正在开启orvex......\n设置orvex状态失败! error: bus 断开\n"}));
    }
}

TEST_F(switching_test, missing_rights_for_another_module_are_told_with_the_requested_name) {
    expect_framework(0);
    expect_framework_enabling(0);
    expect_off({0, 7});
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(1, 0, 0)).WillOnce(Return(-4));

    EXPECT_EQ(switch_module(module_kmod, 1),
              (call_result{-1, "正在开启orvex......\n设置安全模块[kmod]状态失败! 用户无权限!\n"}));
}

TEST_F(switching_test, another_failure_for_another_module_is_told_with_its_own_name_and_logged) {
    for (const int failure : {-5, 2}) {
        expect_framework(0);
        expect_framework_enabling(0);
        expect_off({0, 7, 1, 3, 2, 5});
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(4, 0, 0)).WillOnce(Return(failure));
        expect_log("base", "set_module_status", "set module status disable failed, module=%s, ret=%d",
                   "set module status disable failed, module=3adm, ret=" + std::to_string(failure),
                   "关闭安全模块[3adm]失败! \n");

        EXPECT_EQ(switch_module(module_box, 1), (call_result{-1, "正在开启orvex......\n关闭安全模块[3adm]失败! \n"}));
    }
}

TEST_F(switching_test, missing_rights_for_the_last_call_are_told_and_not_logged) {
    expect_framework(0);
    expect_framework_enabling(0);
    expect_off({7, 1, 3, 2, 5, 4, 11});
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(0, 1, 1)).WillOnce(Return(-4));

    EXPECT_EQ(switch_module(module_exec, 1),
              (call_result{-1, "正在开启orvex......\n设置安全模块[exec]状态失败! 用户无权限!\n"}));
}

TEST_F(switching_test, any_other_failure_of_the_last_call_is_called_missing_rights_and_logged) {
    for (const int failure : {-5, 1}) {
        expect_framework(0);
        expect_framework_enabling(0);
        expect_off({0, 7, 1, 3, 5, 4, 11});
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(2, 1, 1)).WillOnce(Return(failure));
        expect_log("base", "set_module_status", "set module status enable failed, module=%s, ret=%d",
                   "set module status enable failed, module=file, ret=" + std::to_string(failure),
                   "开启安全模块[file]失败! 用户无权限!\n");

        EXPECT_EQ(switch_module(module_file, 1),
                  (call_result{-1, "正在开启orvex......\n开启安全模块[file]失败! 用户无权限!\n"}));
    }
}

TEST_F(switching_test, the_table_is_filled_through_the_object) {
    class other_table : public COrvexBase {
    public:
        void init_module_table() override {
            COrvexBase::init_module_table();
            get_module_names()[module_net] = "other net";
        }
    } object;
    expect_framework(2);
    EXPECT_CALL(service, orvex_scene_set_module_status(1, 1)).WillOnce(Return(-4));

    EXPECT_EQ(capture([&] { return object.set_module_status(module_net, 1); }),
              (call_result{-1, "设置安全模块[other net]状态失败! 用户无权限!\n"}));
}

}  // namespace
