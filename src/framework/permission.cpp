// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <string>

#include "framework/module_base.h"
#include "service/status.h"

namespace {

constexpr uid_t root_uid = 0;
constexpr uid_t security_administrator_uid = 600;

}  // namespace

bool COrvexBase::check_permission(std::string& error) {
    const uid_t uid = getuid();
    const int role_separation = orvex_scene_get_module_status(module_3adm);
    const int framework = orvex_scene_getstatus();

    // With the roles separated the security administrator alone may act, and root is refused.
    if (role_separation == orvex_module_on && framework != orvex_status_disabled) {
        if (uid == security_administrator_uid) {
            return true;
        }
        error = "当前用户无权限执行, 请切换secadm用户执行!";
        return false;
    }
    if (uid == root_uid) {
        return true;
    }
    error = "当前用户无权限执行, 请切换root用户执行!";
    return false;
}
