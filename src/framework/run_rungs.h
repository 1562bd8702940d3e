// SPDX-License-Identifier: Apache-2.0
// The rungs of a module's `run`. Each module puts the ones that it has in its own order, and adds its own.
#pragma once

#include <optional>
#include <string>

#include "framework/module_base.h"

/// What a rung says: a value ends the run and is its result; without one the run goes on.
using run_end = std::optional<int>;

/// The framework's global state and one module's, as read once at the start of a run.
struct module_states {
    int framework;
    int module;

    /// With the framework off no module is on, whatever the module's own state says. A warning state counts as on.
    bool is_module_on() const { return framework != 0 && module != 0; }
};

/// Tells whether `word` is "-h" or "--help".
bool is_help_word(const std::string& word);

/// Refuses every use of a module, its help too, in the secret scene.
run_end refuse_in_secret_scene();

/// Refuses a caller without rights, unless `first_arg` asks for the help or the listing.
run_end refuse_without_rights(COrvexBase& module, const std::string& first_arg);

/// Refuses a caller without rights, unless `first_arg` asks for the help: for a module that lists nothing.
run_end refuse_without_rights_but_help(COrvexBase& module, const std::string& first_arg);

/// Reads the global state and then the state of the module `type`, always both.
module_states read_states(orvex_module_type type);

/// Serves the command forms `on` and `off`, each only as the last of three arguments. `off` needs the framework to be
/// on; `on` does not, nor does either ask for the module's own state.
run_end switch_on_or_off(COrvexBase& module, orvex_module_type type, int argc, const std::string& first_arg,
                         int framework);

/// Stops everything but the help while the module is off, with the module's own `line`.
run_end refuse_while_off(COrvexBase& module, const module_states& states, const std::string& first_arg,
                         const char* line);

/// Ends a run whose command line lacks something: prints `line` and the help. Returns -1.
int end_with_usage(COrvexBase& module, const char* line);
