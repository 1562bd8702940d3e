// SPDX-License-Identifier: Apache-2.0
// The help texts, as the screen shows them.
#pragma once

#include <string>

/// The global help.
std::string global_help();

/// The help of `exec`.
std::string exec_help();

/// The help of `net`.
std::string net_help();

/// The help of `file`.
std::string file_help();

/// The help of `proc`.
std::string proc_help();

/// The help of `kmod`.
std::string kmod_help();

/// The help of `userid`.
std::string userid_help();

/// The help of `box`.
std::string box_help();
