// SPDX-License-Identifier: Apache-2.0
// Protecting files, directories and packages, and ending their protection.
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "framework/action.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "framework/protection_change.h"
#include "framework/wanted_state.h"
#include "modules/file/file_deletion.h"
#include "modules/file/file_module.h"
#include "service/filectl.h"

namespace {

constexpr wanted_state_tails tails = {
    .already_listed = "]已存在只读保护列表中, 无需重复添加!",
    .not_listed = "]不在只读保护列表中, 无需删除!",
};

/// Drops all exceptions of an object of one kind.
template <std::int32_t kind>
int clear_resource(char* resource) {
    return orvex_scene_filectl_exception_clear_resource_policy(kind, resource);
}

/// What differs between files and directories.
struct path_change {
    path_kind kind;
    bool (COrvexFile::*is_in_policy)(const std::string& path);
    /// In front of the path in the lines for a path that needs no change.
    const char* object_head;
    /// The second line for a relative path that is gone at a delete.
    const char* delete_advice;
    protection_words<char*> words;
};
constexpr path_change file_change = {
    .kind = path_kind::file,
    .is_in_policy = &COrvexFile::is_file_in_policy,
    .object_head = "文件[",
    .delete_advice = "支持不存在的文件删除只读保护, 需输入文件绝对路径!",
    .words =
        {
            .source = {.tag = "file", .function = "set_file_policy_by_file"},
            .add = orvex_scene_filectl_multi_add_by_path,
            .add_failure = "设置文件只读保护失败",
            .add_log = "add file ctl failed, path: %s, ret: %d",
            .remove = orvex_scene_filectl_multi_remove_by_path,
            .remove_failure = "删除文件只读保护失败",
            .remove_log = "del file ctl failed, path: %s, ret: %d",
            .clear = clear_resource<orvex_kind_file>,
            .clear_failure_head = "删除只读保护文件[",
            .clear_log = "del file ctl file to all except failed, path: %s, ret: %d",
        },
};
constexpr path_change dir_change = {
    .kind = path_kind::dir,
    .is_in_policy = &COrvexFile::is_dir_in_policy,
    .object_head = "目录[",
    .delete_advice = "支持不存在的目录删除只读保护, 需输入目录绝对路径!",
    .words =
        {
            .source = {.tag = "file", .function = "set_file_policy_by_dir"},
            .add = orvex_scene_filectl_multi_add_by_path,
            .add_failure = "设置目录只读保护失败",
            .add_log = "add file ctl failed, dir: %s, ret: %d",
            .remove = orvex_scene_filectl_multi_remove_by_path,
            .remove_failure = "删除目录只读保护失败",
            .remove_log = "del file ctl failed, dir: %s, ret: %d",
            .clear = clear_resource<orvex_kind_dir>,
            .clear_failure_head = "删除只读保护目录[",
            .clear_log = "del file ctl dir to all except failed, path: %s, ret: %d",
        },
};
constexpr protection_words<char*> pkg_words = {
    .source = {.tag = "file", .function = "set_file_policy_by_pkg"},
    .add = orvex_scene_filectl_multi_add_by_pkg,
    .add_failure = "设置软件包只读保护失败!",
    .add_log = "add file ctl failed, pkgName: %s, ret: %d",
    .remove = orvex_scene_filectl_multi_remove_by_pkg,
    .remove_failure = "删除软件包只读保护失败!",
    .remove_log = "del file ctl failed, pkgName: %s, ret: %d",
    .clear = clear_resource<orvex_kind_pkg>,
    .clear_failure_head = "删除只读保护软件包[",
    .clear_log = "del file ctl pkg to all except failed, path: %s, ret: %d",
};

/// Returns the path that the piece of a list stands for, or null with its lines.
owned_text resolve_piece(COrvexFile& module, const path_change& change, const std::string& piece, int action) {
    const std::string path = module.expand_tilde(piece);
    return action == action_add ? get_existing_real_path(change.kind, path)
                                : get_path_to_delete(module, change.kind, path, change.delete_advice);
}

/// Changes the protection of all paths of the list that pass the tests.
int change_paths(COrvexFile& module, const path_change& change, const std::string& paths, int action) {
    text_batch accepted;
    for (const std::string& piece : module.split_string(paths, ':')) {
        owned_text path = resolve_piece(module, change, piece, action);
        if (path == nullptr || refuse_needless_change(tails, action, (module.*change.is_in_policy)(path.get()),
                                                      change.object_head, path.get())) {
            continue;
        }
        accepted.add(std::move(path));
    }
    return change_protection(change.words, action, paths, accepted.texts());
}

}  // namespace

int COrvexFile::set_file_policy_by_file(const std::string& paths, const int& action) {
    return change_paths(*this, file_change, paths, action);
}

int COrvexFile::set_file_policy_by_dir(const std::string& paths, const int& action) {
    return change_paths(*this, dir_change, paths, action);
}

int COrvexFile::set_file_policy_by_pkg(const std::string& packages, const int& action) {
    text_batch accepted;
    for (const std::string& pkg : split_string(packages, ':')) {
        // A package need not be installed to be taken off the list.
        if (action == action_add && !is_pkg_installed(pkg)) {
            print_line("软件包[", pkg, "]未安装, 不支持添加!");
            continue;
        }
        if (!refuse_needless_change(tails, action, is_pkg_in_policy(pkg), "软件包[", pkg)) {
            accepted.add(copy_text(pkg));
        }
    }
    return change_protection(pkg_words, action, packages, accepted.texts());
}

bool COrvexFile::is_file_in_policy(const std::string& path) {
    return owned_list(orvex_scene_filectl_get_policy).contains(path);
}

bool COrvexFile::is_dir_in_policy(const std::string& path) {
    return owned_list(orvex_scene_filectl_get_policy).contains(get_dir_pattern(path));
}

bool COrvexFile::is_pkg_in_policy(const std::string& package) {
    return owned_list(orvex_scene_filectl_get_pkg_policy).contains(package);
}
