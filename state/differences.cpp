// SPDX-License-Identifier: Apache-2.0
#include "state/differences.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace state {
namespace {

std::set<std::string> subtract(const std::set<std::string>& names, const std::set<std::string>& others) {
    std::set<std::string> rest;
    std::set_difference(names.begin(), names.end(), others.begin(), others.end(), std::inserter(rest, rest.end()));
    return rest;
}

exception_changes compare(const exception_sets& host, const exception_sets& wanted, bool keeps_others) {
    exception_changes changes;
    for (std::size_t index = 0; index < changes.size(); ++index) {
        changes[index].added = subtract(wanted[index], host[index]);
        if (!keeps_others) {
            changes[index].removed = subtract(host[index], wanted[index]);
        }
    }
    return changes;
}

bool is_change(const object_change& object) {
    return object.host != object.wanted || std::any_of(object.exceptions.begin(), object.exceptions.end(),
                                                       [](const set_change& change) { return !change.empty(); });
}

std::vector<object_change> compare(const policy_entries& host, const policy_entries& wanted, bool keeps_others) {
    std::vector<object_change> changes;
    for (const auto& [name, entry] : wanted) {
        const auto found = host.find(name);
        const policy_entry there = found == host.end() ? policy_entry{{}, {}, false} : found->second;
        object_change object{name, there.is_listed ? std::optional(there.word) : std::nullopt, entry.word,
                             compare(there.exceptions, entry.exceptions, keeps_others)};
        if (is_change(object)) {
            changes.push_back(std::move(object));
        }
    }
    for (const auto& [name, entry] : host) {
        if (!keeps_others && entry.is_listed && !wanted.contains(name)) {
            changes.push_back({name, entry.word, std::nullopt, {}});
        }
    }
    return changes;
}

}  // namespace

bool differences::empty() const {
    return !framework && modules.empty() &&
           std::all_of(lists.begin(), lists.end(), [](const auto& changes) { return changes.empty(); });
}

bool differences::touch(const std::string& section) const {
    return std::any_of(all_lists().begin(), all_lists().end(),
                       [&](const list_spec& spec) { return section == spec.section && !list(spec.id).empty(); });
}

differences find_differences(const policy& host, const policy& wanted, bool keeps_others) {
    differences all;
    if (wanted.framework && wanted.framework != host.framework) {
        all.framework = {host.framework.value(), *wanted.framework};
    }
    for (const auto& [name, word] : wanted.modules) {
        if (host.modules.at(name) != word) {
            all.modules[name] = {host.modules.at(name), word};
        }
    }
    for (const list_spec& list : all_lists()) {
        if (const std::optional<policy_entries>& entries = wanted.list(list.id)) {
            all.lists[static_cast<std::size_t>(list.id)] =
                compare(*host.list(list.id), *entries, keeps_others || wanted.open_sections.contains(list.section));
        }
    }
    return all;
}

}  // namespace state
