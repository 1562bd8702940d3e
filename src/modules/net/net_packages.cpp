// SPDX-License-Identifier: Apache-2.0
// Policies of packages. An add fails on a negative result only, an update or a removal on anything but 0.
#include <cstdint>
#include <string>
#include <utility>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "modules/net/net_module.h"
#include "modules/net/net_pieces.h"
#include "service/netctl.h"

owned_pkg_records read_pkg_policy(const std::string& pkg) {
    return owned_pkg_records(orvex_netctl_pkg_read_node_with_uid(policy_uid, pkg.c_str()));
}

int add_pkg_policy(COrvexNet& module, const std::string& pkg, std::int32_t status) {
    const std::string desktop = module.get_desktop_file(pkg);
    const std::string icon = module.get_desktop_icon(pkg);
    return orvex_netctl_pkg_add(policy_uid, pkg.c_str(), status, icon.c_str(), desktop.c_str(), policy_tag);
}

int deny_pkg(COrvexNet& module, const std::string& pkg, const char* function) {
    if (const owned_pkg_records record = read_pkg_policy(pkg)) {
        print_line("软件包[", pkg, "]的联网管控策略已存在, 无需重复添加!");
        return 0;
    }
    const int ret = add_pkg_policy(module, pkg, netctl_deny);
    if (ret < 0) {
        print_line("软件包[", pkg, "]添加网络管控失败!");
        log_failure({.tag = net_tag, .function = function}, "add netctl failed, pkgName: %s, ret: %d", pkg.c_str(),
                    ret);
        return -1;
    }
    return 0;
}

int update_pkg_policy(owned_pkg_records record, std::int32_t status) {
    return orvex_netctl_pkg_update(policy_uid, record->name, status, record->icon, record->desktop, record->tag);
}

int remove_pkg_policy(const std::string& pkg, const char* function) {
    const int ret = orvex_netctl_pkg_remove(policy_uid, pkg.c_str());
    if (ret != 0) {
        print_line("删除软件包[", pkg, "]联网管控失败!");
        log_failure({.tag = net_tag, .function = function}, "del netctl failed, pkgName: %s, ret: %d", pkg.c_str(),
                    ret);
    }
    return ret;
}

int COrvexNet::add_net_policy_by_pkg(const std::string& pkg) {
    // The one place that asks whether the package is installed: a policy may outlive its package.
    if (!is_pkg_installed(pkg)) {
        print_line("软件包[", pkg, "]名称错误, 或者未安装!");
        return -1;
    }
    return deny_pkg(*this, pkg, "add_net_policy_by_pkg");
}

int COrvexNet::update_net_policy_by_pkg(const std::string& pkg, const std::int32_t& status) {
    owned_pkg_records record = read_pkg_policy(pkg);
    if (record == nullptr) {
        print_line("软件包[", pkg, "]的联网管控策略不存在, 请先添加!");
        return 0;
    }
    const int ret = update_pkg_policy(std::move(record), status);
    if (ret != 0) {
        print_line("更新软件包[", pkg, "]管控状态失败!");
        log_failure({.tag = net_tag, .function = "update_net_policy_by_pkg"},
                    "update netctl failed, pkgName: %s, ret: %d", pkg.c_str(), ret);
        return -1;
    }
    return 0;
}

int COrvexNet::del_net_policy_by_pkg(const std::string& pkg) {
    if (read_pkg_policy(pkg) == nullptr) {
        print_line("软件包[", pkg, "]的联网管控策略不存在, 无需删除!");
        return 0;
    }
    return remove_pkg_policy(pkg, "del_net_policy_by_pkg") == 0 ? 0 : -1;
}
