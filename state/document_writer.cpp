// SPDX-License-Identifier: Apache-2.0
#include <nlohmann/json.hpp>
#include <utility>

#include "state/document.h"
#include "state/text.h"

namespace state {
namespace {

using nlohmann::ordered_json;

constexpr int indentation = 2;

/// Puts a field behind all others. The usual ways look first whether it is there, through all of the object.
void append_field(ordered_json& object, const std::string& field, ordered_json value) {
    object.get_ref<ordered_json::object_t&>().emplace_back(field, std::move(value));
}

ordered_json module_values(const policy& content) {
    ordered_json values = ordered_json::object();
    for (const std::string& name : module_names()) {
        if (const std::optional<std::string> word = content.module(name)) {
            values[name] = *word;
        }
    }
    return values;
}

ordered_json exception_values(const exception_sets& exceptions) {
    ordered_json values = ordered_json::object();
    for (std::size_t index = 0; index < exceptions.size(); ++index) {
        for (const std::string& name : exceptions[index]) {
            values[exception_specs[index].field].push_back(escape_name(name));
        }
    }
    return values;
}

ordered_json list_value(const list_spec& list, const policy_entries& entries) {
    ordered_json values = list.form == entry_form::plain ? ordered_json::array() : ordered_json::object();
    for (const auto& [name, entry] : entries) {
        if (!entry.is_listed) {
            continue;
        }
        switch (list.form) {
            case entry_form::plain:
                values.push_back(escape_name(name));
                break;
            case entry_form::word:
                append_field(values, escape_name(name), entry.word);
                break;
            case entry_form::exceptions:
                append_field(values, escape_name(name), exception_values(entry.exceptions));
                break;
        }
    }
    return values;
}

}  // namespace

std::string write_document(const policy& content) {
    ordered_json document;
    document["version"] = document_version;
    if (content.framework) {
        document["framework"] = *content.framework;
    }
    if (!content.modules.empty()) {
        document["modules"] = module_values(content);
    }
    for (const list_spec& list : all_lists()) {
        if (content.open_sections.contains(list.section)) {
            document[list.section]["exclusive"] = false;
        }
        if (const std::optional<policy_entries>& entries = content.list(list.id)) {
            document[list.section][list.field] = list_value(list, *entries);
        }
    }
    return document.dump(indentation) + "\n";
}

}  // namespace state
