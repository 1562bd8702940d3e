// SPDX-License-Identifier: Apache-2.0
#include "front/status_report.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "framework/module_base.h"
#include "framework/output.h"
#include "service/status.h"

namespace {

void print_header(int framework) {
    switch (framework) {
        case orvex_status_disabled:
            print_line("orvex status : disable");
            break;
        case orvex_status_enabled:
            print_line("orvex status : enable");
            break;
        case orvex_status_permissive:
            print_line("orvex status : permissive");
            break;
        default:
            break;
    }
}

const char* get_status_text(int status) {
    switch (status) {
        case orvex_module_off:
            return "off";
        case orvex_module_on:
            return "on";
        case orvex_module_warning:
            return "warning";
        default:
            return "unknown";
    }
}

}  // namespace

int print_status() {
    COrvexBase base;
    base.init_module_table();

    const int framework = orvex_scene_getstatus();
    print_header(framework);
    if (framework == orvex_status_disabled) {
        return 0;
    }

    int exec_status = orvex_module_off;
    for (const orvex_module_type type : base.get_module_types()) {
        const int status = orvex_scene_get_module_status(type);
        if (type == module_exec) {
            exec_status = status;
        }
        // Without execution control there is no script control, whatever its own status says.
        const bool is_script_idle = type == module_exec_script && exec_status == orvex_module_off;
        const char* text = is_script_idle ? "off" : get_status_text(status);
        std::printf("    %-12s: %s\n", base.get_module_names()[type].c_str(), text);
    }
    return 0;
}
