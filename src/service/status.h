// SPDX-License-Identifier: Apache-2.0
// Global state, module switches and the system service that changes the global state.
#pragma once

/// Answers of `orvex_scene_getstatus`. Any other number has no meaning known to the program.
inline constexpr int orvex_status_disabled = 0;
inline constexpr int orvex_status_enabled = 2;
inline constexpr int orvex_status_permissive = 4;

/// Answers of `orvex_scene_get_module_status`. Modules are switched with the first two only.
inline constexpr int orvex_module_off = 0;
inline constexpr int orvex_module_on = 1;
inline constexpr int orvex_module_warning = 2;

/// Answer of `orvex_scene_get_sm_status` while the secret scene mode is on.
inline constexpr int orvex_secret_scene_on = 1;

/// State argument of `setModuleStatusReboot_dbus`. The numbers are not those of `orvex_scene_getstatus`: enable is 3
/// here and 2 there.
inline constexpr int orvex_state_disable = 2;
inline constexpr int orvex_state_enable = 3;
inline constexpr int orvex_state_permissive = 4;

/// Result of a switching call for a caller without rights.
inline constexpr int orvex_result_no_rights = -4;

extern "C" {

/// Returns the framework's global state, one of the `orvex_status_` numbers. Not expected to fail.
int orvex_scene_getstatus(void);

/// Returns 1 while the secret scene mode is on, in which state changes are refused; any other number is off.
int orvex_scene_get_sm_status(void);

/// Returns the state of the module with the number `module` (an `orvex_module_type`). Not expected to fail.
int orvex_scene_get_module_status(int module);

/// Switches `module` to `status` (0 off, 1 on) while the framework is not disabled.
/// Returns 0; -4 for a caller without rights; any other number is a failure too.
int orvex_scene_set_module_status(int module, int status);

/// Sets the status that `module` will have after the next restart, while the framework is disabled. The calls of one
/// batch pass 0 as `final`, the last one 1, which makes the batch valid.
/// Returns 0; -4 for a caller without rights; any other number is a failure too.
int orvex_scene_set_multi_module_status(int module, int status, int final);

/// Asks the framework's system service to set the global state to `state` (an `orvex_state_` number) and, where
/// `reboot` is 1, to restart the machine at once. `a`, `b`, `c`, `d` are always 1, 11, 0, 1; what they mean is the
/// library's own affair.
/// Returns 0; any other number is a failure, whose text is then in `orvex_get_error`.
int setModuleStatusReboot_dbus(int a, int state, int b, int c, int d, int reboot);
}
