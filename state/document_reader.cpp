// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "state/document.h"
#include "state/text.h"

namespace state {
namespace {

using nlohmann::json;

[[noreturn]] void refuse(const std::string& place, const std::string& problem) {
    throw failure((place.empty() ? "the document" : place) + ": " + problem);
}

/// Refuses fields that stand in an object twice, of which the parser would keep one. Its own way of being watched takes
/// a time that grows with the square of a list's length.
class field_watch : public json::json_sax_t {
public:
    bool start_object(std::size_t /*elements*/) override {
        objects_.emplace_back();
        return true;
    }

    bool end_object() override {
        objects_.pop_back();
        return true;
    }

    bool key(std::string& field) override {
        open_object& object = objects_.back();
        object.last = field;
        if (!object.fields.insert(field).second) {
            json::json_pointer place;
            for (const open_object& open : objects_) {
                place.push_back(open.last);
            }
            refuse(place.to_string(), "stands there twice");
        }
        return true;
    }

    /// Faults of syntax are left to the parser, which tells them.
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& /*error*/) override {
        return false;
    }

    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(json::number_integer_t /*value*/) override { return true; }
    bool number_unsigned(json::number_unsigned_t /*value*/) override { return true; }
    bool number_float(json::number_float_t /*value*/, const std::string& /*text*/) override { return true; }
    bool string(std::string& /*value*/) override { return true; }
    bool binary(json::binary_t& /*value*/) override { return true; }
    bool start_array(std::size_t /*elements*/) override { return true; }
    bool end_array() override { return true; }

private:
    struct open_object {
        std::set<std::string> fields;
        std::string last;
    };

    std::vector<open_object> objects_;
};

/// What the parser says, without its own number of the fault.
std::string plain_text(const json::exception& error) {
    const std::string text = error.what();
    const std::string said = text.substr(text.find("] ") + 2);
    constexpr std::string_view intro = "parse error at ";
    return said.starts_with(intro) ? said.substr(intro.size()) : said;
}

json parse(const std::string& document) {
    try {
        json parsed = json::parse(document);
        field_watch watch;
        json::sax_parse(document, &watch);
        return parsed;
    } catch (const json::exception& error) {
        throw failure(plain_text(error));
    }
}

/// A value in the document, with its place.
class node {
public:
    node(const json& value, json::json_pointer place) : value_(value), place_(std::move(place)) {}

    [[noreturn]] void refuse(const std::string& problem) const { state::refuse(place_.to_string(), problem); }

    /// Shows `look` each field of this object with its value.
    template <class Look>
    void for_each_field(Look look) const {
        if (!value_.is_object()) {
            refuse("an object is needed here");
        }
        for (const auto& [field, value] : value_.items()) {
            look(field, node(value, place_ / field));
        }
    }

    /// Shows `look` each value of this list.
    template <class Look>
    void for_each_element(Look look) const {
        if (!value_.is_array()) {
            refuse("a list is needed here");
        }
        for (std::size_t index = 0; index < value_.size(); ++index) {
            look(node(value_[index], place_ / index));
        }
    }

    std::string text() const {
        if (!value_.is_string()) {
            refuse("a text is needed here");
        }
        return value_.get<std::string>();
    }

    bool truth() const {
        if (!value_.is_boolean()) {
            refuse("true or false is needed here");
        }
        return value_.get<bool>();
    }

    bool equals(int number) const { return value_ == number; }

    /// The one of `words` that stands here.
    template <class Words>
    std::string one_of(const Words& words) const {
        std::string all;
        for (const auto& word : words) {
            if (value_ == word) {
                return word;
            }
            all += (all.empty() ? "" : ", ") + std::string(word);
        }
        refuse("one of these is needed here: " + all);
    }

    /// The name that `text`, at this place, stands for.
    std::string name(const std::string& text) const {
        const std::optional<std::string> name = unescape_name(text);
        if (!name) {
            refuse(R"(in a name a backslash begins \\ or \xHH)");
        }
        if (name->empty()) {
            refuse("an empty name");
        }
        if (name->find('\0') != std::string::npos) {
            refuse("a name cannot hold a byte 0");
        }
        return *name;
    }

private:
    const json& value_;
    json::json_pointer place_;
};

std::set<std::string> read_names(const node& list) {
    std::set<std::string> names;
    list.for_each_element([&](const node& element) {
        if (!names.insert(element.name(element.text())).second) {
            element.refuse("stands there twice");
        }
    });
    return names;
}

exception_sets read_exceptions(const node& object) {
    exception_sets exceptions;
    object.for_each_field([&](const std::string& field, const node& value) {
        for (std::size_t index = 0; index < exception_specs.size(); ++index) {
            if (field == exception_specs[index].field) {
                exceptions[index] = read_names(value);
                return;
            }
        }
        value.refuse("unknown field");
    });
    return exceptions;
}

policy_entries read_list(const list_spec& list, const node& value) {
    policy_entries entries;
    if (list.form == entry_form::plain) {
        for (const std::string& name : read_names(value)) {
            entries[name];
        }
        return entries;
    }
    value.for_each_field([&](const std::string& field, const node& object) {
        const auto [entry, is_new] = entries.try_emplace(object.name(field));
        if (!is_new) {
            object.refuse("stands there twice, in two spellings");
        }
        if (list.form == entry_form::word) {
            entry->second.word = object.one_of(list.words);
        } else {
            entry->second.exceptions = read_exceptions(object);
        }
    });
    return entries;
}

/// Reads `section` and tells whether there is one of that name.
bool read_section(const std::string& section, const node& value, policy& content) {
    if (std::find(sections.begin(), sections.end(), section) == sections.end()) {
        return false;
    }
    value.for_each_field([&](const std::string& field, const node& inner) {
        if (field == "exclusive") {
            if (!inner.truth()) {
                content.open_sections.insert(section);
            }
            return;
        }
        for (const list_spec& list : all_lists()) {
            if (section == list.section && field == list.field) {
                content.list(list.id) = read_list(list, inner);
                return;
            }
        }
        inner.refuse("unknown field");
    });
    return true;
}

void read_modules(const node& value, policy& content) {
    value.for_each_field([&](const std::string& field, const node& word) {
        const std::vector<std::string>& names = module_names();
        if (std::find(names.begin(), names.end(), field) == names.end()) {
            word.refuse("unknown module");
        }
        content.modules[field] = word.one_of(module_words);
    });
}

/// Refuses states that no host has at the same time.
void check_states(const policy& content) {
    for (const auto& [name, word] : content.modules) {
        if (content.framework == framework_disabled && word != module_off_word) {
            refuse(place_of({"modules", name}), "a module cannot be " + word + " while the framework is disabled");
        }
    }
    const std::string script = content.module(exec_script_module).value_or(module_off_word);
    if (content.module(exec_module) == module_off_word && script != module_off_word) {
        refuse(place_of({"modules", exec_script_module}),
               "script control cannot be " + script + " while execution control is off");
    }
}

}  // namespace

policy read_document(const std::string& document) {
    const json parsed = parse(document);
    const node whole(parsed, json::json_pointer());
    policy content;
    bool has_version = false;
    whole.for_each_field([&](const std::string& field, const node& value) {
        if (field == "version") {
            has_version = value.equals(document_version);
            if (!has_version) {
                value.refuse("only version " + std::to_string(document_version) + " can be read");
            }
        } else if (field == "framework") {
            content.framework = value.one_of(framework_words);
        } else if (field == "modules") {
            read_modules(value, content);
        } else if (!read_section(field, value, content)) {
            value.refuse("unknown field");
        }
    });
    if (!has_version) {
        whole.refuse("the field 'version' is missing");
    }
    check_states(content);
    return content;
}

}  // namespace state
