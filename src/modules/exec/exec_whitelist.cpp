// SPDX-License-Identifier: Apache-2.0
// Changing the whitelist, by file, directory and package. A negative result of a whitelist call is a failure here, and
// only that: a positive one is a success, unlike for the exceptions.
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "framework/action.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "modules/exec/exec_records.h"
#include "service/exectl.h"
#include "service/paths.h"

namespace {

/// Answers of `check_file_in_policy`.
constexpr int not_whitelisted = 0;
constexpr int whitelisted_intact = 1;
constexpr int whitelisted_tampered = 2;
constexpr int look_up_failed = -1;

/// How an add and a delete of one kind of object fail.
struct change_words {
    log_source source;
    failure_words add;
    failure_words remove;
};
constexpr change_words file_words = {
    .source = {.tag = "exec", .function = "set_exec_policy_by_file"},
    // No object is named.
    .add = {.head = "添加文件可执行失败!", .tail = "", .log = "add exectl whlist failed, path: %s, ret: %d"},
    .remove = {.head = "删除文件可执行失败!", .tail = "", .log = "del exectl whlist failed, path: %s, ret: %d"},
};
constexpr change_words dir_words = {
    .source = {.tag = "exec", .function = "set_exec_policy_by_dir"},
    .add =
        {
            .head = "添加目录[",
            .tail = "]下所有文件可执行失败!",
            .log = "add exectl whlist failed, path: %s, ret: %d",
        },
    .remove =
        {
            .head = "删除目录[",
            .tail = "]下所有文件可执行失败!",
            .log = "del exectl whlist failed, path: %s, ret: %d",
        },
};
constexpr change_words pkg_words = {
    .source = {.tag = "exec", .function = "set_exec_policy_by_pkg"},
    // One log format for both: the delete says "set" too.
    .add =
        {
            .head = "添加软件包[",
            .tail = "]中所有文件可执行失败!",
            .log = "set exectl whlist failed, pkg: %s, ret: %d",
        },
    .remove =
        {
            .head = "删除软件包[",
            .tail = "]中所有文件可执行失败!",
            .log = "set exectl whlist failed, pkg: %s, ret: %d",
        },
};

/// Adds or deletes all files of the batch in one call. Returns the library's result.
int change_files(int action, text_batch& batch) {
    if (action == action_add) {
        return orvex_scene_exectl_wlist_multi_add(batch.data(), batch.count());
    }
    return action == action_delete ? orvex_scene_exectl_wlist_multi_delete(batch.data(), batch.count()) : 0;
}

/// Adds or deletes all files below the directory. Returns the library's result.
int change_dir(int action, const char* directory) {
    if (action == action_add) {
        return orvex_scene_exectl_wlist_add_by_dir(directory);
    }
    return action == action_delete ? orvex_scene_exectl_wlist_delete_by_dir(directory) : 0;
}

/// Tells a failed change of the kind of object that `words` speaks of.
void report_change_failure(const change_words& words, int action, const std::string& named, const std::string& logged,
                           int ret) {
    report_failure(words.source, action == action_add ? words.add : words.remove, named, logged, ret);
}

/// Refuses the file at the absolute `path` where it is not subject to execution control, with a line. A link counts by
/// its target's kind; one that cannot be resolved is refused without a word.
bool refuse_uncontrolled(const std::string& path) {
    const std::optional<int> kind = follow_link(path, parse_file_type(path.c_str()));
    if (kind && is_controlled_kind(*kind)) {
        return false;
    }
    if (kind) {
        print_line("无需管控的文件类型, 无需添加或删除执行管控!");
    }
    return true;
}

}  // namespace

int COrvexExec::check_file_in_policy(const std::string& path) {
    const record_lookup lookup(path);
    if (lookup.result() != 0) {
        print_line("查询文件[", path, "]是否在白名单中失败!");
        log_failure({.tag = "exec", .function = "check_file_in_policy"},
                    "failed to get exectl whlist list by path, path:%s,  ret: %d", path.c_str(), lookup.result());
        return look_up_failed;
    }
    if (!lookup.is_found()) {
        return not_whitelisted;
    }
    switch (lookup.status()) {
        case orvex_whitelist_intact:
            return whitelisted_intact;
        case orvex_whitelist_tampered:
            return whitelisted_tampered;
        default:
            print_line("未知的白名单状态[", lookup.status(), "]!");
            return look_up_failed;
    }
}

int COrvexExec::set_exec_policy_by_file(const std::string& paths, const int& action) {
    text_batch batch;
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        owned_text absolute_path = accept_file(path);
        if (absolute_path == nullptr || refuse_uncontrolled(absolute_path.get())) {
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
    const int ret = change_files(action, batch);
    if (ret < 0) {
        report_change_failure(file_words, action, "", paths, ret);
    }
    return 0;
}

int COrvexExec::set_exec_policy_by_dir(const std::string& paths, const int& action) {
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        if (refuse_non_dir(path)) {
            return -1;
        }
        const std::optional<std::string> absolute_path = take_text(get_absolute_dir(path, path));
        if (!absolute_path) {
            continue;
        }
        // A failed call does not stop the list.
        const int ret = change_dir(action, absolute_path->c_str());
        if (ret < 0) {
            report_change_failure(dir_words, action, path, *absolute_path, ret);
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
    const int ret = change_files(action, batch);
    if (ret < 0) {
        report_change_failure(pkg_words, action, pkgs, pkgs, ret);
    }
    return ret;
}
