// SPDX-License-Identifier: Apache-2.0
// The policies of network control. Both kinds lie in one table, with three texts each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "service/netctl.h"

namespace local_service {

/// A kind of policy: its word in the store, and the sizes of the record's texts, each with its NUL.
struct net_policy_kind {
    const char* word;
    std::size_t name_size;
    std::array<std::size_t, 3> text_sizes;
};
inline constexpr net_policy_kind package_policy_kind{
    "package",
    sizeof(netctl_pkg_record::name),
    {sizeof(netctl_pkg_record::icon), sizeof(netctl_pkg_record::desktop), 1},
};
inline constexpr net_policy_kind program_policy_kind{
    "program",
    sizeof(netctl_ext_record::path),
    {sizeof(netctl_ext_record::label), sizeof(netctl_ext_record::text1), sizeof(netctl_ext_record::text2)},
};

/// A policy of the user `uid`, its texts in the order of the record.
struct net_policy {
    std::uint32_t uid;
    std::string name;
    std::int32_t status;
    std::array<std::string, 3> texts;
    std::int32_t tag;
};

/// Returns all policies of the kind `kind`, in the order in which they were added.
std::vector<net_policy> read_net_policies(const net_policy_kind& kind);

/// The same, of the user `uid`.
std::vector<net_policy> read_net_policies(const net_policy_kind& kind, std::uint32_t uid);

/// The same, with the name `name`: one or none.
std::vector<net_policy> read_net_policies(const net_policy_kind& kind, std::uint32_t uid, const std::string& name);

/// Adds `policy`. Throws a failure where its user and name have one already.
void add_net_policy(const net_policy_kind& kind, const net_policy& policy);

/// Writes every field of `policy`. Throws a failure where its user and name have none.
void update_net_policy(const net_policy_kind& kind, const net_policy& policy);

/// Removes a policy. Throws a failure where there is none.
void remove_net_policy(const net_policy_kind& kind, std::uint32_t uid, const std::string& name);

}  // namespace local_service
