// SPDX-License-Identifier: Apache-2.0
#include "front/status_report.h"

#include <gmock/gmock.h>

#include <string>

#include "support/module_test.h"

namespace {

using testing::Return;

/// The modules' states in the order of the report.
struct module_answers {
    int exec = 1;
    int exec_script = 1;
    int net = 1;
    int kmod = 1;
    int file = 1;
    int proc = 1;
    int roles = 1;
    int box = 1;
};

class status_report_test : public module_test {
protected:
    void expect_framework(int answer) { EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(answer)); }

    void expect_modules(const module_answers& answers) {
        EXPECT_CALL(service, orvex_scene_get_module_status(0)).WillOnce(Return(answers.exec));
        EXPECT_CALL(service, orvex_scene_get_module_status(7)).WillOnce(Return(answers.exec_script));
        EXPECT_CALL(service, orvex_scene_get_module_status(1)).WillOnce(Return(answers.net));
        EXPECT_CALL(service, orvex_scene_get_module_status(3)).WillOnce(Return(answers.kmod));
        EXPECT_CALL(service, orvex_scene_get_module_status(2)).WillOnce(Return(answers.file));
        EXPECT_CALL(service, orvex_scene_get_module_status(5)).WillOnce(Return(answers.proc));
        EXPECT_CALL(service, orvex_scene_get_module_status(4)).WillOnce(Return(answers.roles));
        EXPECT_CALL(service, orvex_scene_get_module_status(11)).WillOnce(Return(answers.box));
    }

    call_result report() {
        return capture([] { return print_status(); });
    }

    /// The report of an enabled framework with these two states and all else on.
    std::string report_exec(int exec, int exec_script) {
        module_answers answers;
        answers.exec = exec;
        answers.exec_script = exec_script;
        expect_framework(2);
        expect_modules(answers);
        return report().output;
    }
};

constexpr const char* rows_behind_exec =
    "    net         : on\n"
    "    kmod        : on\n"
    "    file        : on\n"
    "    proc        : on\n"
    "    3adm        : on\n"
    "    box         : on\n";

/// The enabled report with these two texts and all else on.
std::string exec_report(const std::string& exec, const std::string& exec_script) {
    return lines({"orvex status : enable", "    exec        : " + exec, "    exec script : " + exec_script}) +
           rows_behind_exec;
}

TEST_F(status_report_test, a_disabled_framework_is_one_line_and_no_module_is_asked) {
    expect_framework(0);
    EXPECT_EQ(report(), (call_result{0, "orvex status : disable\n"}));
}

TEST_F(status_report_test, an_enabled_framework_shows_every_module) {
    module_answers answers;
    answers.exec_script = 2;
    answers.net = 0;
    answers.kmod = 2;
    answers.proc = 7;
    answers.roles = -1;
    answers.box = 0;
    expect_framework(2);
    expect_modules(answers);

    EXPECT_EQ(report(), (call_result{0,
                                     "orvex status : enable\n"
                                     "    exec        : on\n"
                                     "    exec script : warning\n"
                                     "    net         : off\n"
                                     "    kmod        : warning\n"
                                     "    file        : on\n"
                                     "    proc        : unknown\n"
                                     "    3adm        : unknown\n"
                                     "    box         : off\n"}));
}

TEST_F(status_report_test, a_permissive_framework_shows_every_module) {
    expect_framework(4);
    expect_modules({});

    EXPECT_EQ(report(), (call_result{0,
                                     "orvex status : permissive\n"
                                     "    exec        : on\n"
                                     "    exec script : on\n" +
                                         std::string(rows_behind_exec)}));
}

TEST_F(status_report_test, any_other_state_has_no_header_and_all_rows) {
    for (const int framework : {3, 1, 5, -1}) {
        expect_framework(framework);
        expect_modules({});

        EXPECT_EQ(report(), (call_result{0,
                                         "    exec        : on\n"
                                         "    exec script : on\n" +
                                             std::string(rows_behind_exec)}))
            << framework;
    }
}

TEST_F(status_report_test, script_control_is_off_while_exec_is_off_whatever_it_says) {
    for (const int exec_script : {0, 1, 2, 7}) {
        EXPECT_EQ(report_exec(0, exec_script), exec_report("off", "off")) << exec_script;
    }
}

TEST_F(status_report_test, script_control_shows_its_own_state_while_exec_is_on) {
    EXPECT_EQ(report_exec(1, 0), exec_report("on", "off"));
    EXPECT_EQ(report_exec(1, 1), exec_report("on", "on"));
    EXPECT_EQ(report_exec(1, 2), exec_report("on", "warning"));
    EXPECT_EQ(report_exec(1, 3), exec_report("on", "unknown"));
}

TEST_F(status_report_test, script_control_shows_its_own_state_while_exec_warns) {
    EXPECT_EQ(report_exec(2, 1), exec_report("warning", "on"));
    EXPECT_EQ(report_exec(2, 0), exec_report("warning", "off"));
}

TEST_F(status_report_test, script_control_shows_its_own_state_while_exec_is_unknown) {
    EXPECT_EQ(report_exec(-1, 1), exec_report("unknown", "on"));
    EXPECT_EQ(report_exec(7, 2), exec_report("unknown", "warning"));
}

}  // namespace
