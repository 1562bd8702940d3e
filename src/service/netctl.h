// SPDX-License-Identifier: Apache-2.0
// Network control: policies of packages, and of programs that belong to no package (the library calls these ext).
//
// Every call takes a user id first; the program passes 0, whoever runs it. An add failed when its result is negative,
// an update or a removal when its result is anything but 0.
#pragma once

#include <cstddef>
#include <cstdint>

/// Network control status of a record.
inline constexpr std::int32_t netctl_allow = 1;
inline constexpr std::int32_t netctl_deny = 2;

/// Policy of one package. The texts are NUL-terminated within their arrays.
struct netctl_pkg_record {
    char name[4096];
    std::int32_t status;
    char icon[4096];
    char desktop[4096];
    std::int32_t tag;
};
static_assert(sizeof(netctl_pkg_record) == 12296, "layout shared with the service library");
static_assert(offsetof(netctl_pkg_record, name) == 0, "layout shared with the service library");
static_assert(offsetof(netctl_pkg_record, status) == 4096, "layout shared with the service library");
static_assert(offsetof(netctl_pkg_record, icon) == 4100, "layout shared with the service library");
static_assert(offsetof(netctl_pkg_record, desktop) == 8196, "layout shared with the service library");
static_assert(offsetof(netctl_pkg_record, tag) == 12292, "layout shared with the service library");

/// Policy of one program. The texts are NUL-terminated within their arrays; the bytes behind the end of `path` are the
/// library's own.
struct netctl_ext_record {
    char path[4164];
    std::int32_t status;
    char label[256];
    char text1[4096];
    char text2[4096];
    std::int32_t tag;
};
static_assert(sizeof(netctl_ext_record) == 12620, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, path) == 0, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, status) == 4164, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, label) == 4168, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, text1) == 4424, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, text2) == 8520, "layout shared with the service library");
static_assert(offsetof(netctl_ext_record, tag) == 12616, "layout shared with the service library");

extern "C" {

/// Returns all package policies as one contiguous array of `*count` records, or null. The caller sets `*count` to 0
/// before the call and gives the array back with one `free`.
netctl_pkg_record* orvex_netctl_pkg_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count);

/// Returns all program policies, in the shape and ownership of the package policies.
netctl_ext_record* orvex_netctl_ext_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count);

/// Returns the policy of `package`, or null where there is none. The caller gives it back with `free`.
netctl_pkg_record* orvex_netctl_pkg_read_node_with_uid(std::uint32_t uid, const char* package);

/// Adds a policy of `package`. All texts are borrowed for the call. A negative result is a failure.
int orvex_netctl_pkg_add(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                         const char* desktop, std::int32_t tag);

/// Writes every field of the policy of `package`. All texts are borrowed for the call. Any result but 0 is a failure.
int orvex_netctl_pkg_update(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                            const char* desktop, std::int32_t tag);

/// Removes the policy of `package`. Any result but 0 is a failure.
int orvex_netctl_pkg_remove(std::uint32_t uid, const char* package);

/// Returns the policy of the program `path`, or null where there is none. The caller gives it back with `free`.
netctl_ext_record* orvex_netctl_ext_read_node_with_uid(std::uint32_t uid, const char* path);

/// Adds a policy of the program `path`. The texts are borrowed for the call; `text1` and `text2` may be null. A
/// negative result is a failure.
int orvex_netctl_ext_add(std::uint32_t uid, const char* path, std::int32_t status, const char* label, const char* text1,
                         const char* text2, std::int32_t tag);

/// Writes every field of the policy of the program `path`. The texts are borrowed for the call. Any result but 0 is a
/// failure.
int orvex_netctl_ext_update(std::uint32_t uid, const char* path, std::int32_t status, const char* label,
                            const char* text1, const char* text2, std::int32_t tag);

/// Removes the policy of the program `path`. Any result but 0 is a failure.
int orvex_netctl_remove(std::uint32_t uid, const char* path);
}
