// SPDX-License-Identifier: Apache-2.0
#include "front/global_state.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <optional>

#include "framework/failure_log.h"
#include "framework/framework_state.h"
#include "framework/module_base.h"
#include "framework/output.h"
#include "service/status.h"

namespace {

/// What the system service is asked for.
struct state_request {
    int state;
    int reboot;
};

/// Reads one line and returns its first character; an empty line means no.
int read_answer() {
    const int answer = std::getc(stdin);
    if (answer == '\n') {
        return 'N';
    }
    int rest = answer;
    while (rest != '\n' && rest != EOF) {
        rest = std::getc(stdin);
    }
    return static_cast<unsigned char>(answer);
}

bool confirm_restart() {
    // The cursor stays behind the question: no newline.
    std::cout << "安全模式状态将改变, 完成设置后会立即重启系统, 是否继续Y/N[默认N]: ";
    if (std::toupper(read_answer()) != 'Y') {
        return false;
    }
    print_line("设置成功后将立即重启系统, 当前正在关闭orvex......");
    return true;
}

/// Returns the request for `mode`, or nothing when the user said no to a restart.
std::optional<state_request> choose_request(const std::string& mode) {
    if (mode == "enable") {
        return state_request{.state = orvex_state_enable, .reboot = 0};
    }
    if (mode == "permissive") {
        return state_request{.state = orvex_state_permissive, .reboot = 0};
    }
    if (mode != "disable") {
        return state_request{.state = 0, .reboot = 0};
    }
    if (orvex_scene_get_module_status(module_3adm) != orvex_module_on) {
        return state_request{.state = orvex_state_disable, .reboot = 0};
    }
    if (!confirm_restart()) {
        return std::nullopt;
    }
    return state_request{.state = orvex_state_disable, .reboot = 1};
}

}  // namespace

int set_orvex_status(const std::string& mode) {
    const std::optional<state_request> request = choose_request(mode);
    if (!request) {
        return 0;
    }
    const int previous = orvex_scene_getstatus();
    const state_result result = set_framework_state(request->state, request->reboot);
    if (result.ret != 0) {
        log_failure({.tag = "orvex_policy", .function = "set_orvex_status"}, "set orvex status failed, error: %s",
                    result.error.c_str());
        return -1;
    }
    if (previous == orvex_status_disabled && request->state != orvex_state_disable) {
        print_line("orvex开启成功, 重启后生效!");
    }
    return 0;
}
