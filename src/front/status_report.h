// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Prints the framework's global state and, unless it is disabled, one row for each module. Returns 0 always.
int print_status();
