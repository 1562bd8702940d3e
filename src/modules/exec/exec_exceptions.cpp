// SPDX-License-Identifier: Apache-2.0
// Changing the exception programs, by file, directory and package. Any result but 0 is a failure here, unlike for the
// whitelist.
#include "framework/action.h"
#include "framework/output.h"
#include "framework/wanted_state.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"

namespace {

/// The call and the words of one way to change the exceptions. The line of a failure shows the user's whole argument.
struct exception_change {
    int (*call)(char** objects, std::int64_t count);
    const char* failure_head;
    const char* failure_tail;
    const char* log_format;
};

constexpr exception_change add_files = {
    orvex_scene_exectl_multi_add_file_in_permissive,
    "添加文件[",
    "]为例外程序失败!",
    "set exectl except failed, path: %s, ret: %d",
};
constexpr exception_change delete_files = {
    orvex_scene_exectl_multi_remove_file_from_permissive,
    "删除文件[",
    // The wording of the add, kept for the delete.
    "]为例外程序失败!",
    "del exectl except failed, path: %s, ret: %d",
};
constexpr exception_change add_dirs = {
    orvex_scene_exectl_multi_add_file_in_permissive,
    "添加目录[",
    "]下所有文件为例外程序失败!",
    "set exectl except failed, path: %s, ret: %d",
};
constexpr exception_change delete_dirs = {
    orvex_scene_exectl_multi_remove_file_from_permissive,
    "删除目录[",
    "]下所有文件的例外程序失败!",
    "del exectl except failed, path: %s, ret: %d",
};
constexpr exception_change add_pkgs = {
    orvex_scene_exectl_multi_add_package_in_permissive,
    "添加软件包[",
    "]中所有例外程序失败!",
    "set exectl except failed, pkg: %s, ret: %d",
};
constexpr exception_change delete_pkgs = {
    orvex_scene_exectl_multi_remove_package_from_permissive,
    "删除软件包[",
    "]中所有例外程序失败!",
    "del exectl except failed, pkg: %s, ret: %d",
};

/// Makes one call for all objects of the batch.
void make_call(const exception_change& change, const char* function, const std::string& argument, text_batch& batch) {
    const int ret = change.call(batch.data(), batch.count());
    if (ret != 0) {
        print_line(change.failure_head, argument, change.failure_tail);
        log_exec_failure(function, change.log_format, argument, ret);
    }
}

/// Adds or deletes all objects that passed the tests; with none of them there is no call.
void change_exceptions(const exception_change& add, const exception_change& remove, int action, const char* function,
                       const std::string& argument, text_batch& batch) {
    if (batch.empty()) {
        return;
    }
    if (action == action_add) {
        make_call(add, function, argument, batch);
    } else if (action == action_delete) {
        make_call(remove, function, argument, batch);
    }
}

constexpr wanted_state_tails tails = {"]已存在例外程序列表中, 无需重复添加!", "]不在例外程序列表中, 无需删除!"};

}  // namespace

int COrvexExec::set_exec_except_policy_by_file(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        owned_text absolute_path = get_absolute_file(path);
        if (absolute_path == nullptr) {
            continue;
        }
        if (!is_in_wanted_state(tails, action, is_file_in_except_list(absolute_path.get()), "文件[", path)) {
            batch.add(std::move(absolute_path));
        }
    }
    change_exceptions(add_files, delete_files, action, "set_exec_except_policy_by_file", paths, batch);
    return 0;
}

int COrvexExec::set_exec_except_policy_by_dir(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        // A bad piece abandons the pieces before it too.
        if (!is_existing_dir(path)) {
            return -1;
        }
        owned_text absolute_path = get_absolute_dir(path, path);
        if (absolute_path == nullptr) {
            continue;
        }
        if (!is_in_wanted_state(tails, action, has_except_dir(absolute_path.get()), "目录[", path)) {
            batch.add(std::move(absolute_path));
        }
    }
    change_exceptions(add_dirs, delete_dirs, action, "set_exec_except_policy_by_dir", paths, batch);
    return 0;
}

int COrvexExec::set_exec_except_policy_by_pkg(const std::string& pkgs, const int& action) {
    text_batch batch;
    for (const std::string& pkg : split_string(pkgs, ':')) {
        if (!is_pkg_installed(pkg)) {
            print_line("不支持未安装的软件包[", pkg, "]设置");
            continue;
        }
        if (!is_in_wanted_state(tails, action, has_except_pkg(pkg), "软件包[", pkg)) {
            batch.add(copy_text(pkg));
        }
    }
    change_exceptions(add_pkgs, delete_pkgs, action, "set_exec_except_policy_by_pkg", pkgs, batch);
    return 0;
}
