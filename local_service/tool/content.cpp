// SPDX-License-Identifier: Apache-2.0
#include "tool/content.h"

#include "core/store.h"
#include "service/object_kind.h"
#include "service/status.h"

namespace local_service {

std::string word_of_status(int status) {
    switch (status) {
        case orvex_status_disabled:
            return "disabled";
        case orvex_status_enabled:
            return "enabled";
        case orvex_status_permissive:
            return "permissive";
        default:
            return std::to_string(status);
    }
}

std::string word_of(whitelist_status status) {
    switch (status) {
        case whitelist_status::intact:
            return "intact";
        case whitelist_status::changed:
            return "changed";
        default:
            return "unknown";
    }
}

std::string word_of_exception(std::int32_t kind) {
    switch (kind) {
        case orvex_kind_file:
            return "file";
        case orvex_kind_dir:
            return "directory";
        case orvex_kind_pkg:
            return "package";
        default:
            return std::to_string(kind);
    }
}

store_content read_content() {
    const transaction moment(transaction::access::read);
    store_content content;
    content.states = read_states();
    content.whitelist = read_whitelist();
    for (std::size_t index = 0; index < net_parts.size(); ++index) {
        content.net[index] = read_net_policies(*net_parts[index].source);
    }
    for (std::size_t index = 0; index < text_parts.size(); ++index) {
        content.texts[index] = text_parts[index].source.texts();
    }
    for (std::size_t index = 0; index < exception_parts.size(); ++index) {
        content.exceptions[index] = read_exceptions(exception_parts[index].source);
    }
    return content;
}

void write_content(const store_content& content) {
    require_room();
    transaction whole;
    reset_policies();
    write_states(content.states);
    for (const whitelisted_file& file : content.whitelist) {
        put_on_whitelist(file);
    }
    for (std::size_t index = 0; index < net_parts.size(); ++index) {
        for (const net_policy& policy : content.net[index]) {
            add_net_policy(*net_parts[index].source, policy);
        }
    }
    for (std::size_t index = 0; index < text_parts.size(); ++index) {
        for (const std::string& text : content.texts[index]) {
            text_parts[index].source.add(text);
        }
    }
    for (std::size_t index = 0; index < exception_parts.size(); ++index) {
        for (const excepted_object& object : content.exceptions[index]) {
            put_exceptions(exception_parts[index].source, object);
        }
    }
    whole.commit();
}

}  // namespace local_service
