// SPDX-License-Identifier: Apache-2.0
// Protecting programs, by path and by running process, and ending their protection.
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "framework/protection_change.h"
#include "framework/wanted_state.h"
#include "modules/proc/proc_module.h"
#include "modules/proc/proc_program.h"
#include "service/paths.h"
#include "service/taskctl.h"

namespace {

constexpr wanted_state_tails tails = {
    .already_listed = "]已存在进程防杀死列表中, 无需重复添加!",
    .not_listed = "]不在进程防杀死列表中, 无需删除!",
};

constexpr protection_words<char*> file_words = {
    .source = {.tag = "proc", .function = "set_proc_policy_by_file"},
    .add = orvex_scene_taskctl_multi_add_by_path,
    .add_failure = "设置进程防杀死失败",
    .add_log = "add proc ctl failed, path: %s, ret: %d",
    .remove = orvex_scene_taskctl_multi_remove_by_path,
    .remove_failure = "删除进程防杀死失败",
    .remove_log = "del proc ctl failed, path: %s, ret: %d",
    .clear = [](char* path) { return orvex_scene_taskctl_exception_clear_resource_policy(path); },
    .clear_failure_head = "删除防杀死进程[",
    .clear_log = "del proc ctl file to all except failed, path: %s, ret: %d",
};
constexpr protection_words<std::int32_t> pid_words = {
    .source = {.tag = "proc", .function = "set_proc_policy_by_pid"},
    .add = orvex_scene_taskctl_multi_add_by_pid,
    .add_failure = "设置进程防杀死失败",
    .add_log = "add proc ctl failed, pid: %s, ret: %d",
    .remove = orvex_scene_taskctl_multi_remove_by_pid,
    .remove_failure = "删除进程防杀死失败",
    .remove_log = "del proc ctl failed, pid: %s, ret: %d",
    .clear = orvex_scene_taskctl_exception_clear_resource_policy_by_pid,
    .clear_failure_head = "删除防杀死进程[",
    // The process id goes out as a number although the format says %s.
    .clear_log = log_format<std::int32_t, int>::unchecked("del proc ctl pid to all except failed, pid: %s, ret: %d"),
};

bool refuse_blacklisted(const char* path) {
    if (ppro_path_in_blacklist(path) != 1) {
        return false;
    }
    print_line(path, ": 该进程是黑名单进程, 不允许设置策略");
    return true;
}

}  // namespace

int COrvexProc::set_proc_policy_by_file(const std::string& paths, const int& action) {
    text_batch accepted;
    for (const std::string& piece : split_string(paths, ':')) {
        owned_text path = get_existing_real_path(path_kind::file, expand_tilde(piece));
        if (path == nullptr || refuse_blacklisted(path.get()) ||
            refuse_needless_change(tails, action, is_proc_in_policy(path.get()), "文件[", path.get())) {
            continue;
        }
        accepted.add(std::move(path));
    }
    return change_protection(file_words, action, paths, accepted.texts());
}

int COrvexProc::set_proc_policy_by_pid(const std::string& pids, const int& action) {
    std::vector<std::int32_t> accepted;
    for (const std::string& piece : split_string(pids, ':')) {
        // The blacklist belongs to the paths alone: by its process id a blacklisted program can be named.
        const std::optional<running_program> program = find_running_program(*this, piece);
        if (!program || refuse_needless_change(tails, action, is_proc_in_policy(program->path), "进程[", program->pid,
                                               "]对应路径[", program->path)) {
            continue;
        }
        accepted.push_back(program->pid);
    }
    return change_protection(pid_words, action, pids, std::span(accepted));
}

bool COrvexProc::is_proc_in_policy(const std::string& path) {
    return owned_list(orvex_scene_taskctl_get_policy).contains(path);
}
