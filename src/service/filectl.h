// SPDX-License-Identifier: Apache-2.0
// File read-only protection: protected paths and packages, and the programs excepted from the protection of each.
//
// Every change reports by a 32-bit status, 0 for success; what -3 means is told at each call.
#pragma once

#include <cstddef>
#include <cstdint>

#include "service/object_kind.h"  // IWYU pragma: export

/// The exception programs of one protected object.
struct filectl_exception_record {
    /// The object as stored: a path, a directory pattern that ends in "/*", or a package name. May be null.
    char* resource;
    /// `exception_count` paths or package names; entries may be null.
    char** exceptions;
    std::uint64_t exception_count;
};
static_assert(sizeof(filectl_exception_record) == 24, "layout shared with the service library");
static_assert(offsetof(filectl_exception_record, resource) == 0, "layout shared with the service library");
static_assert(offsetof(filectl_exception_record, exceptions) == 8, "layout shared with the service library");
static_assert(offsetof(filectl_exception_record, exception_count) == 16, "layout shared with the service library");

extern "C" {

/// Returns the protected paths, an array of `*count` strings, or null; a directory stands as its pattern, its path and
/// "/*". The caller sets `*count` to 0 before the call and gives back every string and then the array with `free`.
char** orvex_scene_filectl_get_policy(std::uint64_t* count);

/// Returns the names of the protected packages, in the shape and ownership of the protected paths.
char** orvex_scene_filectl_get_pkg_policy(std::uint64_t* count);

/// Protects `count` files or directories, by plain path. Array and strings stay the caller's. Any result but 0 is a
/// failure.
int orvex_scene_filectl_multi_add_by_path(char** paths, std::int64_t count);

/// Ends the protection of `count` files or directories, by plain path. Array and strings stay the caller's. Any result
/// but 0 is a failure.
int orvex_scene_filectl_multi_remove_by_path(char** paths, std::int64_t count);

/// Protects `count` packages, by name. Array and strings stay the caller's. Any result but 0 is a failure.
int orvex_scene_filectl_multi_add_by_pkg(char** packages, std::int64_t count);

/// Ends the protection of `count` packages, by name. Array and strings stay the caller's. Any result but 0 is a
/// failure.
int orvex_scene_filectl_multi_remove_by_pkg(char** packages, std::int64_t count);

/// Drops all exceptions of the object `resource` of the kind `kind`. 0 is success; -3, nothing to clear, is no failure;
/// anything else is one.
int orvex_scene_filectl_exception_clear_resource_policy(std::int32_t kind, const char* resource);

/// Returns the exceptions of all protected objects, an array of `*count` records. The caller sets `*count` to 0 before
/// the call and gives the whole back with `orvex_scene_filectl_exception_policy_free`, never with `free`.
filectl_exception_record* orvex_scene_filectl_exception_get_policy(std::uint64_t* count);

/// Frees an array of `count` records and all that hangs on it. A null array is allowed.
void orvex_scene_filectl_exception_policy_free(filectl_exception_record* records, std::uint64_t count);

/// Adds `count` exceptions of the kind `except_kind` to the object `resource` of the kind `kind`. Array and strings
/// stay the caller's. 0 is success; -3 says that the object is not protected; anything else is a failure.
int orvex_scene_filectl_exception_multi_add(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count);

/// Takes `count` exceptions off the object `resource`, with the arguments of the add. Any result but 0 is a failure, -3
/// too.
int orvex_scene_filectl_exception_multi_remove(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count);
}
