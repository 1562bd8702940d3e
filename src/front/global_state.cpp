// SPDX-License-Identifier: Apache-2.0
#include "front/global_state.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <optional>

#include "framework/module_base.h"
#include "framework/output.h"
#include "framework/service_error.h"
#include "service/log.h"
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
        return state_request{orvex_state_enable, 0};
    }
    if (mode == "permissive") {
        return state_request{orvex_state_permissive, 0};
    }
    if (mode != "disable") {
        return state_request{0, 0};
    }
    if (orvex_scene_get_module_status(module_3adm) != orvex_module_on) {
        return state_request{orvex_state_disable, 0};
    }
    if (!confirm_restart()) {
        return std::nullopt;
    }
    return state_request{orvex_state_disable, 1};
}

}  // namespace

int set_orvex_status(const std::string& mode) {
    const std::optional<state_request> request = choose_request(mode);
    if (!request) {
        return 0;
    }
    const int previous = orvex_scene_getstatus();
    if (setModuleStatusReboot_dbus(1, request->state, 11, 0, 1, request->reboot) != 0) {
        const std::string error = get_service_error();
        print_line("设置orvex状态失败! error: ", error);
        orvex_log(orvex_log_level_failure, "orvex_policy", "set_orvex_status", "set orvex status failed, error: %s",
                  error.c_str());
        return -1;
    }
    if (previous == orvex_status_disabled && request->state != orvex_state_disable) {
        print_line("orvex开启成功, 重启后生效!");
    }
    return 0;
}
