// SPDX-License-Identifier: Apache-2.0
// Policies of program files. A file that a package owns is served through the package's policy; a record of its own
// that still stands for it is removed on the way. An add fails on a negative result only, an update or a removal on
// anything but 0.
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "modules/net/net_module.h"
#include "modules/net/net_pieces.h"
#include "service/netctl.h"
#include "service/paths.h"

namespace {

/// Returns the record of the program `path`, an absolute path, or null.
owned_ext_records read_program_policy(const std::string& path) {
    return owned_ext_records(orvex_netctl_ext_read_node_with_uid(policy_uid, path.c_str()));
}

/// Removes the record of the program `path`, an absolute path. Returns the library's result; anything but 0 is a
/// failure, printed and logged for `function`.
int remove_program_policy(const std::string& path, const char* function) {
    const int ret = orvex_netctl_remove(policy_uid, path.c_str());
    if (ret != 0) {
        print_line("删除程序[", path, "]联网管控失败!");
        log_failure({.tag = net_tag, .function = function}, "del netctl failed, path: %s, ret: %d", path.c_str(), ret);
    }
    return ret;
}

/// Tells that there is nothing to update. The text speaks of the program also where the policy would be its package's.
void print_no_policy(const std::string& path) {
    print_line("程序[", path, "]的联网管控策略不存在, 请先添加!");
}

/// Returns the absolute form of an existing file, or nothing, with a line.
std::optional<std::string> resolve_file(const std::string& path) {
    if (refuse_missing(path_kind::file, path) || refuse_other_kind(path_kind::file, path, path)) {
        return std::nullopt;
    }
    return take_text(get_absolute_file(path));
}

/// Returns the absolute form of a file that may be gone, or nothing, with a line. An absolute path is taken untested.
std::optional<std::string> resolve_file_to_delete(COrvexNet& module, const std::string& path) {
    if (module.is_absolute_path(path)) {
        return path;
    }
    if (path_is_exist(path.c_str()) != 1) {
        // The wrong character in the text is meant to stay.
        print_line("文件[", path, "]不存在, 请输入文件据对路径!");
        return std::nullopt;
    }
    if (refuse_other_kind(path_kind::file, path, path)) {
        return std::nullopt;
    }
    return take_text(get_absolute_file(path));
}

/// Adds a record that denies for a file of no package. The lines and the log show `path`, as the user typed it.
int deny_program(const std::string& path, const std::string& absolute_path) {
    const char* program = absolute_path.c_str();
    // The path is the label as well.
    const int ret = orvex_netctl_ext_add(policy_uid, program, netctl_deny, program, nullptr, nullptr, policy_tag);
    if (ret < 0) {
        print_line("程序[", path, "]添加网络管控失败!");
        log_failure({.tag = net_tag, .function = "add_net_policy_by_file"}, "add netctl failed, path: %s, ret: %d",
                    path.c_str(), ret);
        return -1;
    }
    return 0;
}

/// Sets the status of the record of a file of no package; all else that it holds goes back as it is, and the record
/// itself is freed.
int update_program(const std::string& path, owned_ext_records record, std::int32_t status) {
    const int ret = orvex_netctl_ext_update(policy_uid, record->path, status, record->label, record->text1,
                                            record->text2, record->tag);
    record.reset();
    if (ret != 0) {
        print_line("更新程序[", path, "]的联网管控状态失败!");
        log_failure({.tag = net_tag, .function = "update_net_policy_by_file"},
                    "update netctl failed, file: %s, ret: %d", path.c_str(), ret);
        return -1;
    }
    return 0;
}

/// Sets the status of the stored policy of the package that owns the file.
int update_owner(const std::string& absolute_path, const std::string& owner, owned_pkg_records record,
                 std::int32_t status) {
    const int ret = update_pkg_policy(std::move(record), status);
    if (ret != 0) {
        print_line("更新文件[", absolute_path, "]对应软件包[", owner, "]的网络管控策略失败!");
        log_failure({.tag = net_tag, .function = "update_net_policy_by_file"},
                    "update netctl failed, file: %s, pkgName: %s, ret: %d", absolute_path.c_str(), owner.c_str(), ret);
        return -1;
    }
    return 0;
}

/// Gives the package that owns the file the policy that the file's own record had stood for, with the new status.
int move_to_owner(COrvexNet& module, const std::string& absolute_path, const std::string& owner, std::int32_t status) {
    const int ret = add_pkg_policy(module, owner, status);
    if (ret < 0) {
        print_line("添加文件[", absolute_path, "]对应软件包[", owner, "]的网络管控策略失败!");
        log_failure({.tag = net_tag, .function = "update_net_policy_by_file"},
                    "add netctl failed, file: %s, pkgName: %s, ret: %d", absolute_path.c_str(), owner.c_str(), ret);
        return -1;
    }
    return 0;
}

/// Removes the policy of the package that owns the file. Returns the library's result, or nothing without such a
/// package or policy.
std::optional<int> remove_owner_policy(const std::string& owner, const char* function) {
    if (owner.empty()) {
        return std::nullopt;
    }
    const owned_pkg_records record = read_pkg_policy(owner);
    return record == nullptr ? std::nullopt : std::optional(remove_pkg_policy(owner, function));
}

}  // namespace

int COrvexNet::add_net_policy_by_file(const std::string& path) {
    const std::optional<std::string> absolute_path = resolve_file(path);
    if (!absolute_path) {
        return -1;
    }
    const char* function = "add_net_policy_by_file";
    const bool has_record = read_program_policy(*absolute_path) != nullptr;
    const std::string owner = get_pkg_by_file(*absolute_path);
    if (!owner.empty()) {
        if (has_record) {
            // A failure is told and does not stop the add.
            remove_program_policy(*absolute_path, function);
        }
        return deny_pkg(*this, owner, function);
    }
    if (has_record) {
        print_line("程序[", path, "]的联网管控策略已添加, 无需重复添加!");
        return 0;
    }
    return deny_program(path, *absolute_path);
}

int COrvexNet::update_net_policy_by_file(const std::string& path, const std::int32_t& status) {
    const std::optional<std::string> absolute_path = resolve_file(path);
    if (!absolute_path) {
        return -1;
    }
    owned_ext_records record = read_program_policy(*absolute_path);
    const bool has_record = record != nullptr;
    const std::string owner = get_pkg_by_file(*absolute_path);
    if (owner.empty() && has_record) {
        return update_program(path, std::move(record), status);
    }
    if (!owner.empty()) {
        if (has_record) {
            // A failure is told and does not stop the update.
            remove_program_policy(*absolute_path, "update_net_policy_by_file");
        }
        if (owned_pkg_records pkg_record = read_pkg_policy(owner)) {
            return update_owner(*absolute_path, owner, std::move(pkg_record), status);
        }
        if (has_record) {
            return move_to_owner(*this, *absolute_path, owner, status);
        }
    }
    print_no_policy(path);
    return 0;
}

int COrvexNet::del_net_policy_by_file(const std::string& path) {
    const std::optional<std::string> absolute_path = resolve_file_to_delete(*this, path);
    if (!absolute_path) {
        return -1;
    }
    const char* function = "del_net_policy_by_file";
    const bool has_record = read_program_policy(*absolute_path) != nullptr;
    const std::string owner = get_pkg_by_file(*absolute_path);
    const std::optional<int> pkg_result = remove_owner_policy(owner, function);
    if (!has_record) {
        if (!pkg_result) {
            print_line("程序[", *absolute_path, "]的联网管控策略不存在, 无需删除!");
        }
        return pkg_result.value_or(0);
    }
    // Unlike everywhere else in the module the library's own code is returned, and that of the last step: a failed
    // removal of the package's policy is forgotten here.
    return remove_program_policy(*absolute_path, function);
}
