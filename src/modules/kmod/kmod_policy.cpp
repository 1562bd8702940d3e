// SPDX-License-Identifier: Apache-2.0
// The list of protected modules: asking it and changing it.
#include "framework/output.h"
#include "framework/path_checks.h"
#include "modules/kmod/kmod_module.h"
#include "service/kmodctl.h"
#include "service/log.h"

namespace {

/// The words and the call of one way to change the list.
struct list_change {
    /// Whether the module is on the list where nothing is left to do.
    bool is_listed_when_done;
    const char* done_head;
    const char* done_tail;
    int (*change)(const char* text);
    const char* failure_head;
    const char* function;
    const char* log_format;
};

constexpr list_change add_by_file = {
    true,
    "文件[",
    "]已添加内核模块防卸载, 无需重复添加!",
    orvex_scene_kmodctl_add_by_path,
    "添加内核模块[",
    "add_kmod_by_file",
    "add kmod failed, file=%s, ret=%d",
};
constexpr list_change add_by_name = {
    true,
    "模块[",
    "]已添加内核模块防卸载, 无需重复添加!",
    orvex_scene_kmodctl_add_by_name,
    "添加内核模块[",
    "add_kmod_by_name",
    "add kmod failed, name=%s, ret=%d",
};
constexpr list_change delete_by_file = {
    false,
    "文件[",
    "]未添加内核模块防卸载, 无需删除!",
    orvex_scene_kmodctl_remove_by_path,
    "删除内核模块[",
    "del_kmod_by_file",
    "del kmod failed, file=%s, ret=%d",
};
constexpr list_change delete_by_name = {
    false,
    "模块[",
    "]未添加内核模块防卸载, 无需删除!",
    orvex_scene_kmodctl_remove_by_name,
    "删除内核模块[",
    "del_kmod_by_name",
    "del kmod failed, name=%s, ret=%d",
};

/// Changes the list for `text`, a path or a name just as the user typed it.
int change_list(const list_change& how, const std::string& text, bool is_listed) {
    if (is_listed == how.is_listed_when_done) {
        print_line(how.done_head, text, how.done_tail);
        return 0;
    }
    const int ret = how.change(text.c_str());
    if (ret == 0) {
        return 0;
    }
    print_line(how.failure_head, text, "]防卸载失败!");
    orvex_log(orvex_log_level_failure, "kmod", how.function, how.log_format, text.c_str(), ret);
    return -1;
}

}  // namespace

bool COrvexKmod::check_kmod_is_add_by_name(const std::string& name) {
    return owned_list(orvex_scene_kmodctl_get_policy).contains(name);
}

bool COrvexKmod::check_kmod_is_add_by_file(const std::string& path) {
    const std::optional<std::string> absolute_path = take_text(get_absolute_path_of_file(path));
    if (!absolute_path) {
        return false;
    }
    const owned_text name(orvex_scene_get_module_name_from_ko_path(absolute_path->c_str()));
    if (name == nullptr) {
        print_line("通过内核模块文件[", path, "]获取模块名称失败!");
        orvex_log(orvex_log_level_failure, "kmod", "check_kmod_is_add_by_file",
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
