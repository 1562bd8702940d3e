// SPDX-License-Identifier: Apache-2.0
// The command line of `proc` and its help.
#include <getopt.h>

#include <cstdint>
#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
#include "modules/proc/proc_module.h"
#include "service/object_kind.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {"file", required_argument, nullptr, 'f'},
    {"pid", required_argument, nullptr, 'p'},
    {"dir", required_argument, nullptr, 'd'},
    {"package", required_argument, nullptr, 'P'},
    // On purpose: -e stands alone, --except takes a value that nothing looks at.
    {"except", required_argument, nullptr, 'e'},
    {"add", no_argument, nullptr, 'A'},
    {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},
    {nullptr, 0, nullptr, 0},
};

constexpr module_ladder ladder = {
    .type = module_proc,
    .obeys_secret_scene = true,
    .off_line = "进程防杀死未开启!",
    .options = {.letters = "hf:p:d:P:eADL", .long_options = long_options},
};

/// Only -f looks at the except flag; -p, -d and -P write the exception wherever they stand.
class proc_command final : public module_command {
public:
    explicit proc_command(COrvexProc& module) : module_(module) {}

    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                take_file(value);
                break;
            case 'p':
                // The exception too, on purpose: that is why -p stands before -e and its object.
                pid_ = value;
                take_exception(orvex_kind_dir, value);
                break;
            case 'd':
                take_exception(orvex_kind_dir, value);
                break;
            case 'P':
                take_exception(orvex_kind_pkg, value);
                break;
            case 'e':
                is_except_ = true;
                break;
        }
        return std::nullopt;
    }

    int act(int action) override {
        if (action == action_list) {
            return module_.list_proc_policy();
        }
        return is_except_ ? change_exceptions_of_program(action) : change_protection_of_programs(action);
    }

private:
    void take_file(const char* value) {
        if (is_except_) {
            take_exception(orvex_kind_file, value);
            return;
        }
        file_ = value;
        first_kind_ = orvex_kind_file;
        first_object_ = value;
    }

    void take_exception(std::int32_t kind, const char* value) {
        except_kind_ = kind;
        except_object_ = value;
    }

    /// The path goes before the process id.
    int change_protection_of_programs(int action) {
        if (!file_.empty()) {
            return module_.set_proc_policy_by_file(file_, action);
        }
        if (!pid_.empty()) {
            return module_.set_proc_policy_by_pid(pid_, action);
        }
        return end_with_usage(module_, "请输入需要设置进程防杀死策略的路径或者pid!");
    }

    /// The process id goes before the path, the other way round than without exceptions. Whether an exception was named
    /// at all is not asked here.
    int change_exceptions_of_program(int action) {
        if (!pid_.empty()) {
            return module_.set_proc_except_policy_by_pid(pid_, except_kind_, except_object_, action);
        }
        if (!first_object_.empty()) {
            return module_.set_proc_except_policy(first_kind_, first_object_, except_kind_, except_object_, action);
        }
        return end_with_usage(module_, "请输入需要设置例外程序的防杀死进程!");
    }

    COrvexProc& module_;
    std::string file_;
    std::string pid_;
    bool is_except_ = false;
    std::int32_t first_kind_ = 0;
    std::string first_object_;
    // Stays 0, no kind at all, where nothing names an exception.
    std::int32_t except_kind_ = 0;
    std::string except_object_;
};

}  // namespace

int COrvexProc::run(int argc, char** argv) {
    proc_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
}

void COrvexProc::usage() {
    print_line("用法: orvex_policy proc [on|off]");
    print_line("      orvex_policy proc [-A|-D] [-f|-p] <path|pid>");
    print_line("      orvex_policy proc [-A|-D] [-f|-p] <path|pid> [-e] [-f|-d|-P] <path|dir|pkgname>");
    print_line("      orvex_policy proc [-L]");
    print_line("功能: 进程防杀死策略配置");
    print_line("参数:");
    print_line("   proc: 进程防杀死");
    print_line("   [status]");
    print_line("       on  开启进程防杀死");
    print_line("       off 关闭进程防杀死");
    print_line("   [Commands]");
    print_line("       -A, --add    添加策略");
    print_line("       -D, --delete 删除策略");
    print_line("       -L, --list   查询策略");
    print_line("   [Options]");
    print_line("       -e, --except  例外程序, 表示可杀死保护进程");
    print_line("       -f, --file    文件路径");
    print_line("       -p, --pid     进程号");
    print_line("       -d, --dir     目录路径");
    print_line("       -P, --package 已安装的软件包名称");
    print_line("       -h, --help    显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer");
    print_line("   orvex_policy proc -A -p 32323");
    print_line("   orvex_policy proc -D -f /usr/sbin/tavro-log-viewer");
    print_line("   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer -e -f /usr/bin/kill");
    print_line("   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer -e -d /usr/bin/");
    print_line("   orvex_policy proc -D -f /usr/sbin/tavro-log-viewer -e -P hesa-guard");
    print_line("   orvex_policy proc -D -p 32323 -e -d /usr/bin/");
    print_line("   orvex_policy proc -L");
}
