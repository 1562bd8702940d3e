// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Prints the owner of the file `path`, or whatever went wrong, on standard output. Leaves standard error elsewhere.
/// Returns the exit status of the child that asks.
int print_owner(const std::string& path);
