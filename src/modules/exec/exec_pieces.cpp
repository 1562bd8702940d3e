// SPDX-License-Identifier: Apache-2.0
#include "modules/exec/exec_pieces.h"

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "service/paths.h"

namespace {

/// Ends the program where an entry of the exception files lacks a character that every entry has: the library's list is
/// broken then, and nothing may be decided by it. Builds without the C++ library's own assertions stop here too.
void assert_not_empty(const std::string& entry) {
    if (entry.empty()) {
        static_cast<void>(
            std::fputs("orvex_policy: assertion failed: an entry of the exception files is too short\n", stderr));
        std::abort();
    }
}

}  // namespace

owned_text accept_file(const std::string& path) {
    if (refuse_missing(path_kind::file, path)) {
        return nullptr;
    }
    owned_text absolute_path = get_absolute_file(path);
    if (absolute_path == nullptr || refuse_other_kind(path_kind::file, absolute_path.get(), path)) {
        return nullptr;
    }
    return absolute_path;
}

bool refuse_non_dir(const std::string& path) {
    return refuse_missing(path_kind::dir, path) || refuse_other_kind(path_kind::dir, path, path);
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

std::optional<int> follow_link(const std::string& path, int kind) {
    if (kind != orvex_file_type_link) {
        return kind;
    }
    const owned_text target(realpath(path.c_str(), nullptr));
    return target == nullptr ? std::nullopt : std::optional(parse_file_type(target.get()));
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

void report_failure(const log_source& source, const failure_words& words, const std::string& named,
                    const std::string& logged, int ret) {
    print_line(words.head, named, words.tail);
    log_failure(source, words.log, logged.c_str(), ret);
}
