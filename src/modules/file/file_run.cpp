// SPDX-License-Identifier: Apache-2.0
// The command line of `file` and its help.
#include "framework/option_loop.h"
#include "framework/output.h"
#include "framework/run_rungs.h"
#include "modules/file/file_module.h"
#include "service/object_kind.h"

namespace {

constexpr option long_options[] = {
    {"help", no_argument, nullptr, 'h'},
    {"file", required_argument, nullptr, 'f'},
    {"dir", required_argument, nullptr, 'd'},
    {"package", required_argument, nullptr, 'P'},
    // On purpose: -e stands alone, --except takes a value that nothing looks at.
    {"except", required_argument, nullptr, 'e'},
    {"add", no_argument, nullptr, 'A'},
    {"delete", no_argument, nullptr, 'D'},
    {"list", no_argument, nullptr, 'L'},
    {nullptr, 0, nullptr, 0},
};
// The "!" is this module's own.
constexpr module_options options = {"hf:d:P:eADL", long_options, "无效的参数!"};

/// What the command line names. What stands before -e is the protected object, what stands behind it the exception.
class command_line {
public:
    run_end take(int letter, const char* value) {
        switch (letter) {
            case 'f':
                take_object(orvex_kind_file, value, file);
                break;
            case 'd':
                if (is_except) {
                    print_line("不支持以目录的方式添加例外程序!");
                    return 0;
                }
                take_object(orvex_kind_dir, value, dir);
                break;
            case 'P':
                take_object(orvex_kind_pkg, value, package);
                break;
            default:
                is_except = true;
                break;
        }
        return std::nullopt;
    }

    // Without the except flag the first of these that is given counts, in this order.
    std::string file;
    std::string dir;
    std::string package;

    // With it the latest of them is the first object, whatever its kind.
    bool is_except = false;
    std::int32_t first_kind = 0;
    std::string first_object;
    std::int32_t except_kind = 0;
    std::string except_object;

private:
    void take_object(std::int32_t kind, const char* value, std::string& object) {
        if (is_except) {
            except_kind = kind;
            except_object = value;
            return;
        }
        object = value;
        first_kind = kind;
        first_object = value;
    }
};

int set_policy(COrvexFile& module, const command_line& words, int action) {
    if (!words.file.empty()) {
        return module.set_file_policy_by_file(words.file, action);
    }
    if (!words.dir.empty()) {
        return module.set_file_policy_by_dir(words.dir, action);
    }
    if (!words.package.empty()) {
        return module.set_file_policy_by_pkg(words.package, action);
    }
    return end_with_usage(module, "请输入需要设置只读文件保护文件策略的路径或者软件包名!");
}

int set_except_policy(COrvexFile& module, const command_line& words, int action) {
    if (words.first_object.empty() || words.except_object.empty()) {
        return end_with_usage(module, "请输入需要设置例外程序策略的路径、目录或者软件包!");
    }
    return module.set_file_except_policy(words.first_kind, words.first_object, words.except_kind, words.except_object,
                                         action);
}

}  // namespace

int COrvexFile::run(int argc, char** argv) {
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
    const module_states states = read_states(module_file);
    if (const run_end end = switch_on_or_off(*this, module_file, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = refuse_while_off(*this, states, first_arg, "文件只读保护未开启!")) {
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
            return list_file_policy();
        default:
            usage();
            return 0;
    }
}

void COrvexFile::usage() {
    print_line("用法: orvex_policy file [on|off]");
    print_line("      orvex_policy file [-A|-D] [-f|-d|-P] <path|dir|pkgname>");
    print_line("      orvex_policy file [-A|-D] [-f|-d|-P] <path|dir|pkgname> [-e] [-f|-P] <path|pkgname>");
    print_line("      orvex_policy file [-L]");
    print_line("功能: 文件只读保护策略配置");
    print_line("参数:");
    print_line("   file: 文件只读保护");
    print_line("   [status]");
    print_line("       on  开启文件只读保护");
    print_line("       off 关闭文件只读保护");
    print_line("   [Commands]");
    print_line("       -A, --add    添加策略");
    print_line("       -D, --delete 删除策略");
    print_line("       -L, --list   查询策略");
    print_line("   [Options]");
    print_line("       -e, --except  例外程序, 表示允许程序访问只读文件");
    print_line("       -f, --file    文件路径");
    print_line("       -d, --dir     目录路径, 仅支持添加只读保护文件");
    print_line("       -P, --package 已安装的软件包名称");
    print_line("       -h, --help    显示帮助信息");
    print_line("示例:");
    print_line("   orvex_policy file -A -f /home/tavro/test.txt");
    print_line("   orvex_policy file -D -f /home/tavro/test.txt");
    print_line("   orvex_policy file -A -P hesa-guard");
    print_line("   orvex_policy file -A -f /home/tavro/test.txt -e -f /usr/sbin/hesa-guard");
    print_line("   orvex_policy file -A -d /usr/bin/ -e -f /usr/sbin/hesa-guard");
    print_line("   orvex_policy file -D -f /home/tavro/test.txt -e -P hesa-guard");
    print_line("   orvex_policy file -D -P hesa-guard -e -P orvex-daemon");
    print_line("   orvex_policy file -L");
}
