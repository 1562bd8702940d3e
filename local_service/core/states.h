// SPDX-License-Identifier: Apache-2.0
// Global and module states, each with the value that holds now and the one that holds after the next restart.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace local_service {

/// A module of the framework, by its number and a name for people.
struct known_module {
    int number;
    const char* name;
};
inline constexpr std::array<known_module, 8> modules{
    {{0, "exec"}, {1, "net"}, {2, "file"}, {3, "kmod"}, {4, "3adm"}, {5, "proc"}, {7, "exec script"}, {11, "box"}}};

struct module_state {
    int number;
    int now;
    int after_restart;
};

struct framework_state {
    int now;
    int after_restart;
    bool is_secret_scene;
    std::int64_t restarts;
    /// How many of the restarts were asked for by a change of the global state.
    std::int64_t requested_restarts;
    std::vector<module_state> modules;
};

/// The status that one module is to have after the next restart.
struct pending_status {
    int module;
    int status;
};

/// Returns the framework's state now, 0, 2 or 4.
int read_global_status();

/// Returns 1 while the secret scene mode is on, else 0.
int read_secret_scene();

/// Returns the status of `module`, which is off while the framework is disabled. Throws a failure for a module that
/// does not exist.
int read_module_status(int module);

/// Returns all of it as it is at one moment. While the framework is disabled no module is on.
framework_state read_states();

/// Switches the secret scene mode.
void set_secret_scene(bool is_on);

// The following are parts of a transaction that the caller opens.

/// Sets all of it, but for modules that `states` does not name.
void write_states(const framework_state& states);

/// Switches `module` at once and for later. Throws a failure while the framework is disabled.
void switch_module(int module, int status);

/// Sets what the modules will be after the next restart. Throws a failure while the framework is not disabled.
void set_pending_statuses(const std::vector<pending_status>& batch);

/// Throws a failure unless `module` exists and `status` is off or on.
void check_module_status(int module, int status);

/// Changes the global state to `state`, an `orvex_state_` number: away from disabled at the next restart, else at once.
/// With `is_restart_requested` the restart follows, simulated and told in the log.
void request_state(int state, bool is_restart_requested);

/// Puts in force what is to hold after the restart.
void simulate_restart();

}  // namespace local_service
