// SPDX-License-Identifier: Apache-2.0
// liborvex_adv: network control.
#include "service/netctl.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/call.h"
#include "core/failure.h"
#include "core/heap.h"
#include "core/net_policy.h"
#include "core/paths.h"

using namespace local_service;

namespace {

/// The part of `text` that a field of `size` bytes can hold; null counts as empty.
std::string cut(const char* text, std::size_t size) {
    return text == nullptr ? "" : std::string(text, strnlen(text, size - 1));
}

std::string cut_name(const net_policy_kind& kind, const char* name) {
    std::string cut_text = cut(name, kind.name_size);
    if (cut_text.empty()) {
        throw failure("a network policy needs a name");
    }
    return cut_text;
}

std::array<std::string, 3> cut_texts(const net_policy_kind& kind, const std::array<const char*, 3>& texts) {
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
Record* read_all(const net_policy_kind& kind, std::uint32_t uid, std::int32_t* count) {
    const std::vector<net_policy> policies = read_net_policies(kind, uid);
    auto* records = hand_out<Record>(policies);
    *count = static_cast<std::int32_t>(policies.size());
    return records;
}

template <class Record>
Record* read_one(const net_policy_kind& kind, std::uint32_t uid, const char* name) {
    return hand_out<Record>(read_net_policies(kind, uid, cut_name(kind, name)));
}

net_policy package_policy(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                          const char* desktop, std::int32_t tag) {
    return {uid, cut_name(package_policy_kind, package), status,
            cut_texts(package_policy_kind, {icon, desktop, nullptr}), tag};
}

net_policy program_policy(std::uint32_t uid, const char* path, std::int32_t status, const char* label,
                          const char* text1, const char* text2, std::int32_t tag) {
    return {uid, cut_name(program_policy_kind, path), status, cut_texts(program_policy_kind, {label, text1, text2}),
            tag};
}

void write_record(value_writer& out, const netctl_pkg_record& record) {
    out.write_object({{"name", record.name},
                      {"status", record.status},
                      {"icon", record.icon},
                      {"desktop", record.desktop},
                      {"tag", record.tag}});
}

void write_record(value_writer& out, const netctl_ext_record& record) {
    out.write_object({{"path", record.path},
                      {"status", record.status},
                      {"label", record.label},
                      {"text1", record.text1},
                      {"text2", record.text2},
                      {"tag", record.tag}});
}

template <class Record>
void write_all(value_writer& out, const Record* records, std::int32_t count) {
    out.write_array(records, count, [&](const Record& record) { write_record(out, record); });
}

template <class Record>
void write_one(value_writer& out, const Record* record) {
    if (record == nullptr) {
        out.write_plain("null");
    } else {
        write_record(out, *record);
    }
}

}  // namespace

netctl_pkg_record* orvex_netctl_pkg_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return guard(
        __func__, {{"uid", uid}, {"count", count}},
        [&] { return read_all<netctl_pkg_record>(package_policy_kind, uid, count); },
        [&](value_writer& out, const netctl_pkg_record* all) { write_all(out, all, *count); });
}

netctl_ext_record* orvex_netctl_ext_read_all_data_with_uid(std::uint32_t uid, std::int32_t* count) {
    return guard(
        __func__, {{"uid", uid}, {"count", count}},
        [&] { return read_all<netctl_ext_record>(program_policy_kind, uid, count); },
        [&](value_writer& out, const netctl_ext_record* all) { write_all(out, all, *count); });
}

netctl_pkg_record* orvex_netctl_pkg_read_node_with_uid(std::uint32_t uid, const char* package) {
    return guard(
        __func__, {{"uid", uid}, {"package", package}},
        [&] { return read_one<netctl_pkg_record>(package_policy_kind, uid, package); }, write_one<netctl_pkg_record>);
}

int orvex_netctl_pkg_add(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                         const char* desktop, std::int32_t tag) {
    return guard_addition(
        __func__,
        {{"uid", uid}, {"package", package}, {"status", status}, {"icon", icon}, {"desktop", desktop}, {"tag", tag}},
        [&] { add_net_policy(package_policy_kind, package_policy(uid, package, status, icon, desktop, tag)); });
}

int orvex_netctl_pkg_update(std::uint32_t uid, const char* package, std::int32_t status, const char* icon,
                            const char* desktop, std::int32_t tag) {
    return guard_addition(
        __func__,
        {{"uid", uid}, {"package", package}, {"status", status}, {"icon", icon}, {"desktop", desktop}, {"tag", tag}},
        [&] { update_net_policy(package_policy_kind, package_policy(uid, package, status, icon, desktop, tag)); });
}

int orvex_netctl_pkg_remove(std::uint32_t uid, const char* package) {
    return guard_change(__func__, {{"uid", uid}, {"package", package}},
                        [&] { remove_net_policy(package_policy_kind, uid, cut_name(package_policy_kind, package)); });
}

netctl_ext_record* orvex_netctl_ext_read_node_with_uid(std::uint32_t uid, const char* path) {
    return guard(
        __func__, {{"uid", uid}, {"path", path}},
        [&] { return read_one<netctl_ext_record>(program_policy_kind, uid, path); }, write_one<netctl_ext_record>);
}

int orvex_netctl_ext_add(std::uint32_t uid, const char* path, std::int32_t status, const char* label, const char* text1,
                         const char* text2, std::int32_t tag) {
    return guard_addition(
        __func__,
        {{"uid", uid},
         {"path", path},
         {"status", status},
         {"label", label},
         {"text1", text1},
         {"text2", text2},
         {"tag", tag}},
        [&] { add_net_policy(program_policy_kind, program_policy(uid, path, status, label, text1, text2, tag)); });
}

int orvex_netctl_ext_update(std::uint32_t uid, const char* path, std::int32_t status, const char* label,
                            const char* text1, const char* text2, std::int32_t tag) {
    return guard_addition(
        __func__,
        {{"uid", uid},
         {"path", path},
         {"status", status},
         {"label", label},
         {"text1", text1},
         {"text2", text2},
         {"tag", tag}},
        [&] { update_net_policy(program_policy_kind, program_policy(uid, path, status, label, text1, text2, tag)); });
}

int orvex_netctl_remove(std::uint32_t uid, const char* path) {
    return guard_change(__func__, {{"uid", uid}, {"path", path}},
                        [&] { remove_net_policy(program_policy_kind, uid, cut_name(program_policy_kind, path)); });
}
