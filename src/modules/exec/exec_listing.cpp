// SPDX-License-Identifier: Apache-2.0
// The read side of `exec`: the state of files, the exceptions and the tamper report. Nothing here changes a policy.
#include <filesystem>

#include "framework/output.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "service/log.h"
#include "service/paths.h"

namespace {

// What stands behind the path or the name in a row.
constexpr const char* executable = "       可执行";
constexpr const char* not_executable = "       不可执行";
constexpr const char* excepted = "       例外程序";

/// Gives a loaded whitelist back.
struct whitelist_deleter {
    void operator()(orvex_exectl_list_obj** head) const noexcept { orvex_scene_exectl_objs_free(head); }
};
using whitelist_chain = std::unique_ptr<orvex_exectl_list_obj*, whitelist_deleter>;

/// Tells whether a file gets a state row. A link in a package's file list is passed over even where `verbose` is set.
bool is_rated(const std::string& path, int source, bool verbose) {
    int kind = parse_file_type(path.c_str());
    if (kind == orvex_file_type_link) {
        if (source == source_pkg) {
            return false;
        }
        // A link that cannot be resolved leads to no controlled kind.
        constexpr int unresolved = -1;
        kind = get_target_kind(path).value_or(unresolved);
    }
    if (is_controlled_kind(kind)) {
        return true;
    }
    if (verbose) {
        print_line("[", path, "]不受管控的文件类型!");
    }
    return false;
}

/// Rates every file below the directory `path`. Links to directories are not entered. Throws
/// std::filesystem::filesystem_error for what cannot be read.
void walk_dir(COrvexExec& module, const std::string& path) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (!std::filesystem::is_directory(entry.status())) {
            module.print_whlist_status_by_file(entry.path().string(), source_dir, false);
        }
    }
}

/// Appends the exception files and directories, each behind a ':'. A directory keeps its last '/': only the star goes.
void join_files(std::string& files, std::string& dirs) {
    const owned_list entries(orvex_scene_exectl_get_policy_for_file_permissive);
    for (const char* entry : entries) {
        if (entry == nullptr) {
            continue;
        }
        const std::string object = ends_in_star(entry) ? cut_last(entry) : entry;
        (path_is_dir(object.c_str()) == 1 ? dirs : files) += ":" + object;
    }
}

void join_pkgs(std::string& pkgs) {
    const owned_list entries(orvex_scene_exectl_get_policy_for_package_permissive);
    for (const char* entry : entries) {
        if (entry != nullptr) {
            pkgs += std::string(":") + entry;
        }
    }
}

void print_exceptions(const char* label, const std::string& objects) {
    if (!objects.empty()) {
        print_line(label, objects);
    }
}

}  // namespace

int COrvexExec::print_whlist_status_by_file(const std::string& path, const int& source, bool verbose) {
    if (!is_rated(path, source, verbose)) {
        return 0;
    }
    if (is_file_excepted_from(path, source)) {
        print_line(path, excepted);
        return 0;
    }
    orvex_exectl_obj record{};
    const int ret = orvex_scene_exectl_wlist_load_by_path(path.c_str(), &record);
    if (ret != 0) {
        // Nothing is given back after a failed look-up.
        print_line("获取文件[", path, "]是否可执行失败!");
        log_exec_failure("print_whlist_status_by_file", "failed to get is execute by path, path:%s,  ret: %d", path,
                         ret);
        return -1;
    }
    const record_contents contents(&record);
    const bool is_intact = record.path != nullptr && record.status == orvex_whitelist_intact;
    print_line(path, is_intact ? executable : not_executable);
    return 0;
}

int COrvexExec::get_whlist_status_by_file(const std::string& paths) {
    for (const std::string& piece : split_string(paths, ':')) {
        const owned_text absolute_path = get_absolute_file(expand_tilde(piece));
        if (absolute_path != nullptr) {
            print_whlist_status_by_file(absolute_path.get(), source_user, true);
        }
    }
    return 0;
}

int COrvexExec::get_whlist_status_by_dir(const std::string& paths) {
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        if (!is_existing_dir(path)) {
            return -1;
        }
        const owned_text absolute_path = get_absolute_dir(path, piece);
        if (absolute_path == nullptr) {
            continue;
        }
        if (is_dir_in_except_list(absolute_path.get())) {
            // The piece as typed: the tilde is shown.
            print_line(piece, excepted);
            continue;
        }
        try {
            walk_dir(*this, absolute_path.get());
        } catch (const std::filesystem::filesystem_error& error) {
            print_line("文件系统错误: ", error.what());
            orvex_log(orvex_log_level_failure, "exec", "get_whlist_status_by_dir", "recursive dir failed, path: %s",
                      piece.c_str());
        }
    }
    return 0;
}

int COrvexExec::get_whlist_status_by_pkg(const std::string& pkgs) {
    for (const std::string& pkg : split_string(pkgs, ':')) {
        if (!is_pkg_installed(pkg)) {
            print_line("不支持未安装的软件包[", pkg, "]查询");
            continue;
        }
        if (is_pkg_in_except_list(pkg)) {
            print_line(pkg, excepted);
            continue;
        }
        std::list<std::string> files;
        if (get_pkg_files(pkg, files) != 0) {
            print_line("获取软件包中所有文件失败!");
            return -1;
        }
        for (const std::string& file : files) {
            print_whlist_status_by_file(file, source_pkg, false);
        }
    }
    return 0;
}

int COrvexExec::get_all_except_policy() {
    std::string files;
    std::string dirs;
    std::string pkgs;
    join_files(files, dirs);
    join_pkgs(pkgs);
    print_exceptions("放行   文件", files);
    print_exceptions("放行   目录", dirs);
    print_exceptions("放行   软件包", pkgs);
    return 0;
}

int COrvexExec::get_all_tampered_file() {
    orvex_exectl_list_obj* head = nullptr;
    const int ret = orvex_scene_exectl_wlist_load_all(&head);
    if (ret != 0) {
        print_line("获取执行控制所有白名单失败!");
        orvex_log(orvex_log_level_failure, "exec", "get_all_tampered_file", "get exectl all white list failed, ret: %d",
                  ret);
        return -1;
    }
    if (head == nullptr) {
        return 0;
    }
    const whitelist_chain chain(&head);
    for (const orvex_exectl_list_obj* link = head; link != nullptr; link = link->next) {
        if (link->obj.status != orvex_whitelist_intact) {
            print_line(link->obj.path);
        }
    }
    return 0;
}
