// SPDX-License-Identifier: Apache-2.0
#include "state/host.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "framework/module_base.h"
#include "framework/owned.h"
#include "modules/exec/exec_records.h"
#include "modules/file/file_records.h"
#include "modules/proc/proc_records.h"
#include "service/exectl.h"
#include "service/kmodctl.h"
#include "service/netctl.h"
#include "service/status.h"

namespace state {
namespace {

using enum list_id;

/// What stands behind the path of a directory in the lists of the library.
constexpr std::string_view pattern_tail = "/*";

std::string word_of_framework(int status) {
    switch (status) {
        case orvex_status_disabled:
            return framework_disabled;
        case orvex_status_enabled:
            return framework_enabled;
        case orvex_status_permissive:
            return framework_permissive;
        default:
            throw failure("the framework's state cannot be read, it answered " + std::to_string(status));
    }
}

std::string word_of_module(const std::string& name, int status) {
    switch (status) {
        case orvex_module_off:
            return module_off_word;
        case orvex_module_on:
            return module_on_word;
        case orvex_module_warning:
            return module_warning_word;
        default:
            throw failure("the state of the module '" + name + "' cannot be read, it answered " +
                          std::to_string(status));
    }
}

/// While the framework is disabled its modules are off, whatever they were.
void read_states(policy& host) {
    const bool is_disabled = host.framework == framework_disabled;
    COrvexBase base;
    base.init_module_table();
    for (const auto& [type, name] : base.get_module_names()) {
        host.modules[name] = is_disabled ? module_off_word : word_of_module(name, orvex_scene_get_module_status(type));
    }
    // Script control is a part of execution control, and off with it.
    std::string& script = host.modules[exec_script_module];
    host.remembered_script = script;
    if (host.modules[exec_module] == module_off_word) {
        script = module_off_word;
    }
}

/// Adds the entry `text` of a list of paths to the files or, where it is a directory's pattern, to the directories.
template <class Add>
void sort_path(std::string_view text, Add add) {
    if (!text.ends_with(pattern_tail)) {
        add(object_sort::file, std::string(text));
        return;
    }
    text.remove_suffix(pattern_tail.size());
    add(object_sort::directory, text.empty() ? "/" : std::string(text));
}

void read_whitelist(policy_entries& entries) {
    const whole_whitelist whitelist;
    if (whitelist.result() != 0) {
        throw failure("the whitelist cannot be read, the service library answered " +
                      std::to_string(whitelist.result()));
    }
    for (const orvex_exectl_list_obj* link = whitelist.first(); link != nullptr; link = link->next) {
        if (link->obj.path == nullptr) {
            continue;
        }
        const bool is_tampered = link->obj.status == orvex_whitelist_tampered;
        const bool is_intact = link->obj.status == orvex_whitelist_intact;
        entries[link->obj.path].word = is_intact ? whitelist_intact : is_tampered ? whitelist_tampered : unknown_word;
    }
}

void read_names(const owned_list& list, policy_entries& entries) {
    for (const char* entry : list) {
        if (entry != nullptr) {
            entries[entry];
        }
    }
}

void read_paths(const owned_list& list, policy_entries& files, policy_entries& directories) {
    for (const char* entry : list) {
        if (entry != nullptr) {
            sort_path(entry, [&](object_sort sort, const std::string& path) {
                (sort == object_sort::file ? files : directories)[path];
            });
        }
    }
}

/// The network policies that `fetch` gives, by the names that `name_of` finds in them.
template <class Record, class NameOf>
void read_net(Record* (*fetch)(std::uint32_t, std::int32_t*), NameOf name_of, policy_entries& entries) {
    std::int32_t count = 0;
    const owned_memory<Record> records(fetch(0, &count));
    for (std::int32_t index = 0; records != nullptr && index < count; ++index) {
        const Record& record = records.get()[index];
        const bool is_allow = record.status == netctl_allow;
        const bool is_deny = record.status == netctl_deny;
        entries[name_of(record)].word = is_allow ? net_allow : is_deny ? net_deny : unknown_word;
    }
}

std::set<std::string>& set_of(exception_sets& exceptions, object_sort sort) {
    return exceptions[static_cast<std::size_t>(sort)];
}

void add_exception(std::string_view text, exception_sets& exceptions) {
    if (!text.starts_with('/')) {
        set_of(exceptions, object_sort::package).emplace(text);
        return;
    }
    sort_path(text, [&](object_sort sort, std::string path) { set_of(exceptions, sort).insert(std::move(path)); });
}

/// Puts the exceptions of each object beside it. The first record of an object counts, as in the listings.
template <class Records, class EntriesOf>
void read_exceptions(const Records& records, EntriesOf entries_of) {
    std::set<std::string_view> seen;
    for (const auto& record : records.all()) {
        if (record.resource == nullptr || !seen.insert(record.resource).second) {
            continue;
        }
        const auto put = [&](object_sort sort, const std::string& name) {
            const auto [found, is_new] = entries_of(sort).try_emplace(name);
            policy_entry& entry = found->second;
            entry.is_listed = !is_new;
            for (std::uint64_t index = 0; index < record.exception_count; ++index) {
                if (record.exceptions[index] != nullptr) {
                    add_exception(record.exceptions[index], entry.exceptions);
                }
            }
        };
        if (record.resource[0] == '/') {
            sort_path(record.resource, put);
        } else {
            put(object_sort::package, record.resource);
        }
    }
}

void read_file_protection(policy_entries& files, policy_entries& directories, policy_entries& packages) {
    read_paths(owned_list(orvex_scene_filectl_get_policy), files, directories);
    read_names(owned_list(orvex_scene_filectl_get_pkg_policy), packages);
    read_exceptions(
        filectl_records(orvex_scene_filectl_exception_get_policy), [&](object_sort sort) -> auto& {
            return sort == object_sort::file ? files : sort == object_sort::directory ? directories : packages;
        });
}

void read_process_protection(policy_entries& programs) {
    read_names(owned_list(orvex_scene_taskctl_get_policy), programs);
    policy_entries others;
    read_exceptions(
        taskctl_records(orvex_scene_taskctl_exception_get_policy), [&](object_sort sort) -> auto& {
            return sort == object_sort::file ? programs : others;
        });
}

}  // namespace

policy read_host() {
    policy host;
    host.framework = word_of_framework(orvex_scene_getstatus());
    read_states(host);
    host.lists.fill(policy_entries());
    const auto entries = [&](list_id id) -> policy_entries& { return *host.list(id); };
    read_whitelist(entries(exec_whitelist));
    read_paths(owned_list(orvex_scene_exectl_get_policy_for_file_permissive), entries(exec_excepted_files),
               entries(exec_excepted_directories));
    read_names(owned_list(orvex_scene_exectl_get_policy_for_package_permissive), entries(exec_excepted_packages));
    read_net(
        orvex_netctl_pkg_read_all_data_with_uid, [](const netctl_pkg_record& record) { return record.name; },
        entries(net_packages));
    read_net(
        orvex_netctl_ext_read_all_data_with_uid, [](const netctl_ext_record& record) { return record.path; },
        entries(net_programs));
    read_file_protection(entries(file_files), entries(file_directories), entries(file_packages));
    read_process_protection(entries(proc_programs));
    read_names(owned_list(orvex_scene_kmodctl_get_policy), entries(kmod_modules));
    return host;
}

}  // namespace state
