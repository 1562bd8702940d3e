// SPDX-License-Identifier: Apache-2.0
// The command line of `file` and its help.
#include <getopt.h>

#include <cstdint>
#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/ladder.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
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

constexpr module_ladder ladder = {
    .type = module_file,
    .obeys_secret_scene = true,
    .off_line = "文件只读保护未开启!",
    .options =
        {
            .letters = "hf:d:P:eADL",
            .long_options = long_options,
            // The "!" is this module's own.
            .invalid_line = "无效的参数!",
        },
};

/// What stands before -e on the command line is the protected object, what stands behind it the exception.
class file_command final : public module_command {
public:
    explicit file_command(COrvexFile& module) : module_(module) {}

    run_end take(int letter, const char* value) override {
        switch (letter) {
            case 'f':
                take_object(orvex_kind_file, value, file_);
                break;
            case 'd':
                if (is_except_) {
                    print_line("不支持以目录的方式添加例外程序!");
                    return 0;
                }
                take_object(orvex_kind_dir, value, dir_);
                break;
            case 'P':
                take_object(orvex_kind_pkg, value, package_);
                break;
            case 'e':
                is_except_ = true;
                break;
        }
        return std::nullopt;
    }

    int act(int action) override {
        if (action == action_list) {
            return module_.list_file_policy();
        }
        return is_except_ ? change_exceptions_of_object(action) : change_protection_of_objects(action);
    }

private:
    void take_object(std::int32_t kind, const char* value, std::string& object) {
        if (is_except_) {
            except_kind_ = kind;
            except_object_ = value;
            return;
        }
        object = value;
        first_kind_ = kind;
        first_object_ = value;
    }

    int change_protection_of_objects(int action) {
        if (!file_.empty()) {
            return module_.set_file_policy_by_file(file_, action);
        }
        if (!dir_.empty()) {
            return module_.set_file_policy_by_dir(dir_, action);
        }
        if (!package_.empty()) {
            return module_.set_file_policy_by_pkg(package_, action);
        }
        return end_with_usage(module_, "请输入需要设置只读文件保护文件策略的路径或者软件包名!");
    }

    int change_exceptions_of_object(int action) {
        if (first_object_.empty() || except_object_.empty()) {
            return end_with_usage(module_, "请输入需要设置例外程序策略的路径、目录或者软件包!");
        }
        return module_.set_file_except_policy(first_kind_, first_object_, except_kind_, except_object_, action);
    }

    COrvexFile& module_;

    // Without the except flag the first of these that is given counts, in this order.
    std::string file_;
    std::string dir_;
    std::string package_;

    // With it the latest of them is the first object, whatever its kind.
    bool is_except_ = false;
    std::int32_t first_kind_ = 0;
    std::string first_object_;
    std::int32_t except_kind_ = 0;
    std::string except_object_;
};

}  // namespace

int COrvexFile::run(int argc, char** argv) {
    file_command command(*this);
    return climb_ladder(*this, ladder, command, argc, argv);
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
