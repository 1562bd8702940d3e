// SPDX-License-Identifier: Apache-2.0
// Execution control: the whitelist of files that may run, and the exception programs that are not controlled at all.
//
// Two ideas of failure live here: a whitelist change failed when its result is negative, an exception change when its
// result is anything but 0.
#pragma once

#include <cstddef>
#include <cstdint>

/// States of a whitelist record.
inline constexpr std::int32_t orvex_whitelist_intact = 0;
inline constexpr std::int32_t orvex_whitelist_tampered = 1;

/// One file's whitelist record, as a look-up by path fills it in storage of the caller. The caller zeroes all of it
/// before the call.
struct orvex_exectl_obj {
    /// The file's path, owned by the record; null after a look-up that found nothing.
    char* path;
    std::uint64_t reserved1;
    std::uint64_t reserved2;
    /// `orvex_whitelist_intact` or `orvex_whitelist_tampered`; anything else is unknown.
    std::int32_t status;
    std::int32_t reserved3;
};
static_assert(sizeof(orvex_exectl_obj) == 32, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_obj, path) == 0, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_obj, reserved1) == 8, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_obj, reserved2) == 16, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_obj, status) == 24, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_obj, reserved3) == 28, "layout shared with the service library");

/// One link of the chain that a full load of the whitelist returns: the record, and the next link or null.
struct orvex_exectl_list_obj {
    orvex_exectl_obj obj;
    orvex_exectl_list_obj* next;
};
static_assert(sizeof(orvex_exectl_list_obj) == 40, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_list_obj, obj) == 0, "layout shared with the service library");
static_assert(offsetof(orvex_exectl_list_obj, next) == 32, "layout shared with the service library");

extern "C" {

/// Adds `count` files to the whitelist. Array and strings stay the caller's. A negative result is a failure.
int orvex_scene_exectl_wlist_multi_add(char** paths, std::int64_t count);

/// Takes `count` files off the whitelist. Array and strings stay the caller's. A negative result is a failure.
int orvex_scene_exectl_wlist_multi_delete(char** paths, std::int64_t count);

/// Adds every controlled file below `directory` to the whitelist. A negative result is a failure.
int orvex_scene_exectl_wlist_add_by_dir(const char* directory);

/// Takes every file below `directory` off the whitelist. A negative result is a failure.
int orvex_scene_exectl_wlist_delete_by_dir(const char* directory);

/// Looks up the whitelist record of `path` and fills `record`, which the caller has zeroed and later passes to
/// `orvex_scene_exectl_obj_free`. Any result but 0 is a failure; 0 with `record->path` still null means that the file
/// has no record.
int orvex_scene_exectl_wlist_load_by_path(const char* path, orvex_exectl_obj* record);

/// Loads the whole whitelist as a chain into `*head`, which the caller has set to null and later passes to
/// `orvex_scene_exectl_objs_free`. Any result but 0 is a failure.
int orvex_scene_exectl_wlist_load_all(orvex_exectl_list_obj** head);

/// Frees what `record` points to, not the record itself.
void orvex_scene_exectl_obj_free(orvex_exectl_obj* record);

/// Frees the whole chain that begins at `*head`.
void orvex_scene_exectl_objs_free(orvex_exectl_list_obj** head);

/// Returns the exception files, an array of `*count` paths, or null. An entry that stands for a directory ends in "*";
/// an entry may be null. The caller sets `*count` to 0 before the call and gives back every string and then the array
/// with `free`, also when the count is 0.
char** orvex_scene_exectl_get_policy_for_file_permissive(std::uint64_t* count);

/// Returns the names of the exception packages, in the shape and ownership of the exception files.
char** orvex_scene_exectl_get_policy_for_package_permissive(std::uint64_t* count);

/// Adds `count` files or directories, by plain path, to the exceptions. Array and strings stay the caller's. Any result
/// but 0 is a failure.
int orvex_scene_exectl_multi_add_file_in_permissive(char** paths, std::int64_t count);

/// Takes `count` files or directories, by plain path, off the exceptions. Array and strings stay the caller's. Any
/// result but 0 is a failure.
int orvex_scene_exectl_multi_remove_file_from_permissive(char** paths, std::int64_t count);

/// Adds `count` packages, by name, to the exceptions. Array and strings stay the caller's. Any result but 0 is a
/// failure.
int orvex_scene_exectl_multi_add_package_in_permissive(char** packages, std::int64_t count);

/// Takes `count` packages, by name, off the exceptions. Array and strings stay the caller's. Any result but 0 is a
/// failure.
int orvex_scene_exectl_multi_remove_package_from_permissive(char** packages, std::int64_t count);
}
