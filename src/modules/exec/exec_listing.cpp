// SPDX-License-Identifier: Apache-2.0
// The read side of `exec`: the state of files, the exceptions and the tamper report. Nothing here changes a policy.
#include <filesystem>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "modules/exec/exec_records.h"
#include "service/exectl.h"
#include "service/paths.h"

namespace {

// What stands behind the path or the name in a row.
constexpr const char* executable = "       可执行";
constexpr const char* not_executable = "       不可执行";
constexpr const char* excepted = "       例外程序";

/// Tells whether a file of this kind gets a state row. A link counts by what it leads to.
bool is_rated(const std::string& path, int kind) {
    const std::optional<int> final_kind = follow_link(path, kind);
    return final_kind && is_controlled_kind(*final_kind);
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

/// Names of exceptions, each behind a ':'.
struct joined_objects {
    std::string files;
    std::string dirs;
};

/// Fetches the exception files and directories. A directory keeps its last '/': only the star goes.
joined_objects join_files() {
    const owned_list entries(orvex_scene_exectl_get_policy_for_file_permissive);
    joined_objects joined;
    for (const char* entry : entries) {
        if (entry == nullptr) {
            continue;
        }
        const std::string object = ends_in_star(entry) ? cut_last(entry) : entry;
        std::string& row = path_is_dir(object.c_str()) == 1 ? joined.dirs : joined.files;
        row += ":" + object;
    }
    return joined;
}

/// Fetches the exception packages.
std::string join_pkgs() {
    const owned_list entries(orvex_scene_exectl_get_policy_for_package_permissive);
    std::string pkgs;
    for (const char* entry : entries) {
        if (entry != nullptr) {
            pkgs += std::string(":") + entry;
        }
    }
    return pkgs;
}

void print_exceptions(const char* label, const std::string& objects) {
    if (!objects.empty()) {
        print_line(label, objects);
    }
}

}  // namespace

int COrvexExec::print_whlist_status_by_file(const std::string& path, const int& source, bool verbose) {
    const int kind = parse_file_type(path.c_str());
    // A link in a package's file list is passed over even where `verbose` is set.
    if (kind == orvex_file_type_link && source == source_pkg) {
        return 0;
    }
    if (!is_rated(path, kind)) {
        if (verbose) {
            print_line("[", path, "]不受管控的文件类型!");
        }
        return 0;
    }
    if (is_file_excepted_from(path, source)) {
        print_line(path, excepted);
        return 0;
    }
    record_lookup lookup(path);
    if (lookup.result() != 0) {
        lookup.abandon();
        print_line("获取文件[", path, "]是否可执行失败!");
        log_failure({.tag = "exec", .function = "print_whlist_status_by_file"},
                    "failed to get is execute by path, path:%s,  ret: %d", path.c_str(), lookup.result());
        return -1;
    }
    const bool is_intact = lookup.is_found() && lookup.status() == orvex_whitelist_intact;
    print_line(path, is_intact ? executable : not_executable);
    return 0;
}

int COrvexExec::get_whlist_status_by_file(const std::string& paths) {
    for (const std::string& piece : split_string(paths, ':')) {
        const owned_text absolute_path = accept_file(expand_tilde(piece));
        if (absolute_path != nullptr) {
            print_whlist_status_by_file(absolute_path.get(), source_user, true);
        }
    }
    return 0;
}

int COrvexExec::get_whlist_status_by_dir(const std::string& paths) {
    for (const std::string& piece : split_string(paths, ':')) {
        const std::string path = expand_tilde(piece);
        if (refuse_non_dir(path)) {
            return -1;
        }
        const std::optional<std::string> absolute_path = take_text(get_absolute_dir(path, piece));
        if (!absolute_path) {
            continue;
        }
        if (is_dir_in_except_list(*absolute_path)) {
            // The piece as typed: the tilde is shown.
            print_line(piece, excepted);
            continue;
        }
        try {
            walk_dir(*this, *absolute_path);
        } catch (const std::filesystem::filesystem_error& error) {
            print_line("文件系统错误: ", error.what());
            log_failure({.tag = "exec", .function = "get_whlist_status_by_dir"}, "recursive dir failed, path: %s",
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
    const joined_objects objects = join_files();
    const std::string pkgs = join_pkgs();
    print_exceptions("放行   文件", objects.files);
    print_exceptions("放行   目录", objects.dirs);
    print_exceptions("放行   软件包", pkgs);
    return 0;
}

int COrvexExec::get_all_tampered_file() {
    const whole_whitelist whitelist;
    if (whitelist.result() != 0) {
        print_line("获取执行控制所有白名单失败!");
        log_failure({.tag = "exec", .function = "get_all_tampered_file"}, "get exectl all white list failed, ret: %d",
                    whitelist.result());
        return -1;
    }
    for (const orvex_exectl_list_obj* link = whitelist.first(); link != nullptr; link = link->next) {
        if (link->obj.status != orvex_whitelist_intact) {
            print_line(link->obj.path);
        }
    }
    return 0;
}
