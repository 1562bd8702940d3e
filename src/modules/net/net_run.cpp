// SPDX-License-Identifier: Apache-2.0
// The command line of `net` and its help.
#include <iostream>

#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/run_rungs.h"
#include "modules/net/net_module.h"
#include "service/netctl.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {"file", required_argument, nullptr, 'f'},
    // Misspelt on purpose: the help says --package, which is an unknown option.
    {"pakcage", required_argument, nullptr, 'P'},
    {"value", required_argument, nullptr, 'v'},
    {"add", no_argument, nullptr, 'A'},
    {"update", no_argument, nullptr, 'U'},
    {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},
    {nullptr, 0, nullptr, 0},
};
constexpr module_options options = {"hf:P:v:AUDL", long_options, "无效的参数"};

/// What the command line names. The file goes before the package.
struct command_line {
    std::string file_path;
    std::string pkg_name;
    std::string value;

    run_end take(int letter, const char* text) {
        switch (letter) {
            case 'f':
                file_path = text;
                break;
            case 'P':
                pkg_name = text;
                break;
            default:
                value = text;
                break;
        }
        return std::nullopt;
    }
};

int add_policy(COrvexNet& module, const command_line& words) {
    if (!words.value.empty()) {
        print_line("错误: 添加联网管控策略时, 无需设置-v选项, 默认拒绝!");
        return -1;
    }
    if (!words.file_path.empty()) {
        return module.add_net_policy_by_file(words.file_path);
    }
    if (!words.pkg_name.empty()) {
        return module.add_net_policy_by_pkg(words.pkg_name);
    }
    return end_with_usage(module, "请输入需要添加联网管控策略的应用程序路径或者软件包名称!");
}

int update_policy(COrvexNet& module, const command_line& words) {
    if (words.value.empty()) {
        return end_with_usage(module, "请输入更新的状态值!");
    }
    if (words.value != "allow" && words.value != "deny") {
        // No newline: the help's first line follows on the same line.
        std::cout << "请输入正确的管控状态值!";
        module.usage();
        return -1;
    }
    const std::int32_t status = words.value == "allow" ? netctl_allow : netctl_deny;
    if (!words.file_path.empty()) {
        return module.update_net_policy_by_file(words.file_path, status);
    }
    if (!words.pkg_name.empty()) {
        return module.update_net_policy_by_pkg(words.pkg_name, status);
    }
    // The doubled character is part of this text and of the delete's.
    return end_with_usage(module, "请输入需要更新联网管控控策略的应用程序路径或者软件包名称!");
}

int delete_policy(COrvexNet& module, const command_line& words) {
    if (!words.file_path.empty()) {
        return module.del_net_policy_by_file(words.file_path);
    }
    if (!words.pkg_name.empty()) {
        return module.del_net_policy_by_pkg(words.pkg_name);
    }
    return end_with_usage(module, "请输入需要删除联网管控控策略的应用程序路径或者软件包名称!");
}

}  // namespace

int COrvexNet::run(int argc, char** argv) {
    if (argc < 3) {
        usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (const run_end end = refuse_without_rights(*this, first_arg)) {
        return *end;
    }
    const module_states states = read_states(module_net);
    if (const run_end end = switch_on_or_off(*this, module_net, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = refuse_while_off(*this, states, first_arg, "网络保护未开启!")) {
        return *end;
    }

    int action = action_none;
    command_line words;
    const auto take = [&words](int letter, const char* text) { return words.take(letter, text); };
    if (const run_end end = read_options(*this, argc, argv, options, action, take)) {
        return *end;
    }
    switch (action) {
        case action_add:
            return add_policy(*this, words);
        case action_update:
            return update_policy(*this, words);
        case action_delete:
            return delete_policy(*this, words);
        case action_list:
            list_net_policy();
            return 0;
        default:
            usage();
            return 0;
    }
}

void COrvexNet::usage() {
    print_line("用法: orvex_policy net [on|off]");
    print_line("      orvex_policy net [-A|-D] [-f|-P] <path|pkgName>");
    print_line("      orvex_policy net [-U] [-f|-P] <path|pkgName> [-v] <value>");
    print_line("      orvex_policy net [-L]");
    print_line("功能: 应用程序联网控制策略配置，以软件包维度管控是否允许联网。");
    print_line("      若应用程序属于软件包，则会设置对应软件包的策略。");
    print_line("参数:");
    print_line("   net: 应用程序联网控制");
    print_line("   [status]");
    print_line("       off     关闭应用程序联网控制");
    print_line("       on      开启应用程序联网控制");
    print_line("   [Commands]");
    print_line("       -A, --add 添加策略, 默认拒绝联网");
    print_line("       -U, --update 更新策略");
    print_line("       -D, --delete 删除策略");
    print_line("       -L, --list 查询策略");
    print_line("   [Options]");
    print_line("       -f, --file    应用程序路径");
    print_line("       -P, --package 已安装的软件包名称");
    print_line("       -v, --value   设置是否允许联网, 只支持-U操作");
    print_line("           allow: 允许联网");
    print_line("           deny:  拒绝联网");
    print_line("       -h, --help    显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy net -A -f /usr/sbin/sshd");
    print_line("   orvex_policy net -U -f /usr/sbin/sshd -v deny");
    print_line("   orvex_policy net -D -f /usr/sbin/sshd");
    print_line("   orvex_policy net -A -P qaxbrowser-safe-stable");
    print_line("   orvex_policy net -L");
}
