// SPDX-License-Identifier: Apache-2.0
#include "framework/path_checks.h"

#include <cstdlib>

#include "framework/output.h"
#include "service/paths.h"

bool refuse_missing(path_kind kind, const std::string& path) {
    if (path_is_exist(path.c_str()) == 1) {
        return false;
    }
    print_line(kind == path_kind::file ? "文件路径[" : "目录路径[", path, "]不存在!");
    return true;
}

bool refuse_other_kind(path_kind kind, const std::string& path, const std::string& shown) {
    const bool is_dir = path_is_dir(path.c_str()) == 1;
    if (is_dir == (kind == path_kind::dir)) {
        return false;
    }
    print_line("路径[", shown, is_dir ? "]是目录, 请输入文件路径" : "]非目录, 请输入目录路径");
    return true;
}

owned_text get_absolute_file(const std::string& path) {
    owned_text absolute_path(get_absolute_path(path.c_str()));
    if (absolute_path == nullptr) {
        print_line("获取文件[", path, "]的绝对路径失败");
    }
    return absolute_path;
}

owned_text get_real_path(path_kind kind, const std::string& path) {
    owned_text real_path(realpath(path.c_str(), nullptr));
    if (real_path == nullptr) {
        print_line(kind == path_kind::file ? "获取文件[" : "获取目录[", path, "]的实际路径失败!");
        return nullptr;
    }
    if (refuse_other_kind(kind, real_path.get(), real_path.get())) {
        return nullptr;
    }
    return real_path;
}

owned_text get_existing_real_path(path_kind kind, const std::string& path) {
    return refuse_missing(kind, path) ? nullptr : get_real_path(kind, path);
}

std::string get_dir_pattern(const std::string& dir) {
    const bool ends_in_slash = !dir.empty() && dir.back() == '/';
    return dir + (ends_in_slash ? "*" : "/*");
}

std::string to_pattern_if_dir(const std::string& object) {
    return path_is_dir(object.c_str()) == 1 ? get_dir_pattern(object) : object;
}
