// SPDX-License-Identifier: Apache-2.0
#include "state/policy.h"

#include <nlohmann/json.hpp>

#include "framework/module_base.h"

namespace state {
namespace {

using enum list_id;
using enum object_sort;
using enum entry_form;
using enum path_form;
using enum removal_rule;

std::vector<std::string> read_module_names() {
    COrvexBase base;
    base.init_module_table();
    std::vector<std::string> names;
    for (const orvex_module_type type : base.get_module_types()) {
        names.push_back(base.get_module_names().at(type));
    }
    return names;
}

list_spec exec_exceptions(list_id id, const char* field, object_sort sort, const char* option) {
    return {id, "exec", field, sort, plain, absolute, as_for_add, {"-e", option}, true, {}};
}

list_spec protected_objects(list_id id, const char* field, object_sort sort, const char* option) {
    const removal_rule removal = sort == package ? nothing : if_it_exists;
    return {id, "file", field, sort, exceptions, real, removal, {option}, true, {}};
}

}  // namespace

const std::array<list_spec, list_count>& all_lists() {
    static const std::vector<std::string> whitelist_words{whitelist_intact, whitelist_tampered, unknown_word};
    static const std::vector<std::string> net_words{net_allow, net_deny, unknown_word};
    static const std::array<list_spec, list_count> lists{{
        {exec_whitelist, "exec", "whitelist", file, word, absolute, as_for_add, {"-f"}, true, whitelist_words},
        exec_exceptions(exec_excepted_files, "excepted_files", file, "-f"),
        exec_exceptions(exec_excepted_directories, "excepted_directories", directory, "-d"),
        exec_exceptions(exec_excepted_packages, "excepted_packages", package, "-P"),
        {net_packages, "net", "packages", package, word, absolute, nothing, {"-P"}, false, net_words},
        {net_programs, "net", "programs", file, word, absolute, nothing, {"-f"}, false, net_words},
        protected_objects(file_files, "files", file, "-f"),
        protected_objects(file_directories, "directories", directory, "-d"),
        protected_objects(file_packages, "packages", package, "-P"),
        {proc_programs, "proc", "programs", file, exceptions, real, as_for_add, {"-f"}, true, {}},
        {kmod_modules, "kmod", "modules", kernel_module, plain, absolute, nothing, {"-n"}, false, {}},
    }};
    return lists;
}

std::optional<std::string> policy::module(const std::string& name) const {
    const auto found = modules.find(name);
    return found == modules.end() ? std::nullopt : std::optional(found->second);
}

const std::vector<std::string>& module_names() {
    static const std::vector<std::string> names = read_module_names();
    return names;
}

std::string place_of(std::initializer_list<std::string> fields) {
    nlohmann::json::json_pointer place;
    for (const std::string& field : fields) {
        place.push_back(field);
    }
    return place.to_string();
}

}  // namespace state
