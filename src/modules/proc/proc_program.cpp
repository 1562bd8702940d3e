// SPDX-License-Identifier: Apache-2.0
#include "modules/proc/proc_program.h"

#include <cstdint>
#include <exception>
#include <stdexcept>

#include "framework/output.h"

namespace {

std::optional<pid_t> parse_pid_text(COrvexBase& module, const std::string& text) {
    if (!module.is_all_digits(text)) {
        print_line("pid[", text, "]错误");
        return std::nullopt;
    }
    try {
        return module.parse_pid(text);
    } catch (const std::invalid_argument& error) {
        print_line("无效的pid[", text, "], ", error.what());
        return std::nullopt;
    }
}

}  // namespace

std::optional<running_program> find_running_program(COrvexBase& module, const std::string& text) {
    const std::optional<pid_t> pid = parse_pid_text(module, text);
    if (!pid) {
        return std::nullopt;
    }
    try {
        return running_program{.pid = *pid, .path = module.get_path_by_pid(static_cast<std::uint32_t>(*pid))};
    } catch (const std::exception& error) {
        print_line("获取进程[", *pid, "]的执行程序路径错误: ", error.what());
        return std::nullopt;
    }
}
