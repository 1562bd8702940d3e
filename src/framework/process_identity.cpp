// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

#include "framework/module_base.h"
#include "framework/owned.h"
#include "service/paths.h"

namespace {

/// Tells whether the process has a program at all. The link's text is of no interest: what a process is called is the
/// framework's decision.
bool has_program(const std::string& link_path) {
    std::array<char, 1024> target{};
    return readlink(link_path.c_str(), target.data(), target.size() - 1) >= 0;
}

std::string read_attribute_file(const std::string& path) {
    std::ifstream file(path, std::ios::in | std::ios::binary);
    if (!file) {
        throw std::runtime_error("打开attr/vemu/path文件失败!");
    }
    std::string content;
    for (char byte = 0; file.get(byte);) {
        content.push_back(byte);
    }
    return content;
}

}  // namespace

std::string COrvexBase::get_path_by_pid(std::uint32_t pid) {
    const std::string base_path = "/proc/" + std::to_string(pid);
    const std::string link_path = base_path + "/exe";
    if (path_is_exist(link_path.c_str()) != 1) {
        throw std::runtime_error("进程不存在!");
    }
    if (!has_program(link_path)) {
        throw std::runtime_error("内核进程, 无法获取程序路径!");
    }
    // The content goes to the library as it is: cleaning it up is that call's work.
    const std::string content = read_attribute_file(base_path + "/attr/vemu/path");
    if (content.empty()) {
        throw std::runtime_error("读取attr/vemu/path文件失败内容失败!");
    }
    const owned_text path(pathNormalize(content.c_str()));
    if (path == nullptr) {
        throw std::runtime_error("获取系统标准路径失败!");
    }
    return path.get();
}
