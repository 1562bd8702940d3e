// SPDX-License-Identifier: Apache-2.0
// What a host's policy consists of, as it is on the host and as a document wants it.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace state {

/// What makes a command end with an error, as the user reads it.
class failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A document that no commands can bring about.
class refusal : public failure {
public:
    explicit refusal(std::vector<std::string> problems)
        : failure("the document is refused"), problems_(std::move(problems)) {}

    /// What is wrong with it, a line each.
    const std::vector<std::string>& problems() const { return problems_; }

private:
    std::vector<std::string> problems_;
};

/// Words for the framework's global state.
inline constexpr const char* framework_disabled = "disabled";
inline constexpr const char* framework_enabled = "enabled";
inline constexpr const char* framework_permissive = "permissive";
inline constexpr std::array framework_words{framework_disabled, framework_enabled, framework_permissive};

/// Words for the state of a module.
inline constexpr const char* module_off_word = "off";
inline constexpr const char* module_on_word = "on";
inline constexpr const char* module_warning_word = "warning";
inline constexpr std::array module_words{module_off_word, module_on_word, module_warning_word};

/// Words for the state of a whitelisted file and for what a network policy says.
inline constexpr const char* whitelist_intact = "intact";
inline constexpr const char* whitelist_tampered = "tampered";
inline constexpr const char* net_allow = "allow";
inline constexpr const char* net_deny = "deny";
inline constexpr const char* unknown_word = "unknown";

/// Modules by the names that the status report has for them.
inline constexpr const char* exec_module = "exec";
inline constexpr const char* exec_script_module = "exec script";
inline constexpr const char* role_module = "3adm";

enum class object_sort { file, directory, package, kernel_module };

/// What stands beside the name of an object.
enum class entry_form { plain, word, exceptions };

/// The form of a path that the framework keeps.
enum class path_form { absolute, real };

/// What `orvex_policy` asks of an object before it takes it off its list.
enum class removal_rule { as_for_add, if_it_exists, nothing };

enum class list_id : std::size_t {
    exec_whitelist,
    exec_excepted_files,
    exec_excepted_directories,
    exec_excepted_packages,
    net_packages,
    net_programs,
    file_files,
    file_directories,
    file_packages,
    proc_programs,
    kmod_modules,
};
inline constexpr std::size_t list_count = 11;

/// One list of objects: where it stands in a document, and how `orvex_policy` names its objects.
struct list_spec {
    list_id id;
    /// The section of the document, which is also the module's word.
    const char* section;
    const char* field;
    object_sort sort;
    entry_form form;
    path_form path;
    removal_rule removal;
    /// What stands between "-A" or "-D" and the name.
    std::vector<std::string> options;
    /// Whether one command takes many names, with ':' between them.
    bool takes_many;
    /// The words that may stand beside a name.
    std::vector<std::string> words;
};

/// All lists, in the order of a document.
const std::array<list_spec, list_count>& all_lists();

/// The sections with lists, in the order of a document.
inline constexpr std::array sections{"exec", "net", "file", "proc", "kmod"};

/// The sorts of exceptions, with their fields in a document and their options.
struct exception_spec {
    object_sort sort;
    const char* field;
    const char* option;
};
inline constexpr std::array<exception_spec, 3> exception_specs{{
    {.sort = object_sort::file, .field = "excepted_files", .option = "-f"},
    {.sort = object_sort::directory, .field = "excepted_directories", .option = "-d"},
    {.sort = object_sort::package, .field = "excepted_packages", .option = "-P"},
}};

/// The exceptions of one object, in the order of `exception_specs`.
using exception_sets = std::array<std::set<std::string>, exception_specs.size()>;

struct policy_entry {
    /// Empty in a list without words.
    std::string word;
    exception_sets exceptions;
    /// False for an object that the host keeps exceptions of without protecting it.
    bool is_listed = true;
};
/// The objects of a list by name, sorted by their bytes.
using policy_entries = std::map<std::string, policy_entry>;

/// The policy of a host, or what a document says of one. What is not there is not looked at.
struct policy {
    std::optional<std::string> framework;
    std::map<std::string, std::string> modules;
    std::array<std::optional<policy_entries>, list_count> lists;
    /// Sections in which other objects than the document's may stay.
    std::set<std::string> open_sections;
    /// What script control will be when execution control, now off, is switched on. Known of a host only.
    std::string remembered_script;

    std::optional<policy_entries>& list(list_id id) { return lists[static_cast<std::size_t>(id)]; }
    const std::optional<policy_entries>& list(list_id id) const { return lists[static_cast<std::size_t>(id)]; }

    /// The state of a module, where it is there.
    std::optional<std::string> module(const std::string& name) const;
};

/// The modules in the order of the status report.
const std::vector<std::string>& module_names();

/// Returns a place in a document, as a JSON pointer.
std::string place_of(std::initializer_list<std::string> fields);

}  // namespace state
