// SPDX-License-Identifier: Apache-2.0
// The programs that may still access a protected object.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/action.h"
#include "framework/exception_change.h"
#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "modules/file/file_deletion.h"
#include "modules/file/file_module.h"
#include "modules/file/file_records.h"
#include "service/filectl.h"

namespace {

// The lines say "file" for directories and packages too.
constexpr exception_words words = {
    .source = {.tag = "file", .function = "set_file_except_policy"},
    .object_head = "只读保护文件[",
    .absent_middle = "]未添加例外程序[",
    .not_protected_tail = "]不在只读保护列表中, 请先添加只读保护!",
    .add_failure_head = "添加只读保护文件[",
    .remove_failure_head = "删除只读保护文件[",
    .add_log = "add file except failed, readonly file = %s, except = %s, ret = %d",
    .remove_log = "del file except failed, readonly file = %s, except = %s, ret = %d",
};

owned_text resolve_first_path(COrvexFile& module, path_kind kind, const std::string& path, int action) {
    if (action == action_add) {
        return get_existing_real_path(kind, path);
    }
    return get_path_to_delete(module, kind, path,
                              kind == path_kind::file ? "支持不存在的文件删除只读保护的例外程序, 需输入文件绝对路径!"
                                                      : "支持不存在的目录删除只读保护的例外程序, 需输入目录绝对路径!");
}

/// Returns the protected object, or null with its lines. It is one object as it stands: nothing is split, no tilde is
/// expanded.
owned_text resolve_first_object(COrvexFile& module, std::int32_t kind, const std::string& object, int action) {
    switch (kind) {
        case orvex_kind_file:
            return resolve_first_path(module, path_kind::file, object, action);
        case orvex_kind_dir:
            return resolve_first_path(module, path_kind::dir, object, action);
        case orvex_kind_pkg:
            if (action == action_add && !module.is_pkg_installed(object)) {
                // No "!" here, unlike where a package itself is protected.
                print_line("软件包[", object, "]未安装, 不支持添加");
                return nullptr;
            }
            return copy_text(object);
        default:
            print_line("添加例外程序时,只读文件可以是文件路径、目录或者软件包!");
            return nullptr;
    }
}

/// Returns the path of an exception program, empty with its lines where it is refused.
std::string resolve_program(COrvexFile& module, const std::string& piece, int action) {
    const std::string path = module.expand_tilde(piece);
    const owned_text program = action == action_add
                                   ? get_existing_real_path(path_kind::file, path)
                                   : get_path_to_delete(module, path_kind::file, path,
                                                        "支持只读文件删除不存在的例外程序, 需输入文件绝对路径!");
    return program == nullptr ? std::string() : std::string(program.get());
}

/// Returns the exceptions that the list `objects` stands for, with empty ones where one was refused; or nothing where
/// the whole call is refused.
std::optional<std::vector<std::string>> resolve_exceptions(COrvexFile& module, std::int32_t kind,
                                                           const std::string& objects, int action) {
    std::vector<std::string> exceptions = module.split_string(objects, ':');
    switch (kind) {
        case orvex_kind_file:
            for (std::string& exception : exceptions) {
                exception = resolve_program(module, exception, action);
            }
            return exceptions;
        case orvex_kind_dir:
            // The line is all: the directories go on. The command line lets none come as far as this.
            print_line("文件只读保护不支持以目录的方式添加例外程序");
            return exceptions;
        case orvex_kind_pkg:
            // Unlike a bad path, one bad package ends the whole call.
            if (action == action_add && refuse_missing_pkgs(module, exceptions)) {
                return std::nullopt;
            }
            return exceptions;
        default:
            print_line("添加例外程序时,例外只允许是文件路径、目录或者软件包!");
            return std::nullopt;
    }
}

}  // namespace

int COrvexFile::set_file_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                                       const std::int32_t& except_kind, const std::string& except_object,
                                       const int& action) {
    const owned_text resolved = resolve_first_object(*this, first_kind, first_object, action);
    if (resolved == nullptr) {
        return -1;
    }
    const auto exceptions = resolve_exceptions(*this, except_kind, except_object, action);
    if (!exceptions) {
        return -1;
    }
    const std::string object = resolved.get();
    const shown_object shown = {.needless = object, .not_protected = object, .failure = object, .log = first_object};
    const auto call =
        action == action_add ? orvex_scene_filectl_exception_multi_add : orvex_scene_filectl_exception_multi_remove;
    return change_exceptions(
        words, shown, {.exceptions = *exceptions, .argument = except_object, .action = action},
        [&](const std::string& exception) { return is_except_in_policy(object, exception); },
        [&](text_batch& chosen) {
            return call(first_kind, object.c_str(), except_kind, chosen.data(), chosen.count());
        });
}

bool COrvexFile::is_except_in_policy(const std::string& object, const std::string& except_object) {
    const filectl_records records(orvex_scene_filectl_exception_get_policy);
    if (records.empty()) {
        return false;
    }
    // Text is all that counts: a package named like a directory here is looked for as a pattern too.
    const std::string resource = to_pattern_if_dir(object);
    return records.hold(resource, to_pattern_if_dir(except_object));
}
