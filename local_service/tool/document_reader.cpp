// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "core/failure.h"
#include "tool/document.h"
#include "tool/document_fields.h"
#include "tool/document_node.h"

namespace local_service {
namespace {

using nlohmann::json;

/// Refuses the second of two fields with one name, of which the parser would take the last.
class field_watch {
public:
    bool operator()(int /*depth*/, json::parse_event_t event, const json& parsed) {
        if (event == json::parse_event_t::object_start) {
            open_objects_.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            open_objects_.pop_back();
        } else if (event == json::parse_event_t::key && !open_objects_.back().insert(parsed).second) {
            throw failure("the field '" + parsed.get<std::string>() + "' stands twice in one object");
        }
        return true;
    }

private:
    std::vector<std::set<std::string>> open_objects_;
};

json parse(const std::string& document) {
    try {
        return json::parse(document, field_watch());
    } catch (const json::parse_error& error) {
        const std::string text = error.what();
        const std::size_t place = text.find("line ");
        throw failure(place == std::string::npos ? text : text.substr(place));
    }
}

/// Adds `text` to those that a list has, each once.
void require_first(const document_node& node, std::set<std::string>& earlier, const std::string& text) {
    if (!earlier.insert(text).second) {
        node.refuse("stands on the list already");
    }
}

std::vector<std::string> read_texts(const document_node& list, text_sort sort) {
    std::vector<std::string> texts;
    std::set<std::string> earlier;
    for (const document_node& element : list.elements()) {
        texts.push_back(element.text(sort));
        require_first(element, earlier, texts.back());
    }
    return texts;
}

std::string read_digest(const document_node& node) {
    std::string digest = node.text(text_sort::name);
    constexpr std::size_t digits = 64;
    if (digest.size() != digits || digest.find_first_not_of("0123456789abcdef") != std::string::npos) {
        node.refuse("no SHA-256, which has 64 hexadecimal digits in lower case");
    }
    return digest;
}

/// Without a digest, the file is taken as it is now. The state is what a look at the file says, whatever stands there.
whitelisted_file read_whitelisted(const document_node& node) {
    node.require_fields({"path", "sha256", "state"});
    const document_node path = node.at("path");
    if (const auto state = node.find("state")) {
        state->choice(whitelist_statuses, [](whitelist_status status) { return word_of(status); });
    }
    if (const auto digest = node.find("sha256")) {
        return {path.text(text_sort::path), read_digest(*digest)};
    }
    try {
        return whitelist_record(path.text(text_sort::path));
    } catch (const failure& problem) {
        path.refuse(problem.what());
    }
}

std::vector<whitelisted_file> read_whitelist_in(const document_node& list) {
    std::vector<whitelisted_file> files;
    std::set<std::string> earlier;
    for (const document_node& element : list.elements()) {
        files.push_back(read_whitelisted(element));
        require_first(element, earlier, files.back().path);
    }
    return files;
}

std::int32_t read_int32(const document_node& node) {
    using limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(node.integer(limits::min(), limits::max()));
}

net_policy read_net_policy(const document_node& node, std::size_t part) {
    const net_policy_kind& kind = *net_parts[part].source;
    const text_sort sort = net_parts[part].sort;
    std::vector<std::string> fields{name_field(sort), "uid", "status", "tag"};
    for (const char* field : net_text_fields[part]) {
        if (field != nullptr) {
            fields.emplace_back(field);
        }
    }
    node.require_fields(fields);
    const document_node name = node.at(name_field(sort));
    name.text_within(kind.name_size);
    net_policy policy{0, name.text(sort), read_int32(node.at("status")), {}, 0};
    if (const auto uid = node.find("uid")) {
        policy.uid = static_cast<std::uint32_t>(uid->integer(0, std::numeric_limits<std::uint32_t>::max()));
    }
    if (const auto tag = node.find("tag")) {
        policy.tag = read_int32(*tag);
    }
    for (std::size_t index = 0; index < policy.texts.size(); ++index) {
        const char* field = net_text_fields[part][index];
        if (const auto text = field == nullptr ? std::nullopt : node.find(field)) {
            policy.texts[index] = text->text_within(kind.text_sizes[index]);
        }
    }
    return policy;
}

std::vector<net_policy> read_net(const document_node& list, std::size_t part) {
    std::vector<net_policy> policies;
    std::set<std::string> earlier;
    for (const document_node& element : list.elements()) {
        policies.push_back(read_net_policy(element, part));
        require_first(element, earlier, std::to_string(policies.back().uid) + " " + policies.back().name);
    }
    return policies;
}

stored_exception read_exception(const document_node& node) {
    node.require_fields({"kind", "text"});
    const std::int32_t kind = node.at("kind").choice(exception_kinds, word_of_exception);
    const document_node text = node.at("text");
    const std::string stored = text.text(kind == orvex_kind_pkg ? text_sort::name : text_sort::path);
    if (kind == orvex_kind_dir && (stored.size() < 2 || stored.substr(stored.size() - 2) != "/*")) {
        text.refuse("a directory stands with a '/*' behind it");
    }
    return {kind, stored};
}

excepted_object read_excepted(const document_node& node, text_sort sort) {
    node.require_fields({name_field(sort), "exceptions"});
    excepted_object object{node.at(name_field(sort)).text(sort), {}};
    std::set<std::string> earlier;
    for (const document_node& element : node.at("exceptions").elements()) {
        object.exceptions.push_back(read_exception(element));
        require_first(element, earlier,
                      std::to_string(object.exceptions.back().kind) + " " + object.exceptions.back().text);
    }
    if (object.exceptions.empty()) {
        node.refuse("an object without exceptions");
    }
    return object;
}

std::vector<excepted_object> read_excepted_objects(const document_node& list, text_sort sort) {
    std::vector<excepted_object> objects;
    std::set<std::string> earlier;
    for (const document_node& element : list.elements()) {
        objects.push_back(read_excepted(element, sort));
        require_first(element, earlier, objects.back().resource);
    }
    return objects;
}

void read_framework(const document_node& node, framework_state& states) {
    node.require_fields({"now", "after_restart", "secret_scene", "restarts", "requested_restarts"});
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (const auto now = node.find("now")) {
        states.now = now->choice(status_values, word_of_status);
        states.after_restart = states.now;
    }
    if (const auto later = node.find("after_restart")) {
        states.after_restart = later->choice(status_values, word_of_status);
    }
    if (const auto scene = node.find("secret_scene")) {
        states.is_secret_scene = scene->truth();
    }
    if (const auto restarts = node.find("restarts")) {
        states.restarts = restarts->integer(0, most);
    }
    if (const auto restarts = node.find("requested_restarts")) {
        states.requested_restarts = restarts->integer(0, most);
    }
}

module_state read_module(const document_node& node, int number, bool is_framework_disabled) {
    node.require_fields({"now", "after_restart"});
    const document_node now = node.at("now");
    if (now.truth() && is_framework_disabled) {
        now.refuse("no module is on while the framework is disabled");
    }
    return {number, now.truth() ? 1 : 0, node.at("after_restart").truth() ? 1 : 0};
}

void read_modules(const document_node& node, framework_state& states) {
    std::vector<std::string> names;
    names.reserve(modules.size());
    for (const known_module& module : modules) {
        names.emplace_back(module.name);
    }
    node.require_fields(names);
    for (const known_module& module : modules) {
        if (const auto state = node.find(module.name)) {
            states.modules.push_back(read_module(*state, module.number, states.now == orvex_status_disabled));
        }
    }
}

/// Calls `read` for the value of the field `field` in `group`, where both are there.
template <class Read>
void with_field(const document_node& document, const char* group, const char* field, Read read) {
    if (const auto found_group = document.find(group)) {
        if (const auto found = found_group->find(field)) {
            read(*found);
        }
    }
}

std::vector<std::string> fields_of(const std::string& group) {
    std::vector<std::string> fields;
    const auto collect = [&](const auto& parts) {
        for (const auto& part : parts) {
            if (part.group == group) {
                fields.emplace_back(part.field);
            }
        }
    };
    if (group == "exec") {
        fields.emplace_back("whitelist");
    }
    collect(net_parts);
    collect(text_parts);
    collect(exception_parts);
    return fields;
}

void require_known_fields(const document_node& document) {
    const std::vector<std::string> groups{"exec", "net", "file", "proc", "kmod", "labels"};
    std::vector<std::string> known{"version", "framework", "modules"};
    known.insert(known.end(), groups.begin(), groups.end());
    document.require_fields(known);
    for (const std::string& group : groups) {
        if (const auto found = document.find(group)) {
            found->require_fields(fields_of(group));
        }
    }
}

void require_version(const document_node& document) {
    const document_node version = document.at("version");
    if (version.integer(0, std::numeric_limits<std::int32_t>::max()) != document_version) {
        version.refuse("unknown, as only version " + std::to_string(document_version) + " can be read");
    }
}

void read_parts(const document_node& document, store_content& content) {
    with_field(document, "exec", "whitelist",
               [&](const document_node& list) { content.whitelist = read_whitelist_in(list); });
    for (std::size_t index = 0; index < net_parts.size(); ++index) {
        with_field(document, net_parts[index].group, net_parts[index].field,
                   [&](const document_node& list) { content.net[index] = read_net(list, index); });
    }
    for (std::size_t index = 0; index < text_parts.size(); ++index) {
        const auto& part = text_parts[index];
        with_field(document, part.group, part.field,
                   [&](const document_node& list) { content.texts[index] = read_texts(list, part.sort); });
    }
    for (std::size_t index = 0; index < exception_parts.size(); ++index) {
        const auto& part = exception_parts[index];
        with_field(document, part.group, part.field, [&](const document_node& list) {
            content.exceptions[index] = read_excepted_objects(list, part.sort);
        });
    }
}

}  // namespace

store_content read_document(const std::string& document) {
    const json parsed = parse(document);
    const document_node root(parsed, "");
    // Of another version nothing else can be judged.
    if (parsed.is_object()) {
        require_version(root);
    }
    require_known_fields(root);
    store_content content{};
    if (const auto framework = root.find("framework")) {
        read_framework(*framework, content.states);
    }
    if (const auto found = root.find("modules")) {
        read_modules(*found, content.states);
    }
    read_parts(root, content);
    return content;
}

}  // namespace local_service
