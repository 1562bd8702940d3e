// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Sets the framework's global state to `mode`: "enable", "disable" or "permissive". Disabling with the administrator
/// roles separated restarts the machine and asks on standard input before. Returns 0, or -1 with the failure already
/// printed and logged; an answer of no is a success.
int set_orvex_status(const std::string& mode);
