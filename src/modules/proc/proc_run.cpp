// SPDX-License-Identifier: Apache-2.0
// The command line of `proc` and its help.
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/run_rungs.h"
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
constexpr module_options options = {"hf:p:d:P:eADL", long_options, "无效的参数"};

/// What the command line names. Only -f looks at the except flag; -p, -d and -P write the exception wherever they
/// stand.
class command_line {
public:
    run_end take(int letter, const char* value) {
        switch (letter) {
            case 'f':
                take_file(value);
                break;
            case 'p':
                // The exception too, on purpose: that is why -p stands before -e and its object.
                pid = value;
                take_exception(orvex_kind_dir, value);
                break;
            case 'd':
                take_exception(orvex_kind_dir, value);
                break;
            case 'P':
                take_exception(orvex_kind_pkg, value);
                break;
            default:
                is_except = true;
                break;
        }
        return std::nullopt;
    }

    std::string file;
    std::string pid;
    bool is_except = false;
    std::int32_t first_kind = 0;
    std::string first_object;
    // Stays 0, no kind at all, where nothing names an exception.
    std::int32_t except_kind = 0;
    std::string except_object;

private:
    void take_file(const char* value) {
        if (is_except) {
            take_exception(orvex_kind_file, value);
            return;
        }
        file = value;
        first_kind = orvex_kind_file;
        first_object = value;
    }

    void take_exception(std::int32_t kind, const char* value) {
        except_kind = kind;
        except_object = value;
    }
};

/// The path goes before the process id.
int set_policy(COrvexProc& module, const command_line& words, int action) {
    if (!words.file.empty()) {
        return module.set_proc_policy_by_file(words.file, action);
    }
    if (!words.pid.empty()) {
        return module.set_proc_policy_by_pid(words.pid, action);
    }
    return end_with_usage(module, "请输入需要设置进程防杀死策略的路径或者pid!");
}

/// The process id goes before the path, the other way round than without exceptions. Whether an exception was named at
/// all is not asked here.
int set_except_policy(COrvexProc& module, const command_line& words, int action) {
    if (!words.pid.empty()) {
        return module.set_proc_except_policy_by_pid(words.pid, words.except_kind, words.except_object, action);
    }
    if (!words.first_object.empty()) {
        return module.set_proc_except_policy(words.first_kind, words.first_object, words.except_kind,
                                             words.except_object, action);
    }
    return end_with_usage(module, "请输入需要设置例外程序的防杀死进程!");
}

}  // namespace

int COrvexProc::run(int argc, char** argv) {
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
    const module_states states = read_states(module_proc);
    if (const run_end end = switch_on_or_off(*this, module_proc, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = refuse_while_off(*this, states, first_arg, "进程防杀死未开启!")) {
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
        case action_delete:
            return words.is_except ? set_except_policy(*this, words, action) : set_policy(*this, words, action);
        case action_list:
            return list_proc_policy();
        default:
            usage();
            return 0;
    }
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
