// SPDX-License-Identifier: Apache-2.0
// The command line of `exec` and its help.
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/run_rungs.h"
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
constexpr module_options options = {"hf:d:P:eADL", long_options, "无效的参数"};

/// What the command line names. Of the three objects the first one given counts, in the order of the members.
struct command_line {
    std::string file_path;
    std::string dir_path;
    std::string pkg_name;
    bool is_except = false;
    bool is_tampered = false;

    run_end take(int letter, const char* value) {
        switch (letter) {
            case 'f':
                file_path = value;
                break;
            case 'd':
                dir_path = value;
                break;
            case 'P':
                pkg_name = value;
                break;
            case 'e':
                is_except = true;
                break;
            default:
                is_tampered = true;
                break;
        }
        return std::nullopt;
    }
};

/// Serves `exec on` and `exec off`. Switching off takes script control along, where it did not fail.
run_end switch_exec(COrvexExec& module, int argc, const std::string& first_arg, int framework) {
    const run_end end = switch_on_or_off(module, module_exec, argc, first_arg, framework);
    if (!end || first_arg == "on" || framework == orvex_status_disabled || *end == -1) {
        return end;
    }
    return module.set_module_status(module_exec_script, orvex_module_off);
}

/// Serves `exec script on` and `exec script off`; any other word goes on as if it had not been "script".
run_end switch_script(COrvexExec& module, int argc, char** argv, const module_states& states) {
    if (argc != 4 || std::string(argv[2]) != "script") {
        return std::nullopt;
    }
    const std::string word = argv[3];
    if (word == "on") {
        if (!states.is_module_on()) {
            print_line("请先开启执行控制, 再设置脚本管控状态!");
            return 0;
        }
        return module.set_module_status(module_exec_script, orvex_module_on);
    }
    if (word != "off") {
        return std::nullopt;
    }
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

int set_policy(COrvexExec& module, const command_line& words, int action) {
    if (!words.file_path.empty()) {
        return module.set_exec_policy_by_file(words.file_path, action);
    }
    if (!words.dir_path.empty()) {
        return module.set_exec_policy_by_dir(words.dir_path, action);
    }
    if (!words.pkg_name.empty()) {
        return module.set_exec_policy_by_pkg(words.pkg_name, action);
    }
    return end_with_usage(module, "设置执行管控可选文件、目录或者软件包, 请选择其中一种!");
}

int set_except_policy(COrvexExec& module, const command_line& words, int action) {
    if (!words.file_path.empty()) {
        return module.set_exec_except_policy_by_file(words.file_path, action);
    }
    if (!words.dir_path.empty()) {
        return module.set_exec_except_policy_by_dir(words.dir_path, action);
    }
    if (!words.pkg_name.empty()) {
        return module.set_exec_except_policy_by_pkg(words.pkg_name, action);
    }
    return end_with_usage(module, "设置例外程序可选文件、目录或者软件包, 请选择其中一种!");
}

int list_policy(COrvexExec& module, const command_line& words) {
    if (words.is_tampered) {
        return module.get_all_tampered_file();
    }
    if (!words.file_path.empty()) {
        return module.get_whlist_status_by_file(words.file_path);
    }
    if (!words.dir_path.empty()) {
        return module.get_whlist_status_by_dir(words.dir_path);
    }
    if (!words.pkg_name.empty()) {
        return module.get_whlist_status_by_pkg(words.pkg_name);
    }
    return module.get_all_except_policy();
}

}  // namespace

int COrvexExec::run(int argc, char** argv) {
    if (argc < 3) {
        usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (const run_end end = refuse_without_rights(*this, first_arg)) {
        return *end;
    }
    const module_states states = read_states(module_exec);
    if (const run_end end = switch_exec(*this, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = switch_script(*this, argc, argv, states)) {
        return *end;
    }
    // Another wording than that of `exec script off`; both are meant.
    if (const run_end end = refuse_while_off(*this, states, first_arg, "执行管控未开启!")) {
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
            return list_policy(*this, words);
        default:
            usage();
            return 0;
    }
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
