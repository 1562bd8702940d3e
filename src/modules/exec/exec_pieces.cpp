// SPDX-License-Identifier: Apache-2.0
#include "modules/exec/exec_pieces.h"

#include <cstdio>
#include <cstdlib>

#include "framework/output.h"
#include "framework/path_checks.h"
#include "service/log.h"
#include "service/paths.h"

namespace {

/// Ends the program where an entry of the exception files lacks a character that every entry has. The library's own
/// list would be broken, so nothing is decided by it; builds without the C++ library's assertions stop here too.
void assert_not_empty(const std::string& entry) {
    if (entry.empty()) {
        static_cast<void>(
            std::fputs("orvex_policy: assertion failed: an entry of the exception files is too short\n", stderr));
        std::abort();
    }
}

}  // namespace

owned_text get_absolute_file(const std::string& path) {
    if (refuse_missing(path_kind::file, path)) {
        return nullptr;
    }
    owned_text absolute_path = get_absolute_path_of_file(path);
    if (absolute_path == nullptr || refuse_other_kind(path_kind::file, absolute_path.get(), path)) {
        return nullptr;
    }
    return absolute_path;
}

bool is_existing_dir(const std::string& path) {
    return !refuse_missing(path_kind::dir, path) && !refuse_other_kind(path_kind::dir, path, path);
}

owned_text get_absolute_dir(const std::string& path, const std::string& shown) {
    owned_text absolute_path(get_absolute_path(path.c_str()));
    if (absolute_path == nullptr) {
        print_line("获取目录[", shown, "]的绝对路径失败");
    }
    return absolute_path;
}

bool is_controlled_kind(int kind) {
    return static_cast<unsigned>(kind) <= 3;
}

std::optional<int> get_target_kind(const std::string& path) {
    const owned_text target(realpath(path.c_str(), nullptr));
    if (target == nullptr) {
        return std::nullopt;
    }
    return parse_file_type(target.get());
}

bool ends_in_star(const std::string& entry) {
    assert_not_empty(entry);
    return entry.back() == '*';
}

std::string cut_last(std::string entry) {
    assert_not_empty(entry);
    entry.pop_back();
    return entry;
}

void log_exec_failure(const char* function, const char* format, const std::string& object, int ret) {
    orvex_log(orvex_log_level_failure, "exec", function, format, object.c_str(), ret);
}
