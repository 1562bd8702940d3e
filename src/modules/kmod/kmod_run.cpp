// SPDX-License-Identifier: Apache-2.0
// The command line of `kmod`, its listing and its help.
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/owned.h"
#include "framework/path_checks.h"
#include "framework/run_rungs.h"
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
constexpr module_options options = {"hf:n:ADL", long_options, "无效的参数"};

/// What the command line names. The file goes before the name.
struct command_line {
    std::string file_path;
    std::string kmod_name;

    run_end take(int letter, const char* value) {
        if (letter == 'n') {
            kmod_name = value;
            return std::nullopt;
        }
        // A file is tested as soon as it is met, before any option behind it.
        if (refuse_missing(path_kind::file, value) || refuse_other_kind(path_kind::file, value, value)) {
            return -1;
        }
        file_path = value;
        return std::nullopt;
    }
};

int add_policy(COrvexKmod& module, const command_line& words) {
    if (!words.file_path.empty()) {
        return module.add_kmod_by_file(words.file_path);
    }
    if (!words.kmod_name.empty()) {
        return module.add_kmod_by_name(words.kmod_name);
    }
    return end_with_usage(module, "请输入需要添加防卸载的内核模块文件路径或者内核模块名称!");
}

int delete_policy(COrvexKmod& module, const command_line& words) {
    if (!words.file_path.empty()) {
        return module.del_kmod_by_file(words.file_path);
    }
    if (!words.kmod_name.empty()) {
        return module.del_kmod_by_name(words.kmod_name);
    }
    return end_with_usage(module, "请输入需要删除防卸载的内核模块文件路径或者内核模块名称!");
}

int list_policy() {
    const owned_list names(orvex_scene_kmodctl_get_policy);
    for (const char* name : names) {
        // A null name is printed like the others: the stream fails at it, and nothing follows.
        print_line("模块名称: ", name, ", 防卸载保护: 开");
    }
    return 0;
}

}  // namespace

int COrvexKmod::run(int argc, char** argv) {
    if (const run_end end = refuse_in_secret_scene()) {
        return *end;
    }
    if (argc < 3) {
        usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (const run_end end = refuse_without_rights(*this, first_arg)) {
        return *end;
    }
    const module_states states = read_states(module_kmod);
    if (const run_end end = switch_on_or_off(*this, module_kmod, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = refuse_while_off(*this, states, first_arg, "内核模块防卸载未开启!")) {
        return *end;
    }

    int action = action_none;
    command_line words;
    const auto take = [&words](int letter, const char* value) { return words.take(letter, value); };
    if (const run_end end = read_options(*this, argc, argv, options, action, take)) {
        return *end;
    }
    switch (action) {
        case action_add:
            return add_policy(*this, words);
        case action_delete:
            return delete_policy(*this, words);
        case action_list:
            return list_policy();
        default:
            usage();
            return 0;
    }
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
