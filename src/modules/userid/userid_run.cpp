// SPDX-License-Identifier: Apache-2.0
// The command line of `userid` and its help.
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/path_checks.h"
#include "framework/run_rungs.h"
#include "modules/userid/userid_module.h"
#include "service/paths.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},      {"file", required_argument, nullptr, 'f'},
    {"dir", required_argument, nullptr, 'd'}, {"package", required_argument, nullptr, 'P'},
    {"list", no_argument, nullptr, 'L'},      {nullptr, 0, nullptr, 0},
};
constexpr module_options options = {"hf:d:P:L", long_options, "无效的参数"};

// The values are tested as soon as their option is met.

run_end refuse_bad_file(const char* path) {
    if (path_is_exist(path) != 1) {
        print_line("路径[", path, "]不存在, 请输入正确的文件路径!");
        return -1;
    }
    if (refuse_other_kind(path_kind::file, path, path)) {
        return -1;
    }
    return std::nullopt;
}

/// A plain file that exists passes: the test asks whether the path exists or is a directory.
run_end refuse_bad_dir(const char* path) {
    if (path_is_exist(path) != 1 && path_is_dir(path) != 1) {
        print_line("路径[", path, "]不存在或者非目录, 请输入正确的路径!");
        return -1;
    }
    return std::nullopt;
}

run_end refuse_bad_pkg(COrvexUserid& module, const char* pkg) {
    if (!module.is_pkg_installed(pkg)) {
        print_line("软件包[", pkg, "]未安装, 不支持查询");
        return -1;
    }
    return std::nullopt;
}

}  // namespace

int COrvexUserid::run(int argc, char** argv) {
    if (argc < 3) {
        usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (const run_end end = refuse_without_rights(*this, first_arg)) {
        return *end;
    }
    const module_states states = read_states(module_3adm);
    if (const run_end end = refuse_while_off(*this, states, first_arg, "三权分立功能未开启!")) {
        return *end;
    }

    int action = action_none;
    std::string file_path;
    std::string dir_path;
    std::string pkg_name;
    const auto take = [&](int letter, const char* value) -> run_end {
        switch (letter) {
            case 'f':
                file_path = value;
                return refuse_bad_file(value);
            case 'd':
                dir_path = value;
                return refuse_bad_dir(value);
            default:
                pkg_name = value;
                return refuse_bad_pkg(*this, value);
        }
    };
    if (const run_end end = read_options(*this, argc, argv, options, action, take)) {
        return *end;
    }

    if (action == action_none) {
        usage();
        return 0;
    }
    if (!file_path.empty()) {
        return print_userid_by_file(file_path);
    }
    if (!dir_path.empty()) {
        return print_userid_by_dir(dir_path);
    }
    if (!pkg_name.empty()) {
        return print_userid_by_pkg(pkg_name);
    }
    return end_with_usage(*this, "请输入需要查询三员用户标记的文件、目录或者软件包!");
}

void COrvexUserid::usage() {
    print_line("用法: orvex_policy userid [-L] [-f|-d|-P] <path|dir|pkgname>");
    print_line("功能: 三员用户标识策略查询");
    print_line("参数:");
    print_line("   userid: 三员用户标识");
    print_line("   [Commands]");
    print_line("       -L, --list 查询策略");
    print_line("   [Options]");
    print_line("       -f, --file      文件路径");
    print_line("       -d, --dir       目录");
    print_line("       -P, --package   已安装的软件包名");
    print_line("       -h, --help      显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy userid -L -f /home/tavro/test.txt");
    print_line("   orvex_policy userid -L -d /home/secadm");
    print_line("   orvex_policy userid -L -P hesa-guard");
}
