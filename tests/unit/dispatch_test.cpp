// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

#include "support/command_line.h"
#include "support/given_input.h"
#include "support/module_test.h"
#include "unit/help_texts.h"

// The program's `main`, under the name that it has here.
int orvex_policy_main(int argc, char** argv);

namespace {

using testing::Return;

class dispatch_test : public module_test {
protected:
    /// Runs the whole program; the value is its exit value, as `main` returns it.
    call_result run_program(const std::vector<std::string>& words) {
        command_line line(words);
        return capture([&] { return orvex_policy_main(line.argc(), line.argv()); });
    }

    void expect_scene(int answer) { EXPECT_CALL(service, orvex_scene_get_sm_status()).WillOnce(Return(answer)); }

    void expect_change(int previous, int state, int answer) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(previous));
        EXPECT_CALL(service, setModuleStatusReboot_dbus(1, state, 11, 0, 1, 0)).WillOnce(Return(answer));
    }
};

TEST_F(dispatch_test, no_arguments_give_the_help) {
    EXPECT_EQ(run_program({}), (call_result{0, global_help()}));
}

TEST_F(dispatch_test, not_even_a_program_name_gives_the_help) {
    char* argv[] = {nullptr};
    EXPECT_EQ(capture([&] { return orvex_policy_main(0, argv); }), (call_result{0, global_help()}));
}

class silent_help_test : public dispatch_test, public testing::WithParamInterface<const char*> {};

TEST_P(silent_help_test, gives_the_help_and_asks_nothing) {
    EXPECT_EQ(run_program({GetParam()}), (call_result{0, global_help()}));
    EXPECT_EQ(run_program({GetParam(), "kmod", "-L"}), (call_result{0, global_help()}));
}

INSTANTIATE_TEST_SUITE_P(help_words, silent_help_test, testing::Values("-h", "--help"));

INSTANTIATE_TEST_SUITE_P(unknown_words, silent_help_test,
                         testing::Values("frob", "", " ", "Enable", "STATUS", "enabled", "enabl", "statu", "status ",
                                         " kmod", "kmo", "kmods", "Kmod", "boxes", "Box", "-H", "--hel", "-hV", "-v",
                                         "--Version", "exec script", "base", "on", "off", "--", "-L"));

TEST_F(dispatch_test, the_version_options_are_silent) {
    for (const char* word : {"-V", "--version"}) {
        EXPECT_EQ(run_program({word}), (call_result{0, ""})) << word;
        EXPECT_EQ(run_program({word, "status"}), (call_result{0, ""})) << word;
    }
}

TEST_F(dispatch_test, import_and_export_are_not_supported) {
    for (const char* word : {"import", "export"}) {
        EXPECT_EQ(run_program({word}), (call_result{0, "暂不支持\n"})) << word;
        EXPECT_EQ(run_program({word, "file"}), (call_result{0, "暂不支持\n"})) << word;
    }
}

TEST_F(dispatch_test, status_reports_without_asking_for_rights) {
    for (const auto& words : std::vector<std::vector<std::string>>{{"status"}, {"status", "extra", "words"}}) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));

        EXPECT_EQ(run_program(words), (call_result{0, "orvex status : disable\n"}));
    }
}

/// A global state and its number at the system service.
struct state_word {
    const char* word;
    int state;
    bool asks_for_roles;
};

void PrintTo(const state_word& row, std::ostream* stream) {
    *stream << row.word;
}

class state_change_test : public dispatch_test, public testing::WithParamInterface<state_word> {
protected:
    void expect_question_for_roles() {
        if (GetParam().asks_for_roles) {
            EXPECT_CALL(service, orvex_scene_get_module_status(4)).WillOnce(Return(0));
        }
    }
};

TEST_P(state_change_test, the_secret_scene_refuses_before_rights_are_asked_for) {
    expect_scene(1);
    EXPECT_EQ(run_program({GetParam().word}), (call_result{0, "涉密场景下禁止修改orvex状态\n"}));
}

TEST_P(state_change_test, a_caller_without_rights_is_refused_with_the_one_bad_exit_value) {
    expect_scene(0);
    expect_permission_check({0, 1000, 0, 2, 1});
    EXPECT_EQ(run_program({GetParam().word}), (call_result{-1, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

TEST_P(state_change_test, root_is_refused_with_the_roles_in_force) {
    expect_scene(0);
    expect_permission_check({0, 0, 1, 2, 1});
    EXPECT_EQ(run_program({GetParam().word}), (call_result{-1, "当前用户无权限执行, 请切换secadm用户执行!\n"}));
}

TEST_P(state_change_test, root_changes_the_state) {
    // Only 1 is the secret scene.
    for (const int scene : {0, 2, -1}) {
        expect_scene(scene);
        expect_permission_check();
        expect_question_for_roles();
        expect_change(2, GetParam().state, 0);
        EXPECT_EQ(run_program({GetParam().word}), (call_result{0, ""})) << scene;
    }
}

TEST_P(state_change_test, a_failed_change_leaves_the_exit_value_0) {
    expect_scene(0);
    expect_permission_check();
    expect_question_for_roles();
    expect_change(2, GetParam().state, -1);
    EXPECT_CALL(service, orvex_get_error()).WillOnce(Return("no bus"));
    expect_log("orvex_policy", "set_orvex_status", "set orvex status failed, error: %s",
               "set orvex status failed, error: no bus");
    EXPECT_EQ(run_program({GetParam().word}), (call_result{0, "设置orvex状态失败! error: no bus\n"}));
}

TEST_P(state_change_test, words_behind_it_are_ignored) {
    expect_scene(0);
    expect_permission_check();
    expect_question_for_roles();
    expect_change(2, GetParam().state, 0);
    EXPECT_EQ(run_program({GetParam().word, "-h", "extra"}), (call_result{0, ""}));
}

INSTANTIATE_TEST_SUITE_P(states, state_change_test,
                         testing::Values(state_word{"enable", 3, false}, state_word{"permissive", 4, false},
                                         state_word{"disable", 2, true}));

TEST_F(dispatch_test, the_security_administrator_disables_with_a_confirmation) {
    const given_input input("y\n");
    expect_scene(0);
    expect_permission_check({0, 600, 1, 2, 1});
    EXPECT_CALL(service, orvex_scene_get_module_status(4)).WillOnce(Return(1));
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
    EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 2, 11, 0, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(run_program({"disable"}),
              (call_result{0,
                           "安全模式状态将改变, 完成设置后会立即重启系统, 是否继续Y/N[默认N]: "
                           "设置成功后将立即重启系统, 当前正在关闭orvex......\n"}));
}

/// A module's word, its ladder and its help.
struct module_word {
    const char* word;
    ladder_shape shape;
    std::string (*help)();
};

void PrintTo(const module_word& row, std::ostream* stream) {
    *stream << row.word;
}

class module_dispatch_test : public dispatch_test, public testing::WithParamInterface<module_word> {};

TEST_P(module_dispatch_test, the_word_runs_the_module) {
    expect_ladder_start(GetParam().shape);
    EXPECT_EQ(run_program({GetParam().word}), (call_result{0, GetParam().help()}));
}

TEST_P(module_dispatch_test, the_module_gets_the_whole_command_line) {
    expect_ladder(GetParam().shape);
    EXPECT_EQ(run_program({GetParam().word, "word", "--help"}), (call_result{0, GetParam().help()}));
}

TEST_P(module_dispatch_test, a_module_s_failure_leaves_the_exit_value_0) {
    expect_ladder_to_rights(GetParam().shape, {0, 1000, 0, 2, 1});
    EXPECT_EQ(run_program({GetParam().word, "-x"}), (call_result{0, "当前用户无权限执行, 请切换root用户执行!\n"}));
}

INSTANTIATE_TEST_SUITE_P(
    modules, module_dispatch_test,
    testing::Values(module_word{"exec", exec_ladder, exec_help}, module_word{"file", file_ladder, file_help},
                    module_word{"proc", proc_ladder, proc_help}, module_word{"kmod", kmod_ladder, kmod_help},
                    module_word{"net", net_ladder, net_help}, module_word{"userid", userid_ladder, userid_help},
                    module_word{"box", box_ladder, box_help}));

}  // namespace
