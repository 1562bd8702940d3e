// SPDX-License-Identifier: Apache-2.0
// The command line of `userid` and its help.
#include <getopt.h>

#include <optional>
#include <string>

#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/path_checks.h"
#include "modules/userid/userid_module.h"
#include "service/paths.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},      {"file", required_argument, nullptr, 'f'},
    {"dir", required_argument, nullptr, 'd'}, {"package", required_argument, nullptr, 'P'},
    {"list", no_argument, nullptr, 'L'},      {nullptr, 0, nullptr, 0},
};

constexpr module_ladder ladder = {
    .type = module_3adm,
    .has_switch = false,
    .off_line = "三权分立功能未开启!",
    .options = {.letters = "hf:d:P:L", .long_options = long_options},
};

bool refuse_bad_file(const char* path) {
    if (path_is_exist(path) != 1) {
        print_line("路径[", path, "]不存在, 请输入正确的文件路径!");
        return true;
    }
    return refuse_other_kind(path_kind::file, path, path);
}

/// A plain file that exists passes: the test asks whether the path exists or is a directory.
bool refuse_bad_dir(const char* path) {
    if (path_is_exist(path) == 1 || path_is_dir(path) == 1) {
        return false;
    }
    print_line("路径[", path, "]不存在或者非目录, 请输入正确的路径!");
    return true;
}

bool refuse_bad_pkg(COrvexUserid& module, const char* pkg) {
    if (module.is_pkg_installed(pkg)) {
        return false;
    }
    print_line("软件包[", pkg, "]未安装, 不支持查询");
    return true;
}

class userid_command final : public module_command {
public:
    explicit userid_command(COrvexUserid& module) : module_(module) {}

    /// The values are tested as soon as their option is met.
    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                file_path_ = value;
                return refuse_bad_file(value) ? run_end(-1) : std::nullopt;
            case 'd':
                dir_path_ = value;
                return refuse_bad_dir(value) ? run_end(-1) : std::nullopt;
            case 'P':
                pkg_name_ = value;
                return refuse_bad_pkg(module_, value) ? run_end(-1) : std::nullopt;
        }
        return std::nullopt;
    }

    /// The listing is the only command.
    int act(int /*action*/) override {
        if (!file_path_.empty()) {
            return module_.print_userid_by_file(file_path_);
        }
        if (!dir_path_.empty()) {
            return module_.print_userid_by_dir(dir_path_);
        }
        if (!pkg_name_.empty()) {
            return module_.print_userid_by_pkg(pkg_name_);
        }
        return end_with_usage(module_, "请输入需要查询三员用户标记的文件、目录或者软件包!");
    }

private:
    COrvexUserid& module_;
    std::string file_path_;
    std::string dir_path_;
    std::string pkg_name_;
};

}  // namespace

int COrvexUserid::run(int argc, char** argv) {
    userid_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
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
