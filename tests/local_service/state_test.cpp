// SPDX-License-Identifier: Apache-2.0
#include "core/states.h"

#include "core/store.h"
#include "local_store.h"
#include "service/status.h"

using testing::ElementsAre;

namespace {

constexpr int all_modules[] = {0, 1, 2, 3, 4, 5, 7, 11};

class states : public local_store {
protected:
    static int request(int state, int reboot = 0) { return setModuleStatusReboot_dbus(1, state, 11, 0, 1, reboot); }

    static void restart() {
        local_service::transaction whole;
        local_service::simulate_restart();
        whole.commit();
    }
};

TEST_F(states, are_all_off_in_a_fresh_store) {
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_EQ(orvex_scene_get_sm_status(), 0);
    for (const int module : all_modules) {
        EXPECT_EQ(orvex_scene_get_module_status(module), 0) << module;
    }
}

TEST_F(states, enabling_a_disabled_framework_waits_for_the_restart) {
    EXPECT_EQ(request(orvex_state_enable), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    restart();
    EXPECT_EQ(orvex_scene_getstatus(), 2);
}

TEST_F(states, permissive_from_disabled_waits_for_the_restart) {
    EXPECT_EQ(request(orvex_state_permissive), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    restart();
    EXPECT_EQ(orvex_scene_getstatus(), 4);
}

TEST_F(states, disabling_before_the_restart_takes_a_pending_enable_back) {
    request(orvex_state_enable);
    EXPECT_EQ(request(orvex_state_disable), 0);
    restart();
    EXPECT_EQ(orvex_scene_getstatus(), 0);
}

TEST_F(states, change_at_once_while_the_framework_runs) {
    enable_framework();
    EXPECT_EQ(request(orvex_state_permissive), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 4);
    EXPECT_EQ(request(orvex_state_enable), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 2);
    EXPECT_EQ(request(orvex_state_disable), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    restart();
    EXPECT_EQ(orvex_scene_getstatus(), 0);
}

TEST_F(states, a_requested_restart_is_simulated_counted_and_logged) {
    enable_framework();
    EXPECT_EQ(request(orvex_state_disable, 1), 0);
    const local_service::framework_state state = local_service::read_states();
    EXPECT_EQ(state.now, 0);
    EXPECT_EQ(state.restarts, 2);
    EXPECT_EQ(state.requested_restarts, 1);
    EXPECT_THAT(log_messages(),
                ElementsAre("restart requested with the change of state: simulated, the machine keeps running"));
}

TEST_F(states, an_unknown_state_is_refused_with_a_text) {
    EXPECT_LT(request(0), 0);
    EXPECT_EQ(last_error(), "unknown state 0");
    EXPECT_LT(request(5), 0);
}

TEST_F(states, a_module_switches_at_once_and_for_later_while_the_framework_runs) {
    enable_framework();
    EXPECT_EQ(orvex_scene_set_module_status(3, 1), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
    EXPECT_EQ(orvex_scene_get_module_status(2), 0);
    restart();
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
    EXPECT_EQ(orvex_scene_set_module_status(3, 0), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
}

TEST_F(states, a_module_does_not_switch_at_once_while_the_framework_is_disabled) {
    EXPECT_LT(orvex_scene_set_module_status(3, 1), 0);
    EXPECT_EQ(last_error(), "the framework is disabled: its modules are switched for after the restart");
}

TEST_F(states, modules_are_off_while_the_framework_is_disabled_and_come_back_with_it) {
    enable_framework();
    orvex_scene_set_module_status(5, 1);
    request(orvex_state_disable);
    EXPECT_EQ(orvex_scene_get_module_status(5), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(5), 1);
}

TEST_F(states, an_unknown_module_or_status_is_refused) {
    enable_framework();
    EXPECT_LT(orvex_scene_get_module_status(6), 0);
    EXPECT_EQ(last_error(), "no such module, or a damaged store");
    EXPECT_LT(orvex_scene_set_module_status(6, 1), 0);
    EXPECT_LT(orvex_scene_set_module_status(3, 2), 0);
    EXPECT_EQ(last_error(), "a module is switched to 0 or 1, not to 2");
}

TEST_F(states, a_batch_counts_from_its_final_call_on_after_the_restart) {
    EXPECT_EQ(orvex_scene_set_multi_module_status(2, 1, 0), 0);
    EXPECT_EQ(orvex_scene_set_multi_module_status(3, 1, 1), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(2), 1);
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
    EXPECT_EQ(orvex_scene_get_module_status(5), 0);
}

TEST_F(states, a_batch_without_its_final_call_changes_nothing) {
    EXPECT_EQ(run_in_child([] { return orvex_scene_set_multi_module_status(2, 1, 0); }), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(2), 0);
}

TEST_F(states, a_dead_process_leaves_nothing_to_the_batch_of_the_next) {
    EXPECT_EQ(run_in_child([] { return orvex_scene_set_multi_module_status(2, 1, 0); }), 0);
    EXPECT_EQ(run_in_child([] { return orvex_scene_set_multi_module_status(3, 1, 1); }), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(2), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
}

TEST_F(states, a_batch_with_a_refused_call_leaves_nothing_to_the_next_batch) {
    EXPECT_EQ(orvex_scene_set_multi_module_status(2, 1, 0), 0);
    EXPECT_LT(orvex_scene_set_multi_module_status(6, 1, 0), 0);
    EXPECT_EQ(orvex_scene_set_multi_module_status(3, 1, 1), 0);
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(2), 0);
    EXPECT_EQ(orvex_scene_get_module_status(3), 1);
}

TEST_F(states, a_batch_is_refused_while_the_framework_runs) {
    enable_framework();
    EXPECT_LT(orvex_scene_set_multi_module_status(3, 1, 1), 0);
    EXPECT_EQ(last_error(), "the framework is not disabled: its modules are switched at once");
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
}

TEST_F(states, the_security_administrator_may_switch) {
    enable_framework();
    become(600);
    EXPECT_EQ(orvex_scene_set_module_status(4, 1), 0);
    EXPECT_EQ(request(orvex_state_permissive), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 4);
}

TEST_F(states, switching_by_another_user_is_minus_four_and_changes_nothing) {
    enable_framework();
    become(1000);
    EXPECT_EQ(orvex_scene_set_module_status(3, 1), -4);
    EXPECT_EQ(orvex_scene_set_multi_module_status(3, 1, 1), -4);
    EXPECT_EQ(request(orvex_state_disable), -4);
    EXPECT_EQ(last_error(), "user 1000 may not change this: only root and the security administrator");
    EXPECT_EQ(orvex_scene_getstatus(), 2);
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
    EXPECT_TRUE(log_messages().empty());
}

TEST_F(states, the_secret_scene_is_seen_by_callers) {
    local_service::set_secret_scene(true);
    EXPECT_EQ(orvex_scene_get_sm_status(), 1);
    local_service::set_secret_scene(false);
    EXPECT_EQ(orvex_scene_get_sm_status(), 0);
}

}  // namespace
