// SPDX-License-Identifier: Apache-2.0
#include "modules/box/box_module.h"

#include <getopt.h>

#include "framework/ladder.h"
#include "framework/output.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

constexpr module_ladder ladder = {
    .type = module_box,
    .has_policies = false,
    .options = {.letters = "h", .long_options = long_options},
};

}  // namespace

int COrvexBox::run(int argc, char** argv) {
    // Whatever else was typed brings the help; only an unknown option is a fault.
    module_command nothing_of_its_own;
    return climb_ladder(*this, ladder, nothing_of_its_own, argc, argv);
}

void COrvexBox::usage() {
    print_line("用法: orvex_policy box [on|off]");
    print_line("功能: 文件保护箱开关设置");
    print_line("参数:");
    print_line("   box: 文件保护箱");
    print_line("   [status]");
    print_line("       on  开启文件保护箱");
    print_line("       off 关闭文件保护箱");
    print_line("   [Options]");
    print_line("       -h, --help 显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy box on/off");
}
