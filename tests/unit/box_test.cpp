// SPDX-License-Identifier: Apache-2.0
// What `box` has beyond the ladder of all modules: its switching end to end.
#include "modules/box/box_module.h"

#include <gmock/gmock.h>

#include "support/module_test.h"
#include "unit/help_texts.h"

namespace {

using testing::Return;

class box_test : public module_test {
protected:
    COrvexBox box;
};

TEST_F(box_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  box.usage();
                  return 0;
              }),
              (call_result{0, box_help()}));
}

TEST_F(box_test, on_with_the_framework_disabled_starts_it_with_the_box_alone) {
    expect_ladder_to_rights(box_ladder, {0, 0, 0, 0, 0});
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 3, 11, 0, 1, 0)).WillOnce(Return(0));
    for (const int module : {0, 7, 1, 3, 2, 5, 4}) {
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(module, 0, 0)).WillOnce(Return(0));
    }
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(11, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(run(box, {"box", "on"}),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[box]开启成功, 重启后生效!\n"}));
}

TEST_F(box_test, off_with_the_framework_enabled_switches_the_box) {
    expect_ladder_to_rights(box_ladder);
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
    EXPECT_CALL(service, orvex_scene_set_module_status(11, 0)).WillOnce(Return(0));

    EXPECT_EQ(run(box, {"box", "off"}), (call_result{0, ""}));
}

TEST_F(box_test, a_refused_switch_is_told_once) {
    expect_ladder_to_rights(box_ladder);
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
    EXPECT_CALL(service, orvex_scene_set_module_status(11, 1)).WillOnce(Return(-4));

    EXPECT_EQ(run(box, {"box", "on"}), (call_result{-1, "设置安全模块[box]状态失败! 用户无权限!\n"}));
}

TEST_F(box_test, the_state_read_at_the_start_decides_about_off) {
    // The framework is enabled between the two reads: the first one counts.
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    expect_permission_check({0, 0, 0, 2, 1});

    EXPECT_EQ(run(box, {"box", "off"}), (call_result{0, "orvex未开启!\n"}));
}

}  // namespace
