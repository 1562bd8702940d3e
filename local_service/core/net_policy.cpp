// SPDX-License-Identifier: Apache-2.0
#include "core/net_policy.h"

#include "core/failure.h"
#include "core/store.h"

namespace local_service {
namespace {

std::vector<net_policy> collect(const std::string& condition, bound_values bound) {
    query rows("SELECT uid, name, status, text1, text2, text3, tag FROM net_policy WHERE " + condition + " ORDER BY id",
               bound);
    std::vector<net_policy> policies;
    while (rows.next()) {
        policies.push_back({static_cast<std::uint32_t>(rows.number(0)),
                            rows.text(1),
                            static_cast<std::int32_t>(rows.number(2)),
                            {rows.text(3), rows.text(4), rows.text(5)},
                            static_cast<std::int32_t>(rows.number(6))});
    }
    return policies;
}

void require_change(int changed, const std::string& name, const char* otherwise) {
    if (changed == 0) {
        throw failure(name + otherwise);
    }
}

}  // namespace

std::vector<net_policy> read_net_policies(const net_policy_kind& kind) {
    return collect("kind = ?", {kind.word});
}

std::vector<net_policy> read_net_policies(const net_policy_kind& kind, std::uint32_t uid) {
    return collect("kind = ? AND uid = ?", {kind.word, std::int64_t{uid}});
}

std::vector<net_policy> read_net_policies(const net_policy_kind& kind, std::uint32_t uid, const std::string& name) {
    return collect("kind = ? AND uid = ? AND name = ?", {kind.word, std::int64_t{uid}, name});
}

void add_net_policy(const net_policy_kind& kind, const net_policy& policy) {
    const int changed = change(
        "INSERT INTO net_policy (uid, kind, name, status, text1, text2, text3, tag) VALUES (?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT DO NOTHING",
        {std::int64_t{policy.uid}, kind.word, policy.name, std::int64_t{policy.status}, policy.texts[0],
         policy.texts[1], policy.texts[2], std::int64_t{policy.tag}});
    require_change(changed, policy.name, " has a network policy already");
}

void update_net_policy(const net_policy_kind& kind, const net_policy& policy) {
    const int changed = change(
        "UPDATE net_policy SET status = ?, text1 = ?, text2 = ?, text3 = ?, tag = ? "
        "WHERE uid = ? AND kind = ? AND name = ?",
        {std::int64_t{policy.status}, policy.texts[0], policy.texts[1], policy.texts[2], std::int64_t{policy.tag},
         std::int64_t{policy.uid}, kind.word, policy.name});
    require_change(changed, policy.name, " has no network policy");
}

void remove_net_policy(const net_policy_kind& kind, std::uint32_t uid, const std::string& name) {
    const int changed =
        change("DELETE FROM net_policy WHERE uid = ? AND kind = ? AND name = ?", {std::int64_t{uid}, kind.word, name});
    require_change(changed, name, " has no network policy");
}

}  // namespace local_service
