// SPDX-License-Identifier: Apache-2.0
#include "framework/framework_state.h"

#include <string>

#include "framework/output.h"
#include "service/log.h"
#include "service/status.h"

namespace {

std::string get_service_error() {
    const orvex_error_record* record = orvex_get_error();
    return record == nullptr ? std::string() : std::string(&record->text[0]);
}

}  // namespace

state_result set_framework_state(int state, int reboot) {
    const int ret = setModuleStatusReboot_dbus(1, state, 11, 0, 1, reboot);
    if (ret == 0) {
        return {.ret = 0, .error = {}};
    }
    std::string error = get_service_error();
    print_line("设置orvex状态失败! error: ", error);
    return {.ret = ret, .error = error};
}
