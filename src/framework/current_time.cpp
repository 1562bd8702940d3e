// SPDX-License-Identifier: Apache-2.0
#include <chrono>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>

#include "framework/module_base.h"
#include "framework/output.h"

void COrvexBase::print_current_time(const std::string& label) {
    const auto now = std::chrono::system_clock::now();
    const auto since_epoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);

    std::ostringstream text;
    text << std::put_time(&local, "%Y-%m-%d %H:%M:%S") << '.' << std::setfill('0') << std::setw(3)
         << since_epoch.count() % 1000;
    print_line(label, "  当前时间: ", text.str());
}
