// SPDX-License-Identifier: Apache-2.0
// The ladder that the `run` of every module climbs: the checks in front of the options, the options, and the command.
#pragma once

#include <optional>

#include "framework/module_base.h"
#include "framework/option_loop.h"

/// The framework's global state and one module's, as read once in a run.
struct module_states {
    int framework = 0;
    int module = 0;

    /// With the framework off no module is on, whatever the module's own state says. A warning state counts as on.
    bool is_module_on() const { return framework != 0 && module != 0; }
};

/// What a module has of its own on the ladder. Most of it is alike in most modules, and then left out.
struct module_ladder {
    orvex_module_type type;
    /// In the secret scene every use of the module is refused, its help too.
    bool obeys_secret_scene = false;
    /// A module without policies is its switch alone: the framework's state is asked for on every path, the module's
    /// own on none; nobody has a listing to look at, and nothing is stopped while the module is off.
    bool has_policies = true;
    /// The words `on` and `off` switch the module.
    bool has_switch = true;
    /// Goes off behind the module, where the module itself did.
    std::optional<orvex_module_type> goes_off_too = std::nullopt;
    /// The line that stops everything but the help while the module is off.
    const char* off_line = nullptr;
    module_options options;
};

/// What a module does of its own in one run. As it stands it has no words, no options and no commands of its own.
class module_command : public option_taker {
public:
    /// Serves words of the module's own that stand where `on` and `off` do.
    virtual run_end serve_words(int argc, char** argv, const module_states& states);

    /// Takes one option of the module's own.
    run_end take(int letter, const char* value) override;

    /// Does what the options ask for. `action` is that of the command letter, and not `action_none`. Returns the run's
    /// result.
    virtual int act(int action);
};

/// Runs `module` with `main`'s own arguments. Returns the result of its `run`.
int climb_ladder(COrvexBase& module, const module_ladder& ladder, module_command& command, int argc, char** argv);
