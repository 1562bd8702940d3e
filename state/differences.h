// SPDX-License-Identifier: Apache-2.0
// What differs between a host and a document.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "state/policy.h"

namespace state {

/// A word that is another one on the host than in the document.
struct word_change {
    std::string host;
    std::string wanted;
};

/// Names to be added to a set and to be taken from it.
struct set_change {
    std::set<std::string> added;
    std::set<std::string> removed;

    bool empty() const { return added.empty() && removed.empty(); }
};
using exception_changes = std::array<set_change, exception_specs.size()>;

/// An object of a list that differs.
struct object_change {
    std::string name;
    /// Its words; nothing where it is not on the list.
    std::optional<std::string> host;
    std::optional<std::string> wanted;
    /// Changes of its exceptions. With an object that goes all of them go without being named here.
    exception_changes exceptions;

    bool is_added() const { return !host && wanted; }
    bool is_removed() const { return host && !wanted; }
    bool is_updated() const { return host && wanted && host != wanted; }
};

struct differences {
    std::optional<word_change> framework;
    std::map<std::string, word_change> modules;
    std::array<std::vector<object_change>, list_count> lists;

    const std::vector<object_change>& list(list_id id) const { return lists[static_cast<std::size_t>(id)]; }
    bool empty() const;

    /// Tells whether a list of the section differs.
    bool touch(const std::string& section) const;
};

/// Compares what the document `wanted` says with `host`. With `keeps_others` nothing has to go.
differences find_differences(const policy& host, const policy& wanted, bool keeps_others);

/// Returns a line for each difference: "+" for what the host lacks, "-" for what it has beyond the document, "~" for
/// what is another. With `is_coloured` they are coloured for a terminal.
std::vector<std::string> tell_differences(const differences& all, bool is_coloured);

/// Returns the differences as a JSON list, with a line break at its end.
std::string write_differences(const differences& all);

}  // namespace state
