// SPDX-License-Identifier: Apache-2.0
// The command line of `net` and its help.
#include <getopt.h>

#include <cstdint>
#include <iostream>
#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
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

constexpr module_ladder ladder = {
    .type = module_net,
    .off_line = "网络保护未开启!",
    .options = {.letters = "hf:P:v:AUDL", .long_options = long_options},
};

/// The operations of an add or a delete, and the line where the command line names no object.
struct change_operations {
    int (COrvexNet::*by_file)(const std::string& path);
    int (COrvexNet::*by_pkg)(const std::string& pkg);
    const char* nothing_named;
};
constexpr change_operations add_operations = {
    .by_file = &COrvexNet::add_net_policy_by_file,
    .by_pkg = &COrvexNet::add_net_policy_by_pkg,
    .nothing_named = "请输入需要添加联网管控策略的应用程序路径或者软件包名称!",
};
constexpr change_operations delete_operations = {
    .by_file = &COrvexNet::del_net_policy_by_file,
    .by_pkg = &COrvexNet::del_net_policy_by_pkg,
    // The doubled character is part of this text and of the update's.
    .nothing_named = "请输入需要删除联网管控控策略的应用程序路径或者软件包名称!",
};

class net_command final : public module_command {
public:
    explicit net_command(COrvexNet& module) : module_(module) {}

    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                file_path_ = value;
                break;
            case 'P':
                pkg_name_ = value;
                break;
            case 'v':
                value_ = value;
                break;
        }
        return std::nullopt;
    }

    int act(int action) override {
        if (action == action_list) {
            module_.list_net_policy();
            return 0;
        }
        if (action == action_update) {
            return update();
        }
        return action == action_add ? add() : change(delete_operations);
    }

private:
    int add() {
        if (!value_.empty()) {
            print_line("错误: 添加联网管控策略时, 无需设置-v选项, 默认拒绝!");
            return -1;
        }
        return change(add_operations);
    }

    /// The file goes before the package, here and at an update.
    int change(const change_operations& operations) {
        if (!file_path_.empty()) {
            return (module_.*operations.by_file)(file_path_);
        }
        if (!pkg_name_.empty()) {
            return (module_.*operations.by_pkg)(pkg_name_);
        }
        return end_with_usage(module_, operations.nothing_named);
    }

    /// The value is looked at before the object.
    int update() {
        if (value_.empty()) {
            return end_with_usage(module_, "请输入更新的状态值!");
        }
        if (value_ != "allow" && value_ != "deny") {
            // No newline: the help's first line follows on the same line.
            std::cout << "请输入正确的管控状态值!";
            module_.usage();
            return -1;
        }
        const std::int32_t status = value_ == "allow" ? netctl_allow : netctl_deny;
        if (!file_path_.empty()) {
            return module_.update_net_policy_by_file(file_path_, status);
        }
        if (!pkg_name_.empty()) {
            return module_.update_net_policy_by_pkg(pkg_name_, status);
        }
        return end_with_usage(module_, "请输入需要更新联网管控控策略的应用程序路径或者软件包名称!");
    }

    COrvexNet& module_;
    std::string file_path_;
    std::string pkg_name_;
    std::string value_;
};

}  // namespace

int COrvexNet::run(int argc, char** argv) {
    net_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
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
