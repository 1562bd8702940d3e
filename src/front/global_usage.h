// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Prints the global help on standard output.
void print_global_usage();
