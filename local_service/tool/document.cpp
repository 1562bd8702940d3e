// SPDX-License-Identifier: Apache-2.0
#include "tool/document.h"

#include <nlohmann/json.hpp>

#include "core/json_text.h"
#include "tool/document_fields.h"

namespace local_service {
namespace {

using nlohmann::ordered_json;

constexpr int indentation = 2;

ordered_json text_value(const std::string& text) {
    if (is_utf8(text)) {
        return text;
    }
    return {{"hex", hex_digits(text)}};
}

ordered_json state_value(const framework_state& states) {
    return {{"now", word_of_status(states.now)},
            {"after_restart", word_of_status(states.after_restart)},
            {"secret_scene", states.is_secret_scene},
            {"restarts", states.restarts},
            {"requested_restarts", states.requested_restarts}};
}

ordered_json module_values(const framework_state& states) {
    ordered_json all = ordered_json::object();
    for (const known_module& known : modules) {
        for (const module_state& module : states.modules) {
            if (module.number == known.number) {
                all[known.name] = {{"now", module.now != 0}, {"after_restart", module.after_restart != 0}};
            }
        }
    }
    return all;
}

ordered_json whitelist_value(const std::vector<whitelisted_file>& files) {
    ordered_json all = ordered_json::array();
    for (const whitelisted_file& file : files) {
        all.push_back({{"path", text_value(file.path)}, {"sha256", file.digest}, {"state", word_of(status_of(file))}});
    }
    return all;
}

ordered_json net_value(std::size_t part, const std::vector<net_policy>& policies) {
    ordered_json all = ordered_json::array();
    for (const net_policy& policy : policies) {
        ordered_json fields = {{name_field(net_parts[part].sort), text_value(policy.name)},
                               {"uid", policy.uid},
                               {"status", policy.status},
                               {"tag", policy.tag}};
        for (std::size_t index = 0; index < policy.texts.size(); ++index) {
            if (const char* field = net_text_fields[part][index]; field != nullptr) {
                fields[field] = text_value(policy.texts[index]);
            }
        }
        all.push_back(std::move(fields));
    }
    return all;
}

ordered_json texts_value(const std::vector<std::string>& texts) {
    ordered_json all = ordered_json::array();
    for (const std::string& text : texts) {
        all.push_back(text_value(text));
    }
    return all;
}

ordered_json exceptions_value(text_sort sort, const std::vector<excepted_object>& objects) {
    ordered_json all = ordered_json::array();
    for (const excepted_object& object : objects) {
        ordered_json exceptions = ordered_json::array();
        for (const stored_exception& exception : object.exceptions) {
            exceptions.push_back({{"kind", word_of_exception(exception.kind)}, {"text", text_value(exception.text)}});
        }
        all.push_back({{name_field(sort), text_value(object.resource)}, {"exceptions", std::move(exceptions)}});
    }
    return all;
}

}  // namespace

std::string make_document(const store_content& content) {
    ordered_json document;
    document["version"] = document_version;
    document["framework"] = state_value(content.states);
    document["modules"] = module_values(content.states);
    document["exec"]["whitelist"] = whitelist_value(content.whitelist);
    for (std::size_t index = 0; index < net_parts.size(); ++index) {
        document[net_parts[index].group][net_parts[index].field] = net_value(index, content.net[index]);
    }
    for (std::size_t index = 0; index < text_parts.size(); ++index) {
        document[text_parts[index].group][text_parts[index].field] = texts_value(content.texts[index]);
    }
    for (std::size_t index = 0; index < exception_parts.size(); ++index) {
        const auto& part = exception_parts[index];
        document[part.group][part.field] = exceptions_value(part.sort, content.exceptions[index]);
    }
    return document.dump(indentation) + "\n";
}

}  // namespace local_service
