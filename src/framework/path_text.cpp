// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/module_base.h"
#include "framework/output.h"

std::string COrvexBase::get_home_dir() {
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        print_line("错误: HOME环境变量未设置!");
        return {};
    }
    return home;
}

std::string COrvexBase::expand_tilde(const std::string& path) {
    if (path.empty() || path.front() != '~') {
        return path;
    }
    std::string home = get_home_dir();
    if (home.empty()) {
        print_line("错误: home无效, 无法扩展~字符!");
        return path;
    }
    if (path.size() == 1) {
        return home;
    }
    if (path[1] != '/') {
        return path;
    }
    return home + path.substr(1);
}

bool COrvexBase::is_absolute_path(const std::string& path) {
    return path.at(0) == '/';
}

bool COrvexBase::is_path_under_home(const std::string& path) {
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        print_line("无法从环境变量中获取家目录!");
        return false;
    }
    const std::string normal_path = std::filesystem::absolute(path).lexically_normal().string();
    const std::string normal_home = std::filesystem::path(home).lexically_normal().string();
    // Text, not path components: with a home of /home/a the path /home/ab is under home. It is meant to stay so.
    return normal_path.compare(0, normal_home.size(), normal_home) == 0;
}

std::string COrvexBase::get_path_tail(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash);
}

std::string COrvexBase::get_path_filename(const std::string& path) {
    const std::filesystem::path file_path(path);
    if (file_path.empty()) {
        throw std::runtime_error("无效的路径");
    }
    return file_path.filename().string();
}

std::vector<std::string> COrvexBase::split_string(const std::string& text, char delimiter) {
    std::vector<std::string> pieces;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(delimiter, begin), text.size());
        if (end > begin) {
            pieces.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return pieces;
}
