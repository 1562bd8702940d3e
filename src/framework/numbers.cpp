// SPDX-License-Identifier: Apache-2.0
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "framework/module_base.h"

bool COrvexBase::is_all_digits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

namespace {

/// Where a conversion has to stop: a NUL inside the text is not its end.
const char* end_of(const std::string& text) {
    return text.c_str() + text.size();
}

}  // namespace

std::uint32_t COrvexBase::parse_uint32(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 10);
    if (errno == ERANGE || end != end_of(text) || value > 0xFFFFFFFFUL) {
        throw std::invalid_argument("输入无效或超出uint32_t范围!");
    }
    return static_cast<std::uint32_t>(value);
}

pid_t COrvexBase::parse_pid(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    // As an unsigned number a negative one is above the limit too.
    if (errno == ERANGE || end != end_of(text) || static_cast<std::uint64_t>(value) > 0x7FFFFFFFUL) {
        throw std::invalid_argument("输入无效或超出pid范围!");
    }
    return static_cast<pid_t>(value);
}
