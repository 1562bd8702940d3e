// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What became of a request for another global state.
struct state_result {
    /// The library's own result; anything but 0 is a failure.
    int ret;
    /// The library's text for the failure, empty where it has none.
    std::string error;
};

/// Asks the framework's system service for the global state `state`, an `orvex_state_` number, with a restart at once
/// where `reboot` is 1. A failure is told by a line; the caller logs it in its own words.
state_result set_framework_state(int state, int reboot);
