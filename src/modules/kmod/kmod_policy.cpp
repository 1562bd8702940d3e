// SPDX-License-Identifier: Apache-2.0
// The list of protected modules: asking it and changing it.
#include <optional>
#include <string>

#include "framework/failure_log.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "modules/kmod/kmod_module.h"
#include "service/kmodctl.h"

namespace {

/// The words and the call of one way to change the list.
struct list_change {
    /// Whether the module is on the list where nothing is left to do.
    bool is_listed_when_done;
    const char* done_head;
    const char* done_tail;
    int (*call)(const char* text);
    const char* failure_head;
    const char* function;
    log_format<const char*, int> failure_log;
};
constexpr list_change add_by_file = {
    .is_listed_when_done = true,
    .done_head = "文件[",
    .done_tail = "]已添加内核模块防卸载, 无需重复添加!",
    .call = orvex_scene_kmodctl_add_by_path,
    .failure_head = "添加内核模块[",
    .function = "add_kmod_by_file",
    .failure_log = "add kmod failed, file=%s, ret=%d",
};
constexpr list_change add_by_name = {
    .is_listed_when_done = true,
    .done_head = "模块[",
    .done_tail = "]已添加内核模块防卸载, 无需重复添加!",
    .call = orvex_scene_kmodctl_add_by_name,
    .failure_head = "添加内核模块[",
    .function = "add_kmod_by_name",
    .failure_log = "add kmod failed, name=%s, ret=%d",
};
constexpr list_change delete_by_file = {
    .is_listed_when_done = false,
    .done_head = "文件[",
    .done_tail = "]未添加内核模块防卸载, 无需删除!",
    .call = orvex_scene_kmodctl_remove_by_path,
    .failure_head = "删除内核模块[",
    .function = "del_kmod_by_file",
    .failure_log = "del kmod failed, file=%s, ret=%d",
};
constexpr list_change delete_by_name = {
    .is_listed_when_done = false,
    .done_head = "模块[",
    .done_tail = "]未添加内核模块防卸载, 无需删除!",
    .call = orvex_scene_kmodctl_remove_by_name,
    .failure_head = "删除内核模块[",
    .function = "del_kmod_by_name",
    .failure_log = "del kmod failed, name=%s, ret=%d",
};

/// Changes the list for `text`, a path or a name just as the user typed it.
int change_list(const list_change& how, const std::string& text, bool is_listed) {
    if (is_listed == how.is_listed_when_done) {
        print_line(how.done_head, text, how.done_tail);
        return 0;
    }
    const int ret = how.call(text.c_str());
    if (ret == 0) {
        return 0;
    }
    print_line(how.failure_head, text, "]防卸载失败!");
    log_failure({.tag = "kmod", .function = how.function}, how.failure_log, text.c_str(), ret);
    return -1;
}

}  // namespace

bool COrvexKmod::check_kmod_is_add_by_name(const std::string& name) {
    return owned_list(orvex_scene_kmodctl_get_policy).contains(name);
}

bool COrvexKmod::check_kmod_is_add_by_file(const std::string& path) {
    const std::optional<std::string> absolute_path = take_text(get_absolute_file(path));
    if (!absolute_path) {
        return false;
    }
    const owned_text name(orvex_scene_get_module_name_from_ko_path(absolute_path->c_str()));
    if (name == nullptr) {
        print_line("通过内核模块文件[", path, "]获取模块名称失败!");
        log_failure({.tag = "kmod", .function = "check_kmod_is_add_by_file"},
                    "get kmod name by kmod file failed, path: %s", path.c_str());
        return false;
    }
    return check_kmod_is_add_by_name(name.get());
}

int COrvexKmod::add_kmod_by_file(const std::string& path) {
    return change_list(add_by_file, path, check_kmod_is_add_by_file(path));
}

int COrvexKmod::add_kmod_by_name(const std::string& name) {
    return change_list(add_by_name, name, check_kmod_is_add_by_name(name));
}

int COrvexKmod::del_kmod_by_file(const std::string& path) {
    return change_list(delete_by_file, path, check_kmod_is_add_by_file(path));
}

int COrvexKmod::del_kmod_by_name(const std::string& name) {
    return change_list(delete_by_name, name, check_kmod_is_add_by_name(name));
}
