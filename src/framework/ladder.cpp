// SPDX-License-Identifier: Apache-2.0
#include "framework/ladder.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>

#include "framework/action.h"
#include "framework/module_base.h"
#include "framework/option_loop.h"
#include "framework/output.h"
#include "service/status.h"

namespace {

bool is_one_of(const std::string& word, std::initializer_list<const char*> others) {
    return std::any_of(others.begin(), others.end(), [&](const char* other) { return word == other; });
}

bool is_help_word(const std::string& word) {
    return is_one_of(word, {"-h", "--help"});
}

bool refuse_in_secret_scene() {
    if (orvex_scene_get_sm_status() != orvex_secret_scene_on) {
        return false;
    }
    print_line("涉密场景下禁止使用通用命令行工具!");
    return true;
}

/// Refuses a caller without rights, unless the first argument asks for the help or, where there is one, the listing.
bool refuse_without_rights(COrvexBase& module, const module_ladder& ladder, const std::string& first_arg) {
    std::string error;
    if (module.check_permission(error) || is_help_word(first_arg) ||
        (ladder.has_policies && is_one_of(first_arg, {"-L", "--list"}))) {
        return false;
    }
    print_line(error);
    return true;
}

int switch_off(COrvexBase& module, const module_ladder& ladder, int framework) {
    if (framework == orvex_status_disabled) {
        print_line("orvex未开启!");
        return 0;
    }
    const int ret = module.set_module_status(ladder.type, orvex_module_off);
    if (ret == -1 || !ladder.goes_off_too) {
        return ret;
    }
    return module.set_module_status(*ladder.goes_off_too, orvex_module_off);
}

/// Serves `on` and `off`, each only as the last of three arguments. `off` needs the framework to be on; `on` does not,
/// nor does either ask for the module's own state.
run_end switch_on_or_off(COrvexBase& module, const module_ladder& ladder, int argc, const std::string& first_arg,
                         int framework) {
    if (!ladder.has_switch || argc != 3) {
        return std::nullopt;
    }
    if (first_arg == "on") {
        return module.set_module_status(ladder.type, orvex_module_on);
    }
    return first_arg == "off" ? run_end(switch_off(module, ladder, framework)) : std::nullopt;
}

/// Ends a run that meets a module that is off.
int answer_while_off(COrvexBase& module, const module_ladder& ladder, const std::string& first_arg) {
    if (is_help_word(first_arg)) {
        module.usage();
    } else {
        print_line(ladder.off_line);
    }
    return 0;
}

/// Reads the options and does what they ask for.
int carry_out(COrvexBase& module, const module_ladder& ladder, module_command& command, int argc, char** argv) {
    const option_result result = read_options(module, ladder.options, command, argc, argv);
    if (result.end) {
        return *result.end;
    }
    if (result.action == action_none) {
        module.usage();
        return 0;
    }
    return command.act(result.action);
}

}  // namespace

run_end module_command::serve_words(int /*argc*/, char** /*argv*/, const module_states& /*states*/) {
    return std::nullopt;
}

run_end module_command::take(int /*letter*/, const char* /*value*/) {
    return std::nullopt;
}

int module_command::act(int /*action*/) {
    return 0;
}

int climb_ladder(COrvexBase& module, const module_ladder& ladder, module_command& command, int argc, char** argv) {
    module_states states;
    if (!ladder.has_policies) {
        states.framework = orvex_scene_getstatus();
    }
    if (ladder.obeys_secret_scene && refuse_in_secret_scene()) {
        return 0;
    }
    if (argc < 3) {
        module.usage();
        return 0;
    }
    const std::string first_arg = argv[2];
    if (refuse_without_rights(module, ladder, first_arg)) {
        return -1;
    }
    if (ladder.has_policies) {
        states.framework = orvex_scene_getstatus();
        states.module = orvex_scene_get_module_status(ladder.type);
    }
    if (const run_end end = switch_on_or_off(module, ladder, argc, first_arg, states.framework)) {
        return *end;
    }
    if (const run_end end = command.serve_words(argc, argv, states)) {
        return *end;
    }
    if (ladder.has_policies && !states.is_module_on()) {
        return answer_while_off(module, ladder, first_arg);
    }
    return carry_out(module, ladder, command, argc, argv);
}
