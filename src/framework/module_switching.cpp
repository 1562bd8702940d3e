// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>
#include <vector>

#include "framework/failure_log.h"
#include "framework/framework_state.h"
#include "framework/module_base.h"
#include "framework/output.h"
#include "service/status.h"

namespace {

constexpr int more_to_come = 0;
constexpr int last_of_batch = 1;

constexpr log_source source = {.tag = "base", .function = "set_module_status"};

void print_no_rights(const std::string& name) {
    print_line("设置安全模块[", name, "]状态失败! 用户无权限!");
}

/// Switches one module while the framework runs.
int switch_running(orvex_module_type module, const std::string& name, int status) {
    const int ret = orvex_scene_set_module_status(module, status);
    if (ret == 0) {
        return 0;
    }
    if (ret == orvex_result_no_rights) {
        print_no_rights(name);
        return -1;
    }
    print_line("设置安全模块[", name, "]状态失败!");
    log_failure(source, "set module status failed, module=%s, status=%d, ret=%d", name.c_str(), status, ret);
    return -1;
}

/// Enables the framework for the time after the next restart.
int enable_framework() {
    print_line("正在开启orvex......");
    const state_result result = set_framework_state(orvex_state_enable, 0);
    if (result.ret == 0) {
        return 0;
    }
    log_failure(source, "set orvex status failed, ret: %d", result.ret);
    return -1;
}

/// Records `other` as off after the restart. A refusal names the module that the user asked for, not `other`.
int switch_other_off(orvex_module_type other, const std::string& other_name, const std::string& requested_name) {
    const int ret = orvex_scene_set_multi_module_status(other, orvex_module_off, more_to_come);
    if (ret == 0) {
        return 0;
    }
    if (ret == orvex_result_no_rights) {
        print_no_rights(requested_name);
        return -1;
    }
    print_line("关闭安全模块[", other_name, "]失败! ");
    log_failure(source, "set module status disable failed, module=%s, ret=%d", other_name.c_str(), ret);
    return -1;
}

/// Records the requested module's status after the restart, as the last of the batch.
int switch_requested(orvex_module_type module, const std::string& name, int status) {
    const int ret = orvex_scene_set_multi_module_status(module, status, last_of_batch);
    if (ret == orvex_result_no_rights) {
        print_no_rights(name);
        return -1;
    }
    if (ret != 0) {
        // The text blames missing rights whatever the cause was. It is meant to stay so.
        print_line("开启安全模块[", name, "]失败! 用户无权限!");
        log_failure(source, "set module status enable failed, module=%s, ret=%d", name.c_str(), ret);
        return -1;
    }
    // The text says "switched on" also for a status of 0.
    print_line("orvex开启成功, 安全模块[", name, "]开启成功, 重启后生效!");
    return 0;
}

}  // namespace

int COrvexBase::set_module_status(const orvex_module_type& module, const int& status) {
    const int framework = orvex_scene_getstatus();
    init_module_table();
    const std::string& name = module_names[module];
    if (framework != orvex_status_disabled) {
        return switch_running(module, name, status);
    }

    // There is no way back from here: a failure further down leaves the framework enabled for the next start.
    if (enable_framework() != 0) {
        return -1;
    }
    for (const orvex_module_type other : module_types) {
        if (other != module && switch_other_off(other, module_names[other], name) != 0) {
            return -1;
        }
    }
    return switch_requested(module, name, status);
}
