// SPDX-License-Identifier: Apache-2.0
// Process kill protection: protected programs, and the programs that may kill each of them all the same.
//
// Every change reports by a 32-bit status, 0 for success; what -3 means is told at each call.
#pragma once

#include <cstddef>
#include <cstdint>

#include "service/object_kind.h"  // IWYU pragma: export

/// The exception programs of one protected program.
struct taskctl_exception_record {
    /// The protected program's path. May be null.
    char* resource;
    /// `exception_count` paths, directory patterns that end in "/*", or package names; entries may be null.
    char** exceptions;
    std::uint64_t exception_count;
};
static_assert(sizeof(taskctl_exception_record) == 24, "layout shared with the service library");
static_assert(offsetof(taskctl_exception_record, resource) == 0, "layout shared with the service library");
static_assert(offsetof(taskctl_exception_record, exceptions) == 8, "layout shared with the service library");
static_assert(offsetof(taskctl_exception_record, exception_count) == 16, "layout shared with the service library");

extern "C" {

/// Returns the protected programs, an array of `*count` paths, or null. The caller sets `*count` to 0 before the call
/// and gives back every string and then the array with `free`.
char** orvex_scene_taskctl_get_policy(std::uint64_t* count);

/// Protects `count` programs, by path. Array and strings stay the caller's. Any result but 0 is a failure.
int orvex_scene_taskctl_multi_add_by_path(char** paths, std::int64_t count);

/// Ends the protection of `count` programs, by path. Array and strings stay the caller's. Any result but 0 is a
/// failure.
int orvex_scene_taskctl_multi_remove_by_path(char** paths, std::int64_t count);

/// Protects the programs of `count` running processes; the library resolves them for itself. The array stays the
/// caller's. Any result but 0 is a failure.
int orvex_scene_taskctl_multi_add_by_pid(std::int32_t* pids, std::int64_t count);

/// Ends the protection of the programs of `count` running processes. The array stays the caller's. Any result but 0 is
/// a failure.
int orvex_scene_taskctl_multi_remove_by_pid(std::int32_t* pids, std::int64_t count);

/// Drops all exceptions of the protected program `path`. 0 is success; -3, nothing to clear, is no failure; anything
/// else is one.
int orvex_scene_taskctl_exception_clear_resource_policy(const char* path);

/// Drops all exceptions of the program of the process `pid`, with the results of the call by path.
int orvex_scene_taskctl_exception_clear_resource_policy_by_pid(std::int32_t pid);

/// Returns the exceptions of all protected programs, an array of `*count` records. The caller sets `*count` to 0 before
/// the call and gives the whole back with `orvex_scene_taskctl_exception_policy_free`, never with `free`.
taskctl_exception_record* orvex_scene_taskctl_exception_get_policy(std::uint64_t* count);

/// Frees an array of `count` records and all that hangs on it. A null array is allowed.
void orvex_scene_taskctl_exception_policy_free(taskctl_exception_record* records, std::uint64_t count);

/// Adds `count` exceptions of the kind `except_kind` to the protected program `path`; `kind` is the program's own kind.
/// Array and strings stay the caller's. 0 is success; -3 says that the program is not protected; anything else is a
/// failure.
int orvex_scene_taskctl_exception_multi_add(std::int32_t kind, const char* path, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count);

/// Takes `count` exceptions off the protected program `path`, with the arguments of the add. Any result but 0 is a
/// failure, -3 too.
int orvex_scene_taskctl_exception_multi_remove(std::int32_t kind, const char* path, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count);

/// Adds `count` exceptions to the program of the process `pid`, with the results of the add by path.
int orvex_scene_taskctl_exception_multi_add_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                   std::int64_t count);

/// Takes `count` exceptions off the program of the process `pid`, with the results of the removal by path.
int orvex_scene_taskctl_exception_multi_remove_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                      std::int64_t count);
}
