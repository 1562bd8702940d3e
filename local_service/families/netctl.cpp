// SPDX-License-Identifier: Apache-2.0
// liborvex_adv: network control. Both kinds of policy lie in one table, with three texts each.
#include "service/netctl.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/failure.h"
#include "core/heap.h"
#include "core/paths.h"
#include "core/store.h"

using namespace local_service;

namespace {

/// A kind of policy: its word in the store, and the sizes of the record's texts, each with its NUL.
struct policy_kind {
    const char* word;
    std::size_t name_size;
    std::array<std::size_t, 3> text_sizes;
};
constexpr policy_kind package_kind{
    "package",
    sizeof(netctl_pkg_record::name),
    {sizeof(netctl_pkg_record::icon), sizeof(netctl_pkg_record::desktop), 1},
};
constexpr policy_kind program_kind{
    "program",
    sizeof(netctl_ext_record::path),
    {sizeof(netctl_ext_record::label), sizeof(netctl_ext_record::text1), sizeof(netctl_ext_record::text2)},
};

struct net_policy {
    std::string name;
    std::int32_t status;
    std::array<std::string, 3> texts;
    std::int32_t tag;
};

/// The part of `text` that a field of `size` bytes can hold; null counts as empty.
std::string cut(const char* text, std::size_t size) {
    return text == nullptr ? "" : std::string(text, strnlen(text, size - 1));
}

std::string cut_name(const policy_kind& kind, const char* name) {
    std::string cut_text = cut(name, kind.name_size);
    if (cut_text.empty()) {
        throw failure("a network policy needs a name");
    }
    return cut_text;
}

std::array<std::string, 3> cut_texts(const policy_kind& kind, const std::array<const char*, 3>& texts) {
    std::array<std::string, 3> all;
    for (std::size_t index = 0; index < all.size(); ++index) {
        all[index] = cut(texts[index], kind.text_sizes[index]);
    }
    return all;
}

template <std::size_t Size>
void fill(char (&field)[Size], const std::string& text) {
    std::memcpy(field, text.data(), std::min(text.size(), Size - 1));
}

void fill_record(netctl_pkg_record& record, const net_policy& policy) {
    fill(record.name, policy.name);
    fill(record.icon, policy.texts[0]);
    fill(record.desktop, policy.texts[1]);
    record.status = policy.status;
    record.tag = policy.tag;
}

void fill_record(netctl_ext_record& record, const net_policy& policy) {
    fill(record.path, policy.name);
    fill(record.label, policy.texts[0]);
    fill(record.text1, policy.texts[1]);
    fill(record.text2, policy.texts[2]);
    record.status = policy.status;
    record.tag = policy.tag;
}

std::vector<net_policy> collect(query& rows) {
    std::vector<net_policy> policies;
    while (rows.next()) {
        policies.push_back({rows.text(0),
                            static_cast<std::int32_t>(rows.number(1)),
                            {rows.text(2), rows.text(3), rows.text(4)},
                            static_cast<std::int32_t>(rows.number(5))});
    }
    return policies;
}

/// Returns the policies as one array of zeroed and then filled records, or null where there are none.
template <class Record>
Record* hand_out(const std::vector<net_policy>& policies) {
    if (policies.empty()) {
        return nullptr;
    }
    auto* records = allocate<Record>(policies.size());
    for (std::size_t index = 0; index < policies.size(); ++index) {
        fill_record(records[index], policies[index]);
    }
    return records;
}

template <class Record>
Record* read_all(const policy_kind& kind, std::uint32_t uid, std::int32_t* count) {
    query rows("SELECT name, status, text1, text2, text3, tag FROM net_policy WHERE uid = ? AND kind = ? ORDER BY id",
               {std::int64_t{uid}, kind.word});
    const std::vector<net_policy> policies = collect(rows);
    auto* records = hand_out<Record>(policies);
    *count = static_cast<std::int32_t>(policies.size());
    return records;
}

template <class Record>
Record* read_one(const policy_kind& kind, std::uint32_t uid, const char* name) {
    query rows("SELECT name, status, text1, text2, text3, tag FROM net_policy WHERE uid = ? AND kind = ? AND name = ?",
               {std::int64_t{uid}, kind.word, cut_name(kind, name)});
    return hand_out<Record>(collect(rows));
}

void require_change(int changed, const std::string& name, const char* otherwise) {
    if (changed == 0) {
        throw failure(name + otherwise);
    }
}

void add(const policy_kind& kind, std::uint32_t uid, const net_policy& policy) {
    const int changed = change(
        "INSERT INTO net_policy (uid, kind, name, status, text1, text2, text3, tag) VALUES (?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT DO NOTHING",
        {std::int64_t{uid}, kind.word, policy.name, std::int64_t{policy.status}, policy.texts[0], policy.texts[1],
         policy.texts[2], std::int64_t{policy.tag}});
    require_change(changed, policy.name, " has a network policy already");
}

void update(const policy_kind& kind, std::uint32_t uid, const net_policy& policy) {
    const int changed = change(
        "UPDATE net_policy SET status = ?, text1 = ?, text2 = ?, text3 = ?, tag = ? "
        "WHERE uid = ? AND kind = ? AND name = ?",
        {std::int64_t{policy.status}, policy.texts[0], policy.texts[1], policy.texts[2], std::int64_t{policy.tag},
         std::int64_t{uid}, kind.word, policy.name});
    require_change(changed, policy.name, " has no network policy");
}

void remove(const policy_kind& kind, std::uint32_t uid, const char* name) {
    const std::string cut_text = cut_name(kind, name);
    const int changed = change("DELETE FROM net_policy WHERE uid = ? AND kind = ? AND name = ?",
                               {std::int64_t{uid}, kind.word, cut_text});
    require_change(changed, cut_text, " has no network policy");
}

net_policy package_policy(const char* package, std::int32_t status, const char* icon, const char* desktop,
                          std::int32_t tag) {
    return {cut_name(package_kind, package), status, cut_texts(package_kind, {icon, desktop, nullptr}), tag};
}

net_policy program_policy(const char* path, std::int32_t status, const char* label, const char* text1,
                          const char* text2, std::int32_t tag) {
    return {cut_name(program_kind, path), status, cut_texts(program_kind, {label, text1, text2}), tag};
}

}  // namespace

netctl_pkg_record* orvex_netctl_pkg_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return guard(__func__, [&] { return read_all<netctl_pkg_record>(package_kind, uid, count); });
}

netctl_ext_record* orvex_netctl_ext_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return guard(__func__, [&] { return read_all<netctl_ext_record>(program_kind, uid, count); });
}

netctl_pkg_record* orvex_netctl_pkg_read_node_with_uid(std::uint32_t uid, const char* package) {
    return guard(__func__, [&] { return read_one<netctl_pkg_record>(package_kind, uid, package); });
}

int orvex_netctl_pkg_add(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                         const char* desktop, std::int32_t tag) {
    return guard_change(__func__, [&] { add(package_kind, uid, package_policy(package, status, icon, desktop, tag)); });
}

int orvex_netctl_pkg_update(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                            const char* desktop, std::int32_t tag) {
    return guard_change(__func__,
                        [&] { update(package_kind, uid, package_policy(package, status, icon, desktop, tag)); });
}

int orvex_netctl_pkg_remove(std::uint32_t uid, const char* package) {
    return guard_change(__func__, [&] { remove(package_kind, uid, package); });
}

netctl_ext_record* orvex_netctl_ext_read_node_with_uid(std::uint32_t uid, const char* path) {
    return guard(__func__, [&] { return read_one<netctl_ext_record>(program_kind, uid, path); });
}

int orvex_netctl_ext_add(std::uint32_t uid, const char* path, std::int32_t status, const char* label, const char* text1,
                         const char* text2, std::int32_t tag) {
    return guard_change(__func__,
                        [&] { add(program_kind, uid, program_policy(path, status, label, text1, text2, tag)); });
}

int orvex_netctl_ext_update(std::uint32_t uid, const char* path, std::int32_t status, const char* label,
                            const char* text1, const char* text2, std::int32_t tag) {
    return guard_change(__func__,
                        [&] { update(program_kind, uid, program_policy(path, status, label, text1, text2, tag)); });
}

int orvex_netctl_remove(std::uint32_t uid, const char* path) {
    return guard_change(__func__, [&] { remove(program_kind, uid, path); });
}
