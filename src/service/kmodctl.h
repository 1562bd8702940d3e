// SPDX-License-Identifier: Apache-2.0
// Kernel module unload protection. Every change reports 0 for success; any other number is a failure.
#pragma once

#include <cstdint>

extern "C" {

/// Returns the names of the protected modules, an array of `*count` strings, or null; an entry may be null. The caller
/// sets `*count` to 0 before the call and gives back every string and then the array with `free`.
char** orvex_scene_kmodctl_get_policy(std::uint64_t* count);

/// Protects the module of the `.ko` file `path`, which is passed as the user typed it.
int orvex_scene_kmodctl_add_by_path(const char* path);

/// Protects the module `name`.
int orvex_scene_kmodctl_add_by_name(const char* name);

/// Ends the protection of the module of the `.ko` file `path`, which is passed as the user typed it.
int orvex_scene_kmodctl_remove_by_path(const char* path);

/// Ends the protection of the module `name`.
int orvex_scene_kmodctl_remove_by_name(const char* name);

/// Returns the name of the module in the `.ko` file with the absolute path `path`, or null where it cannot be read. The
/// caller gives it back with `free`.
char* orvex_scene_get_module_name_from_ko_path(const char* path);
}
