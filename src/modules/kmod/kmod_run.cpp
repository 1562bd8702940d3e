// SPDX-License-Identifier: Apache-2.0
// The command line of `kmod`, its listing and its help.
#include <getopt.h>

#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "modules/kmod/kmod_module.h"
#include "service/kmodctl.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {"file", required_argument, nullptr, 'f'},
    {"name", required_argument, nullptr, 'n'},
    {"add", no_argument, nullptr, 'A'},
    {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},
    {nullptr, 0, nullptr, 0},
};

constexpr module_ladder ladder = {
    .type = module_kmod,
    .obeys_secret_scene = true,
    .off_line = "内核模块防卸载未开启!",
    .options = {.letters = "hf:n:ADL", .long_options = long_options},
};

/// The operations of a change, and the line where the command line names nothing to change.
struct change_operations {
    int (COrvexKmod::*by_file)(const std::string& path);
    int (COrvexKmod::*by_name)(const std::string& name);
    const char* nothing_named;
};
constexpr change_operations add_operations = {
    .by_file = &COrvexKmod::add_kmod_by_file,
    .by_name = &COrvexKmod::add_kmod_by_name,
    .nothing_named = "请输入需要添加防卸载的内核模块文件路径或者内核模块名称!",
};
constexpr change_operations delete_operations = {
    .by_file = &COrvexKmod::del_kmod_by_file,
    .by_name = &COrvexKmod::del_kmod_by_name,
    .nothing_named = "请输入需要删除防卸载的内核模块文件路径或者内核模块名称!",
};

int list_policy() {
    const owned_list names(orvex_scene_kmodctl_get_policy);
    for (const char* name : names) {
        // A null name is printed like the others: the stream fails at it, and nothing follows.
        print_line("模块名称: ", name, ", 防卸载保护: 开");
    }
    return 0;
}

class kmod_command final : public module_command {
public:
    explicit kmod_command(COrvexKmod& module) : module_(module) {}

    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                // A file is tested as soon as it is met, before any option behind it.
                if (refuse_missing(path_kind::file, value) || refuse_other_kind(path_kind::file, value, value)) {
                    return -1;
                }
                file_path_ = value;
                break;
            case 'n':
                kmod_name_ = value;
                break;
        }
        return std::nullopt;
    }

    int act(int action) override {
        if (action == action_list) {
            return list_policy();
        }
        return change(action == action_add ? add_operations : delete_operations);
    }

private:
    /// The file goes before the name.
    int change(const change_operations& operations) {
        if (!file_path_.empty()) {
            return (module_.*operations.by_file)(file_path_);
        }
        if (!kmod_name_.empty()) {
            return (module_.*operations.by_name)(kmod_name_);
        }
        return end_with_usage(module_, operations.nothing_named);
    }

    COrvexKmod& module_;
    std::string file_path_;
    std::string kmod_name_;
};

}  // namespace

int COrvexKmod::run(int argc, char** argv) {
    kmod_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
}

void COrvexKmod::usage() {
    print_line("用法: orvex_policy kmod [on|off]");
    print_line("      orvex_policy kmod [-A|-D] [-f|-n] <path|kmodName>");
    print_line("      orvex_policy kmod [-L]");
    print_line("功能: 内核模块防卸载策略配置");
    print_line("参数:");
    print_line("   kmod: 内核模块防卸载");
    print_line("   [status]");
    print_line("       on  开启内核模块防卸载");
    print_line("       off 关闭内核模块防卸载");
    print_line("   [Commands]");
    print_line("       -A, --add 添加策略");
    print_line("       -D, --delete 删除策略");
    print_line("       -L, --list 查询策略");
    print_line("   [Options]");
    print_line("       -f, --file 内核模块文件路径");
    print_line("       -n, --name 内核模块名(可通过lsmod查看)");
    print_line("       -h, --help 显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy kmod -A -f /home/tavro/test.ko");
    print_line("   orvex_policy kmod -D -f /home/tavro/test.ko");
    print_line("   orvex_policy kmod -L");
}
