// SPDX-License-Identifier: Apache-2.0
// Protecting files, directories and packages, and ending their protection.
#include "framework/protection_change.h"
#include "framework/wanted_state.h"
#include "modules/file/file_module.h"
#include "modules/file/file_release.h"
#include "service/filectl.h"

namespace {

constexpr wanted_state_tails tails = {"]已存在只读保护列表中, 无需重复添加!", "]不在只读保护列表中, 无需删除!"};

/// Drops all exceptions of an object of one kind.
template <std::int32_t kind>
int clear_resource(char* resource) {
    return orvex_scene_filectl_exception_clear_resource_policy(kind, resource);
}

constexpr protection_words<char*> file_words = {
    "file",
    "set_file_policy_by_file",
    orvex_scene_filectl_multi_add_by_path,
    "设置文件只读保护失败",
    "add file ctl failed, path: %s, ret: %d",
    orvex_scene_filectl_multi_remove_by_path,
    "删除文件只读保护失败",
    "del file ctl failed, path: %s, ret: %d",
    clear_resource<orvex_kind_file>,
    "删除只读保护文件[",
    "del file ctl file to all except failed, path: %s, ret: %d",
};
constexpr protection_words<char*> dir_words = {
    "file",
    "set_file_policy_by_dir",
    orvex_scene_filectl_multi_add_by_path,
    "设置目录只读保护失败",
    "add file ctl failed, dir: %s, ret: %d",
    orvex_scene_filectl_multi_remove_by_path,
    "删除目录只读保护失败",
    "del file ctl failed, dir: %s, ret: %d",
    clear_resource<orvex_kind_dir>,
    "删除只读保护目录[",
    "del file ctl dir to all except failed, path: %s, ret: %d",
};
constexpr protection_words<char*> pkg_words = {
    "file",
    "set_file_policy_by_pkg",
    orvex_scene_filectl_multi_add_by_pkg,
    "设置软件包只读保护失败!",
    "add file ctl failed, pkgName: %s, ret: %d",
    orvex_scene_filectl_multi_remove_by_pkg,
    "删除软件包只读保护失败!",
    "del file ctl failed, pkgName: %s, ret: %d",
    clear_resource<orvex_kind_pkg>,
    "删除只读保护软件包[",
    "del file ctl pkg to all except failed, path: %s, ret: %d",
};

/// Returns the path that the piece of a list stands for, or null with its lines.
owned_text resolve_piece(COrvexFile& module, path_kind kind, const std::string& piece, int action) {
    const std::string path = module.expand_tilde(piece);
    if (action == action_add) {
        return get_existing_real_path(kind, path);
    }
    return get_path_to_release(module, kind, path,
                               kind == path_kind::file ? "支持不存在的文件删除只读保护, 需输入文件绝对路径!"
                                                       : "支持不存在的目录删除只读保护, 需输入目录绝对路径!");
}

}  // namespace

int COrvexFile::set_file_policy_by_file(const std::string& paths, const int& action) {
    text_batch accepted;
    for (const std::string& piece : split_string(paths, ':')) {
        owned_text path = resolve_piece(*this, path_kind::file, piece, action);
        if (path == nullptr || is_in_wanted_state(tails, action, is_file_in_policy(path.get()), "文件[", path.get())) {
            continue;
        }
        accepted.add(std::move(path));
    }
    return change_protection(file_words, action, paths.c_str(), accepted.data(), accepted.count());
}

int COrvexFile::set_file_policy_by_dir(const std::string& paths, const int& action) {
    text_batch accepted;
    for (const std::string& piece : split_string(paths, ':')) {
        owned_text path = resolve_piece(*this, path_kind::dir, piece, action);
        if (path == nullptr || is_in_wanted_state(tails, action, is_dir_in_policy(path.get()), "目录[", path.get())) {
            continue;
        }
        accepted.add(std::move(path));
    }
    return change_protection(dir_words, action, paths.c_str(), accepted.data(), accepted.count());
}

int COrvexFile::set_file_policy_by_pkg(const std::string& packages, const int& action) {
    text_batch accepted;
    for (const std::string& pkg : split_string(packages, ':')) {
        // A package need not be installed to be taken off the list.
        if (action == action_add && !is_pkg_installed(pkg)) {
            print_line("软件包[", pkg, "]未安装, 不支持添加!");
            continue;
        }
        if (!is_in_wanted_state(tails, action, is_pkg_in_policy(pkg), "软件包[", pkg)) {
            accepted.add(copy_text(pkg));
        }
    }
    return change_protection(pkg_words, action, packages.c_str(), accepted.data(), accepted.count());
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
