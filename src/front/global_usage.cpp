// SPDX-License-Identifier: Apache-2.0
#include "front/global_usage.h"

#include "framework/output.h"

void print_global_usage() {
    print_line("用法: orvex_policy <module> -h");
    print_line("      orvex_policy [enable|disable|permissive]");
    print_line("      orvex_policy status");
    print_line("功能: 获取安全模块策略帮助信息");
    print_line("参数:");
    print_line("   -h, --help 显示帮助信息");
    print_line("   module: 安全模块");
    print_line("       exec:    执行控制");
    print_line("       net:     应用程序联网控制");
    print_line("       file:    文件只读保护");
    print_line("       proc:    进程防杀死");
    print_line("       kmod:    内核模块防卸载");
    print_line("       userid:  三员用户标识");
    print_line("       box:     文件保护箱");
    print_line("   enable:  开启所有塔沃安全功能");
    print_line("   disable: 关闭所有塔沃安全功能");
    print_line("   permissive: 宽松模式, 只记录日志");
    print_line("   status: 显示所有塔沃安全功能状态");
    print_line("示例:");
    print_line("   orvex_policy exec -h");
    print_line("   orvex_policy enable");
    print_line("   orvex_policy status");
}
