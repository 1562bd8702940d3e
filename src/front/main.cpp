// SPDX-License-Identifier: Apache-2.0
#include <optional>
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

/// Serves a word that is no module's. Returns the process's exit value, or nothing for any other word.
std::optional<int> serve_global_word(const std::string& word) {
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
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    // A bare call asks for the help.
    const std::string word = argc > 1 ? argv[1] : "--help";
    if (const std::optional<int> exit_value = serve_global_word(word)) {
        return *exit_value;
    }
    // What a module's run returns is for the program's inside alone: the exit value is 0.
    if (word == "exec") {
        COrvexExec module;
        module.run(argc, argv);
    } else if (word == "net") {
        COrvexNet module;
        module.run(argc, argv);
    } else if (word == "file") {
        COrvexFile module;
        module.run(argc, argv);
    } else if (word == "proc") {
        COrvexProc module;
        module.run(argc, argv);
    } else if (word == "kmod") {
        COrvexKmod module;
        module.run(argc, argv);
    } else if (word == "userid") {
        COrvexUserid module;
        module.run(argc, argv);
    } else if (word == "box") {
        COrvexBox module;
        module.run(argc, argv);
    } else {
        print_global_usage();
    }
    return 0;
}
