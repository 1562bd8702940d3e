// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "framework/module_base.h"
#include "framework/output.h"
#include "front/global_state.h"
#include "front/global_usage.h"
#include "front/status_report.h"
#include "modules/box/box_module.h"
#include "modules/exec/exec_module.h"
#include "modules/file/file_module.h"
#include "modules/kmod/kmod_module.h"
#include "modules/net/net_module.h"
#include "modules/proc/proc_module.h"
#include "modules/userid/userid_module.h"
#include "service/status.h"

namespace {

/// Changes the global state, where the scene and the caller's rights allow it. Returns the process's exit value: a
/// refusal for missing rights is the only thing that makes it other than 0.
int change_global_state(const std::string& mode) {
    // The scene comes before the rights: in it everybody gets the same answer.
    if (orvex_scene_get_sm_status() == orvex_secret_scene_on) {
        print_line("涉密场景下禁止修改orvex状态");
        return 0;
    }
    std::string error;
    COrvexBase base;
    if (!base.check_permission(error)) {
        print_line(error);
        return -1;
    }
    set_orvex_status(mode);
    return 0;
}

/// Gives a module the whole command line. What it returns is for the program's inside alone: the exit value is 0.
int run_module(COrvexBase&& module, int argc, char** argv) {
    module.run(argc, argv);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc <= 1) {
        print_global_usage();
        return 0;
    }
    const std::string word = argv[1];
    if (word == "-h" || word == "--help") {
        print_global_usage();
        return 0;
    }
    if (word == "-V" || word == "--version") {
        // Accepted and silent: the program has no version text.
        return 0;
    }
    if (word == "enable" || word == "disable" || word == "permissive") {
        return change_global_state(word);
    }
    if (word == "status") {
        print_status();
        return 0;
    }
    if (word == "import" || word == "export") {
        print_line("暂不支持");
        return 0;
    }
    if (word == "exec") {
        return run_module(COrvexExec(), argc, argv);
    }
    if (word == "net") {
        return run_module(COrvexNet(), argc, argv);
    }
    if (word == "file") {
        return run_module(COrvexFile(), argc, argv);
    }
    if (word == "proc") {
        return run_module(COrvexProc(), argc, argv);
    }
    if (word == "kmod") {
        return run_module(COrvexKmod(), argc, argv);
    }
    if (word == "userid") {
        return run_module(COrvexUserid(), argc, argv);
    }
    if (word == "box") {
        return run_module(COrvexBox(), argc, argv);
    }
    print_global_usage();
    return 0;
}
