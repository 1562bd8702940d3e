// SPDX-License-Identifier: Apache-2.0
#include "framework/run_rungs.h"

#include <algorithm>
#include <initializer_list>

#include "framework/output.h"
#include "service/status.h"

namespace {

bool is_one_of(const std::string& word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&](const char* other) { return word == other; });
}

run_end refuse_unless(COrvexBase& module, bool is_open_to_all) {
    std::string error;
    if (module.check_permission(error) || is_open_to_all) {
        return std::nullopt;
    }
    print_line(error);
    return -1;
}

}  // namespace

bool is_help_word(const std::string& word) {
    return is_one_of(word, {"-h", "--help"});
}

run_end refuse_in_secret_scene() {
    if (orvex_scene_get_sm_status() != orvex_secret_scene_on) {
        return std::nullopt;
    }
    print_line("涉密场景下禁止使用通用命令行工具!");
    return 0;
}

run_end refuse_without_rights(COrvexBase& module, const std::string& first_arg) {
    return refuse_unless(module, is_help_word(first_arg) || is_one_of(first_arg, {"-L", "--list"}));
}

run_end refuse_without_rights_but_help(COrvexBase& module, const std::string& first_arg) {
    return refuse_unless(module, is_help_word(first_arg));
}

module_states read_states(orvex_module_type type) {
    const int framework = orvex_scene_getstatus();
    const int module = orvex_scene_get_module_status(type);
    return {framework, module};
}

run_end switch_on_or_off(COrvexBase& module, orvex_module_type type, int argc, const std::string& first_arg,
                         int framework) {
    if (argc != 3) {
        return std::nullopt;
    }
    if (first_arg == "on") {
        return module.set_module_status(type, orvex_module_on);
    }
    if (first_arg != "off") {
        return std::nullopt;
    }
    if (framework == orvex_status_disabled) {
        print_line("orvex未开启!");
        return 0;
    }
    return module.set_module_status(type, orvex_module_off);
}

run_end refuse_while_off(COrvexBase& module, const module_states& states, const std::string& first_arg,
                         const char* line) {
    if (states.is_module_on()) {
        return std::nullopt;
    }
    if (is_help_word(first_arg)) {
        module.usage();
    } else {
        print_line(line);
    }
    return 0;
}

int end_with_usage(COrvexBase& module, const char* line) {
    print_line(line);
    module.usage();
    return -1;
}
