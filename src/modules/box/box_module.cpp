// SPDX-License-Identifier: Apache-2.0
#include "modules/box/box_module.h"

#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/run_rungs.h"
#include "service/status.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};
constexpr module_options options = {"h", long_options, "无效的参数"};

}  // namespace

int COrvexBox::run(int argc, char** argv) {
    // Asked for on every path, the bare help too.
    const int framework = orvex_scene_getstatus();
    if (argc < 3) {
        usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (const run_end end = refuse_without_rights_but_help(*this, first_arg)) {
        return *end;
    }
    if (const run_end end = switch_on_or_off(*this, module_box, argc, first_arg, framework)) {
        return *end;
    }
    // Whatever else was typed brings the help; only an unknown option is a fault.
    int action = action_none;
    const auto take_nothing = [](int, const char*) { return run_end(); };
    if (const run_end end = read_options(*this, argc, argv, options, action, take_nothing)) {
        return *end;
    }
    usage();
    return 0;
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
