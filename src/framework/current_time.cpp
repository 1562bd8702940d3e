// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <string>
#include <string_view>

#include "framework/module_base.h"
#include "framework/output.h"

void COrvexBase::print_current_time(const std::string& label) {
    const auto now = std::chrono::system_clock::now();
    const auto since_epoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);

    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
    std::string milliseconds = std::to_string(since_epoch.count() % 1000);
    milliseconds.insert(0, 3 - std::min<std::size_t>(milliseconds.size(), 3), '0');
    print_line(label, "  当前时间: ", std::string_view(text.data(), length), ".", milliseconds);
}
