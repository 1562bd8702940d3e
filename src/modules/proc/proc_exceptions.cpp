// SPDX-License-Identifier: Apache-2.0
// The programs that may kill a protected program all the same. The blacklist is not asked here.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/action.h"
#include "framework/exception_change.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "modules/proc/proc_module.h"
#include "modules/proc/proc_program.h"
#include "modules/proc/proc_records.h"
#include "service/taskctl.h"

namespace {

// The second field of the four log formats is "&s" and no conversion; the arguments are passed all the same.
using except_log = log_format<const char*, const char*, int>;

constexpr exception_words file_words = {
    .source = {.tag = "proc", .function = "set_proc_except_policy"},
    .object_head = "进程[",
    .absent_middle = "]未添加例外程序[",
    .not_protected_tail = "]不在防杀死保护列表中, 请先添加进程防杀死!",
    .add_failure_head = "添加防杀死进程[",
    .remove_failure_head = "删除防杀死进程[",
    .add_log = except_log::unchecked("add proc except failed, file = %s, except = &s, ret = %d"),
    .remove_log = except_log::unchecked("del proc except failed, file = %s, except = &s, ret = %d"),
};
constexpr exception_words pid_words = {
    .source = {.tag = "proc", .function = "set_proc_except_policy_by_pid"},
    .object_head = "进程[",
    // One character more than by path; both stay.
    .absent_middle = "]未添加了例外程序[",
    .not_protected_tail = "]不在防杀死保护列表中, 请先添加进程防杀死!",
    .add_failure_head = "添加防杀死进程[",
    .remove_failure_head = "删除防杀死进程[",
    .add_log = except_log::unchecked("add proc except failed, pid = %s, except = &s, ret = %d"),
    .remove_log = except_log::unchecked("del proc except failed, pid = %s, except = &s, ret = %d"),
};

/// Returns for each piece the real path of a file or a directory, or nothing, with its line, where it is refused.
std::vector<std::string> resolve_paths(COrvexProc& module, path_kind kind, const std::vector<std::string>& pieces) {
    std::vector<std::string> paths;
    paths.reserve(pieces.size());
    for (const std::string& piece : pieces) {
        paths.push_back(take_text(get_existing_real_path(kind, module.expand_tilde(piece))).value_or(std::string()));
    }
    return paths;
}

/// Returns the exceptions that the list `objects` stands for, with empty ones where one was refused; or nothing where
/// the whole call is refused. The same rules hold for an add and for a delete.
std::optional<std::vector<std::string>> resolve_exceptions(COrvexProc& module, std::int32_t kind,
                                                           const std::string& objects) {
    const std::vector<std::string> exceptions = module.split_string(objects, ':');
    switch (kind) {
        case orvex_kind_file:
            return resolve_paths(module, path_kind::file, exceptions);
        case orvex_kind_dir:
            return resolve_paths(module, path_kind::dir, exceptions);
        case orvex_kind_pkg:
            if (refuse_missing_pkgs(module, exceptions)) {
                return std::nullopt;
            }
            return exceptions;
        default:
            print_line("添加例外程序时, 例外程序只允许是文件路径、目录或者软件包!");
            return std::nullopt;
    }
}

}  // namespace

int COrvexProc::set_proc_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                                       const std::int32_t& except_kind, const std::string& except_object,
                                       const int& action) {
    if (first_kind != orvex_kind_file) {
        print_line("添加例外程序时,防杀死进程只允许是文件路径或者pid!");
        return -1;
    }
    const owned_text resolved = get_existing_real_path(path_kind::file, first_object);
    if (resolved == nullptr) {
        return -1;
    }
    const std::string path = resolved.get();
    const auto exceptions = resolve_exceptions(*this, except_kind, except_object);
    if (!exceptions) {
        return -1;
    }
    const shown_object shown = {.needless = path, .not_protected = first_object, .failure = path, .log = first_object};
    const auto call =
        action == action_add ? orvex_scene_taskctl_exception_multi_add : orvex_scene_taskctl_exception_multi_remove;
    return change_exceptions(
        file_words, shown, {.exceptions = *exceptions, .argument = except_object, .action = action},
        [&](const std::string& exception) { return is_proc_except_in_policy(path, exception); },
        [&](text_batch& chosen) { return call(first_kind, path.c_str(), except_kind, chosen.data(), chosen.count()); });
}

int COrvexProc::set_proc_except_policy_by_pid(const std::string& pid, const std::int32_t& except_kind,
                                              const std::string& except_object, const int& action) {
    const std::optional<running_program> program = find_running_program(*this, pid);
    if (!program) {
        return -1;
    }
    const auto exceptions = resolve_exceptions(*this, except_kind, except_object);
    if (!exceptions) {
        return -1;
    }
    const shown_object shown = {
        .needless = std::to_string(program->pid), .not_protected = pid, .failure = pid, .log = pid};
    const auto call = action == action_add ? orvex_scene_taskctl_exception_multi_add_by_pid
                                           : orvex_scene_taskctl_exception_multi_remove_by_pid;
    return change_exceptions(
        pid_words, shown, {.exceptions = *exceptions, .argument = except_object, .action = action},
        [&](const std::string& exception) { return is_proc_except_in_policy(program->path, exception); },
        [&](text_batch& chosen) { return call(program->pid, except_kind, chosen.data(), chosen.count()); });
}

bool COrvexProc::is_proc_except_in_policy(const std::string& path, const std::string& except_object) {
    const taskctl_records records(orvex_scene_taskctl_exception_get_policy);
    if (records.empty()) {
        return false;
    }
    return records.hold(path, to_pattern_if_dir(except_object));
}
