// SPDX-License-Identifier: Apache-2.0
// Changing the whitelist, by file, directory and package. A negative result of a whitelist call is a failure here, and
// only that: a positive one is a success, unlike for the exceptions.
#include "framework/action.h"
#include "framework/output.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "service/paths.h"

namespace {

/// Answers of `check_file_in_policy`.
constexpr int not_whitelisted = 0;
constexpr int whitelisted_intact = 1;
constexpr int whitelisted_tampered = 2;
constexpr int look_up_failed = -1;

/// Tells whether the file at the absolute `path` is subject to execution control, with a line where it is not. A link
/// counts by its target's kind.
bool is_controlled_file(const std::string& path) {
    int kind = parse_file_type(path.c_str());
    if (kind == orvex_file_type_link) {
        const std::optional<int> target_kind = get_target_kind(path);
        // A link that cannot be resolved is dropped without a word.
        if (!target_kind) {
            return false;
        }
        kind = *target_kind;
    }
    if (is_controlled_kind(kind)) {
        return true;
    }
    print_line("无需管控的文件类型, 无需添加或删除执行管控!");
    return false;
}

}  // namespace

int COrvexExec::check_file_in_policy(const std::string& path) {
    orvex_exectl_obj record{};
    const record_contents contents(&record);
    const int ret = orvex_scene_exectl_wlist_load_by_path(path.c_str(), &record);
    if (ret != 0) {
        print_line("查询文件[", path, "]是否在白名单中失败!");
        log_exec_failure("check_file_in_policy", "failed to get exectl whlist list by path, path:%s,  ret: %d", path,
                         ret);
        return look_up_failed;
    }
    if (record.path == nullptr) {
        return not_whitelisted;
    }
    switch (record.status) {
        case orvex_whitelist_intact:
            return whitelisted_intact;
        case orvex_whitelist_tampered:
            return whitelisted_tampered;
        default:
            print_line("未知的白名单状态[", record.status, "]!");
            return look_up_failed;
    }
}

int COrvexExec::set_exec_policy_by_file(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        owned_text absolute_path = get_absolute_file(path);
        if (absolute_path == nullptr || !is_controlled_file(absolute_path.get())) {
            continue;
        }
        // Asked at add too, where the answer does not count; nor does a failed look-up stop a delete.
        const int state = check_file_in_policy(absolute_path.get());
        if (state == not_whitelisted && action == action_delete) {
            print_line("文件[", path, "]不在白名单列表中, 无需删除!");
            continue;
        }
        batch.add(std::move(absolute_path));
    }
    if (batch.empty()) {
        return 0;
    }

    const char* function = "set_exec_policy_by_file";
    if (action == action_add) {
        const int ret = orvex_scene_exectl_wlist_multi_add(batch.data(), batch.count());
        if (ret < 0) {
            print_line("添加文件可执行失败!");
            log_exec_failure(function, "add exectl whlist failed, path: %s, ret: %d", paths, ret);
        }
    } else if (action == action_delete) {
        const int ret = orvex_scene_exectl_wlist_multi_delete(batch.data(), batch.count());
        if (ret < 0) {
            print_line("删除文件可执行失败!");
            log_exec_failure(function, "del exectl whlist failed, path: %s, ret: %d", paths, ret);
        }
    }
    return 0;
}

int COrvexExec::set_exec_policy_by_dir(const std::string& paths, const int& action) {
    const char* function = "set_exec_policy_by_dir";
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        if (!is_existing_dir(path)) {
            return -1;
        }
        const owned_text absolute_path = get_absolute_dir(path, path);
        if (absolute_path == nullptr) {
            continue;
        }
        // A failed call does not stop the list.
        if (action == action_add) {
            const int ret = orvex_scene_exectl_wlist_add_by_dir(absolute_path.get());
            if (ret < 0) {
                print_line("添加目录[", path, "]下所有文件可执行失败!");
                log_exec_failure(function, "add exectl whlist failed, path: %s, ret: %d", absolute_path.get(), ret);
            }
        } else if (action == action_delete) {
            const int ret = orvex_scene_exectl_wlist_delete_by_dir(absolute_path.get());
            if (ret < 0) {
                print_line("删除目录[", path, "]下所有文件可执行失败!");
                log_exec_failure(function, "del exectl whlist failed, path: %s, ret: %d", absolute_path.get(), ret);
            }
        }
    }
    return 0;
}

int COrvexExec::set_exec_policy_by_pkg(const std::string& pkgs, const int& action) {
    text_batch batch;
    for (const std::string& pkg : split_string(pkgs, ':')) {
        if (!is_pkg_installed(pkg)) {
            print_line("不支持未安装的软件包[", pkg, "]设置");
            continue;
        }
        std::list<std::string> files;
        if (get_pkg_files(pkg, files) != 0) {
            print_line("获取软件包[", pkg, "]中所有文件失败!");
            continue;
        }
        for (const std::string& file : files) {
            // Unlike for a file that the user names, a link is not resolved: it is no controlled kind and stays out.
            if (is_controlled_kind(parse_file_type(file.c_str()))) {
                batch.add(copy_text(file));
            }
        }
    }
    if (batch.empty()) {
        return 0;
    }

    int ret = 0;
    if (action == action_add) {
        ret = orvex_scene_exectl_wlist_multi_add(batch.data(), batch.count());
        if (ret < 0) {
            print_line("添加软件包[", pkgs, "]中所有文件可执行失败!");
        }
    } else if (action == action_delete) {
        ret = orvex_scene_exectl_wlist_multi_delete(batch.data(), batch.count());
        if (ret < 0) {
            print_line("删除软件包[", pkgs, "]中所有文件可执行失败!");
        }
    }
    if (ret < 0) {
        // One wording for both: the delete says "set" too.
        log_exec_failure("set_exec_policy_by_pkg", "set exectl whlist failed, pkg: %s, ret: %d", pkgs, ret);
    }
    return ret;
}
