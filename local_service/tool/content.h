// SPDX-License-Identifier: Apache-2.0
// All that a store holds of states and policies, as it is shown and loaded. The log is no part of it, nor are wishes
// for failures.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "core/entry_list.h"
#include "core/exceptions.h"
#include "core/net_policy.h"
#include "core/states.h"
#include "core/whitelist.h"

namespace local_service {

/// What the texts of a list are.
enum class text_sort { path, name };

/// A part of the content: where it stands in a document, its heading for people, and where the store keeps it.
template <class Source>
struct content_part {
    const char* group;
    const char* field;
    const char* title;
    text_sort sort;
    Source source;
};

inline constexpr std::array<content_part<entry_list>, 10> text_parts{{
    {"exec", "excepted_files", "Programs that execution control leaves alone", text_sort::path, lists::exec_files},
    {"exec", "excepted_packages", "Packages that execution control leaves alone", text_sort::name,
     lists::exec_packages},
    {"file", "paths", "Read-only files and directories", text_sort::path, lists::protected_files},
    {"file", "packages", "Read-only packages", text_sort::name, lists::protected_packages},
    {"proc", "programs", "Programs protected from being killed", text_sort::path, lists::protected_programs},
    {"proc", "blacklist", "Programs that may not be protected from being killed", text_sort::path, lists::blacklist},
    {"kmod", "modules", "Kernel modules protected from unloading", text_sort::name, lists::kernel_modules},
    {"labels", "root", "Files labelled root", text_sort::path, lists::role_labels[0]},
    {"labels", "secadm", "Files labelled secadm", text_sort::path, lists::role_labels[1]},
    {"labels", "auditadm", "Files labelled auditadm", text_sort::path, lists::role_labels[2]},
}};

inline constexpr std::array<content_part<entry_list>, 3> exception_parts{{
    {"file", "path_exceptions", "Exceptions of read-only files and directories", text_sort::path,
     file_protection.excepted_paths},
    {"file", "package_exceptions", "Exceptions of read-only packages", text_sort::name,
     file_protection.excepted_packages},
    {"proc", "exceptions", "Exceptions of programs protected from being killed", text_sort::path,
     process_protection.excepted_paths},
}};

inline constexpr std::array<content_part<const net_policy_kind*>, 2> net_parts{{
    {"net", "packages", "Network policies of packages", text_sort::name, &package_policy_kind},
    {"net", "programs", "Network policies of programs", text_sort::path, &program_policy_kind},
}};

/// The lists stand in the order of their parts.
struct store_content {
    framework_state states;
    std::vector<whitelisted_file> whitelist;
    std::array<std::vector<net_policy>, net_parts.size()> net;
    std::array<std::vector<std::string>, text_parts.size()> texts;
    std::array<std::vector<excepted_object>, exception_parts.size()> exceptions;
};

/// Words for people and documents: of a state of the framework, a whitelist record and a kind of exception.
std::string word_of_status(int status);
std::string word_of(whitelist_status status);
std::string word_of_exception(std::int32_t kind);

/// Returns the content at one moment.
store_content read_content();

/// Puts `content` in place of what the store holds, all of it or nothing.
void write_content(const store_content& content);

}  // namespace local_service
