// SPDX-License-Identifier: Apache-2.0
// What the operations of `net` share in talking to the service library.
#pragma once

#include <cstdint>
#include <string>

#include "framework/owned.h"
#include "modules/net/net_module.h"
#include "service/netctl.h"

/// The tag of this module's records in the log.
inline constexpr const char* net_tag = "netctl";

/// The user whom all policies of this program belong to, whoever runs it.
inline constexpr std::uint32_t policy_uid = 0;

/// The tag of every policy that this program adds.
inline constexpr std::int32_t policy_tag = 2;

/// Records, one or a contiguous array of them.
using owned_pkg_records = owned_memory<netctl_pkg_record>;
using owned_ext_records = owned_memory<netctl_ext_record>;

/// Returns the policy of the package `pkg`, or null.
owned_pkg_records read_pkg_policy(const std::string& pkg);

/// Adds a policy of the package `pkg`, with the desktop entry that it has now. Returns the library's result, of which a
/// negative one is a failure.
int add_pkg_policy(COrvexNet& module, const std::string& pkg, std::int32_t status);

/// Adds a policy that denies for the package `pkg`, unless it has one, which is told by a line. Returns 0, or -1 with
/// the failure printed and logged for `function`.
int deny_pkg(COrvexNet& module, const std::string& pkg, const char* function);

/// Sets the status of the stored policy `record`; all else that it holds goes back as it is, and the record itself is
/// freed. Returns the library's result, of which anything but 0 is a failure.
int update_pkg_policy(owned_pkg_records record, std::int32_t status);

/// Removes the policy of the package `pkg`. Returns the library's result; anything but 0 is a failure, printed and
/// logged for `function`.
int remove_pkg_policy(const std::string& pkg, const char* function);
