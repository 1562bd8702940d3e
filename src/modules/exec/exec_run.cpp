// SPDX-License-Identifier: Apache-2.0
// The command line of `exec` and its help.
#include <getopt.h>

#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
#include "modules/exec/exec_module.h"
#include "service/status.h"

namespace {

/// What `--tampered` is told apart by: it has no letter.
constexpr int tampered_option = 1;

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {"file", required_argument, nullptr, 'f'},
    {"dir", required_argument, nullptr, 'd'},
    {"package", required_argument, nullptr, 'P'},
    // On purpose: -e stands alone, --except takes a value that nothing looks at.
    {"except", required_argument, nullptr, 'e'},
    {"tampered", no_argument, nullptr, tampered_option},
    {"add", no_argument, nullptr, 'A'},
    {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},
    {nullptr, 0, nullptr, 0},
};

constexpr module_ladder ladder = {
    .type = module_exec,
    .goes_off_too = module_exec_script,
    // Another wording than that of `exec script off`; both are meant.
    .off_line = "执行管控未开启!",
    .options = {.letters = "hf:d:P:eADL", .long_options = long_options},
};

/// The operations of a change, and the line where the command line names nothing to change.
struct change_operations {
    int (COrvexExec::*by_file)(const std::string& paths, const int& action);
    int (COrvexExec::*by_dir)(const std::string& paths, const int& action);
    int (COrvexExec::*by_pkg)(const std::string& pkgs, const int& action);
    const char* nothing_named;
};
constexpr change_operations whitelist_operations = {
    .by_file = &COrvexExec::set_exec_policy_by_file,
    .by_dir = &COrvexExec::set_exec_policy_by_dir,
    .by_pkg = &COrvexExec::set_exec_policy_by_pkg,
    .nothing_named = "设置执行管控可选文件、目录或者软件包, 请选择其中一种!",
};
constexpr change_operations exception_operations = {
    .by_file = &COrvexExec::set_exec_except_policy_by_file,
    .by_dir = &COrvexExec::set_exec_except_policy_by_dir,
    .by_pkg = &COrvexExec::set_exec_except_policy_by_pkg,
    .nothing_named = "设置例外程序可选文件、目录或者软件包, 请选择其中一种!",
};

int switch_script_on(COrvexExec& module, const module_states& states) {
    if (!states.is_module_on()) {
        print_line("请先开启执行控制, 再设置脚本管控状态!");
        return 0;
    }
    return module.set_module_status(module_exec_script, orvex_module_on);
}

int switch_script_off(COrvexExec& module, const module_states& states) {
    if (states.framework == orvex_status_disabled) {
        print_line("orvex未开启!");
        return 0;
    }
    if (!states.is_module_on()) {
        print_line("执行控制未开启!");
        return 0;
    }
    return module.set_module_status(module_exec_script, orvex_module_off);
}

class exec_command final : public module_command {
public:
    explicit exec_command(COrvexExec& module) : module_(module) {}

    /// Serves `exec script on` and `exec script off`; any other word goes on as if it had not been "script".
    run_end serve_words(int argc, char** argv, const module_states& states) override {
        if (argc != 4 || std::string(argv[2]) != "script") {
            return std::nullopt;
        }
        const std::string word = argv[3];
        if (word == "on") {
            return switch_script_on(module_, states);
        }
        return word == "off" ? run_end(switch_script_off(module_, states)) : std::nullopt;
    }

    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                file_path_ = value;
                break;
            case 'd':
                dir_path_ = value;
                break;
            case 'P':
                pkg_name_ = value;
                break;
            case 'e':
                is_except_ = true;
                break;
            case tampered_option:
                is_tampered_ = true;
                break;
        }
        return std::nullopt;
    }

    int act(int action) override {
        if (action == action_list) {
            return list();
        }
        return change(is_except_ ? exception_operations : whitelist_operations, action);
    }

private:
    // Of the three objects the first one given counts, in the order of the members.

    int change(const change_operations& operations, int action) {
        if (!file_path_.empty()) {
            return (module_.*operations.by_file)(file_path_, action);
        }
        if (!dir_path_.empty()) {
            return (module_.*operations.by_dir)(dir_path_, action);
        }
        if (!pkg_name_.empty()) {
            return (module_.*operations.by_pkg)(pkg_name_, action);
        }
        return end_with_usage(module_, operations.nothing_named);
    }

    int list() {
        if (is_tampered_) {
            return module_.get_all_tampered_file();
        }
        if (!file_path_.empty()) {
            return module_.get_whlist_status_by_file(file_path_);
        }
        if (!dir_path_.empty()) {
            return module_.get_whlist_status_by_dir(dir_path_);
        }
        if (!pkg_name_.empty()) {
            return module_.get_whlist_status_by_pkg(pkg_name_);
        }
        return module_.get_all_except_policy();
    }

    COrvexExec& module_;
    std::string file_path_;
    std::string dir_path_;
    std::string pkg_name_;
    bool is_except_ = false;
    bool is_tampered_ = false;
};

}  // namespace

int COrvexExec::run(int argc, char** argv) {
    exec_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
}

void COrvexExec::usage() {
    print_line("用法: orvex_policy exec [on|off]");
    print_line("      orvex_policy exec script [on|off] 脚本管控开关设置");
    print_line("      orvex_policy exec [-A|-D] [-f|-d|-P] <path|dir|pkgname>");
    print_line("      orvex_policy exec [-A|-D] [-e] [-f|-d|-P] <path|dir|pkgname>");
    print_line("      orvex_policy exec [-L] [--tampered]");
    print_line("      orvex_policy exec [-L] [-f|-d|-P] <path|dir|pkgname>");
    print_line("功能: 执行控制策略配置");
    print_line("参数:");
    print_line("   exec: 执行控制");
    print_line("   [status]");
    print_line("       exec");
    print_line("           on  开启执行控制");
    print_line("           off 关闭执行控制");
    print_line("       exec script");
    print_line("           on  开启脚本管控");
    print_line("           off 关闭脚本管控");
    print_line("   [Commands]");
    print_line("       -A, --add    添加策略");
    print_line("       -D, --delete 删除策略");
    print_line("       -L, --list   查询策略");
    print_line("   [Options]");
    print_line("       -e, --except 例外程序, 不做执行管控");
    print_line("       -f, --file 文件路径");
    print_line("       -d, --dir  目录路径");
    print_line("       -P, --package 已安装的软件包名称");
    print_line("       --tampered 查询已被篡改的程序");
    print_line("       -h, --help 显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy exec -A -f /home/tavro/test.sh");
    print_line("   orvex_policy exec -A -d /home/tavro/test/");
    print_line("   orvex_policy exec -A -P hesa-guard");
    print_line("   orvex_policy exec -D -f /home/tavro/test.sh");
    print_line("   orvex_policy exec -A -e -f /home/tavro/test.sh");
    print_line("   orvex_policy exec -D -e -d /home/tavro/test/");
    print_line("   orvex_policy exec -L");
    print_line("   orvex_policy exec -L --tampered");
    print_line("   orvex_policy exec -L -f /home/tavro/test.sh");
}
