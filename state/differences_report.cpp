// SPDX-License-Identifier: Apache-2.0
#include <nlohmann/json.hpp>
#include <string_view>

#include "state/differences.h"
#include "state/text.h"

namespace state {
namespace {

/// One difference, in the form in which both reports tell it.
struct told_difference {
    /// The fields of the document that lead to the list or the set, and the name that is in question there.
    std::vector<std::string> place;
    std::string name;
    std::optional<std::string> host;
    std::optional<std::string> wanted;
};

/// Shows `look` one after the other.
template <class Look>
void for_each_difference(const differences& all, Look look) {
    if (all.framework) {
        look(told_difference{{}, "framework", all.framework->host, all.framework->wanted});
    }
    for (const auto& [name, change] : all.modules) {
        look(told_difference{{"modules"}, name, change.host, change.wanted});
    }
    for (const list_spec& list : all_lists()) {
        for (const object_change& object : all.list(list.id)) {
            if (object.host != object.wanted) {
                look(told_difference{{list.section, list.field}, object.name, object.host, object.wanted});
            }
            for (std::size_t index = 0; index < exception_specs.size(); ++index) {
                const std::vector<std::string> place{list.section, list.field, object.name,
                                                     exception_specs[index].field};
                for (const std::string& name : object.exceptions[index].removed) {
                    look(told_difference{place, name, "", std::nullopt});
                }
                for (const std::string& name : object.exceptions[index].added) {
                    look(told_difference{place, name, std::nullopt, ""});
                }
            }
        }
    }
}

std::string tell(const told_difference& difference) {
    std::string line = !difference.host ? "+" : !difference.wanted ? "-" : "~";
    for (const std::string& field : difference.place) {
        line += " " + quote_word(field);
    }
    line += (difference.place.empty() ? " " : ": ") + quote_word(difference.name);
    if (difference.host && difference.wanted) {
        return line + " is " + *difference.host + ", to be " + *difference.wanted;
    }
    const std::string& word = difference.host ? *difference.host : *difference.wanted;
    return word.empty() ? line : line + " " + word;
}

std::string colour(const std::string& line) {
    constexpr std::string_view red = "\033[31m";
    constexpr std::string_view green = "\033[32m";
    constexpr std::string_view yellow = "\033[33m";
    constexpr std::string_view plain = "\033[0m";
    const std::string_view colour = line[0] == '+' ? green : line[0] == '-' ? red : yellow;
    return std::string(colour).append(line).append(plain);
}

nlohmann::ordered_json to_json(const told_difference& difference) {
    nlohmann::json::json_pointer place;
    for (const std::string& field : difference.place) {
        place.push_back(escape_name(field));
    }
    nlohmann::ordered_json value{
        {"change", !difference.host     ? "add"
                   : !difference.wanted ? "remove"
                                        : "update"},
        {"place", place.to_string()},
        {"name", escape_name(difference.name)},
    };
    if (difference.host && !difference.host->empty()) {
        value["host"] = *difference.host;
    }
    if (difference.wanted && !difference.wanted->empty()) {
        value["document"] = *difference.wanted;
    }
    return value;
}

}  // namespace

std::vector<std::string> tell_differences(const differences& all, bool is_coloured) {
    std::vector<std::string> lines;
    for_each_difference(all, [&](const told_difference& difference) {
        const std::string line = tell(difference);
        lines.push_back(is_coloured ? colour(line) : line);
    });
    return lines;
}

std::string write_differences(const differences& all) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for_each_difference(all, [&](const told_difference& difference) { list.push_back(to_json(difference)); });
    return list.dump(2) + "\n";
}

}  // namespace state
