// SPDX-License-Identifier: Apache-2.0
#include "framework/owned.h"
#include "modules/proc/proc_module.h"
#include "modules/proc/proc_records.h"
#include "service/taskctl.h"

int COrvexProc::list_proc_policy() {
    owned_list programs(orvex_scene_taskctl_get_policy);
    // Without a list the records are not asked for.
    if (programs.is_null()) {
        return 0;
    }
    const taskctl_records records(orvex_scene_taskctl_exception_get_policy);
    records.print_rows({&programs, 1});
    return 0;
}
