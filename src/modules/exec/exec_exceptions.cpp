// SPDX-License-Identifier: Apache-2.0
// Changing the exception programs, by file, directory and package. Any result but 0 is a failure here, unlike for the
// whitelist.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "framework/action.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/wanted_state.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "service/exectl.h"

namespace {

/// One way to change the exceptions: the call, and how its failure is told.
struct exception_call {
    int (*call)(char** objects, std::int64_t count);
    failure_words failure;
};

/// The add and the delete of one kind of object.
struct exception_calls {
    log_source source;
    exception_call add;
    exception_call remove;
};
constexpr exception_calls file_calls = {
    .source = {.tag = "exec", .function = "set_exec_except_policy_by_file"},
    .add =
        {
            .call = orvex_scene_exectl_multi_add_file_in_permissive,
            .failure = {.head = "添加文件[",
                        .tail = "]为例外程序失败!",
                        .log = "set exectl except failed, path: %s, ret: %d"},
        },
    .remove =
        {
            .call = orvex_scene_exectl_multi_remove_file_from_permissive,
            .failure = {.head = "删除文件[",
                        // The wording of the add, kept for the delete.
                        .tail = "]为例外程序失败!",
                        .log = "del exectl except failed, path: %s, ret: %d"},
        },
};
constexpr exception_calls dir_calls = {
    .source = {.tag = "exec", .function = "set_exec_except_policy_by_dir"},
    .add =
        {
            .call = orvex_scene_exectl_multi_add_file_in_permissive,
            .failure = {.head = "添加目录[",
                        .tail = "]下所有文件为例外程序失败!",
                        .log = "set exectl except failed, path: %s, ret: %d"},
        },
    .remove =
        {
            .call = orvex_scene_exectl_multi_remove_file_from_permissive,
            .failure = {.head = "删除目录[",
                        .tail = "]下所有文件的例外程序失败!",
                        .log = "del exectl except failed, path: %s, ret: %d"},
        },
};
constexpr exception_calls pkg_calls = {
    .source = {.tag = "exec", .function = "set_exec_except_policy_by_pkg"},
    .add =
        {
            .call = orvex_scene_exectl_multi_add_package_in_permissive,
            .failure = {.head = "添加软件包[",
                        .tail = "]中所有例外程序失败!",
                        .log = "set exectl except failed, pkg: %s, ret: %d"},
        },
    .remove =
        {
            .call = orvex_scene_exectl_multi_remove_package_from_permissive,
            .failure = {.head = "删除软件包[",
                        .tail = "]中所有例外程序失败!",
                        .log = "del exectl except failed, pkg: %s, ret: %d"},
        },
};

constexpr wanted_state_tails tails = {
    .already_listed = "]已存在例外程序列表中, 无需重复添加!",
    .not_listed = "]不在例外程序列表中, 无需删除!",
};

/// Makes one call for all objects that passed the tests; the line of a failure shows the user's whole argument. Without
/// any of them, and for an action that is neither add nor delete, there is none.
void make_call(const exception_calls& calls, int action, const std::string& argument, text_batch& batch) {
    if (batch.empty() || (action != action_add && action != action_delete)) {
        return;
    }
    const exception_call& wanted = action == action_add ? calls.add : calls.remove;
    const int ret = wanted.call(batch.data(), batch.count());
    if (ret != 0) {
        report_failure(calls.source, wanted.failure, argument, argument, ret);
    }
}

}  // namespace

int COrvexExec::set_exec_except_policy_by_file(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        owned_text absolute_path = accept_file(path);
        if (absolute_path == nullptr) {
            continue;
        }
        if (!refuse_needless_change(tails, action, is_file_in_except_list(absolute_path.get()), "文件[", path)) {
            batch.add(std::move(absolute_path));
        }
    }
    make_call(file_calls, action, paths, batch);
    return 0;
}

int COrvexExec::set_exec_except_policy_by_dir(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        // A bad piece abandons the pieces before it too.
        if (refuse_non_dir(path)) {
            return -1;
        }
        owned_text absolute_path = get_absolute_dir(path, path);
        if (absolute_path == nullptr) {
            continue;
        }
        if (!refuse_needless_change(tails, action, has_except_dir(absolute_path.get()), "目录[", path)) {
            batch.add(std::move(absolute_path));
        }
    }
    make_call(dir_calls, action, paths, batch);
    return 0;
}

int COrvexExec::set_exec_except_policy_by_pkg(const std::string& pkgs, const int& action) {
    text_batch batch;
    for (const std::string& pkg : split_string(pkgs, ':')) {
        if (!is_pkg_installed(pkg)) {
            print_line("不支持未安装的软件包[", pkg, "]设置");
            continue;
        }
        if (!refuse_needless_change(tails, action, has_except_pkg(pkg), "软件包[", pkg)) {
            batch.add(copy_text(pkg));
        }
    }
    make_call(pkg_calls, action, pkgs, batch);
    return 0;
}
