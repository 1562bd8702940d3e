// SPDX-License-Identifier: Apache-2.0
#include "families/batch.h"

#include "core/failure.h"
#include "core/paths.h"

namespace local_service {
namespace {

std::string find_listed(const entry_list& list, listed_as form, const std::string& text) {
    if (form == listed_as::path) {
        if (const std::optional<std::string> found = find_listed_form(list, text)) {
            return *found;
        }
    } else if (list.contains(text)) {
        return text;
    }
    throw failure(text + " is not on the list");
}

}  // namespace

std::vector<std::string> given_texts(char** texts, std::int64_t count) {
    if (count < 0 || (texts == nullptr && count > 0)) {
        throw failure("a batch of " + std::to_string(count) + " objects cannot be read");
    }
    std::vector<std::string> given;
    given.reserve(static_cast<std::size_t>(count));
    for (std::int64_t index = 0; index < count; ++index) {
        given.push_back(given_text(texts[index]));
    }
    return given;
}

void add_batch(const entry_list& list, listed_as form, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        list.add(form == listed_as::path ? listed_form(text) : text);
    }
}

void remove_batch(const entry_list& list, listed_as form, const std::vector<std::string>& texts) {
    // An object may be named twice, so all are looked for before the first is gone.
    std::vector<std::string> listed;
    listed.reserve(texts.size());
    for (const std::string& text : texts) {
        listed.push_back(find_listed(list, form, text));
    }
    for (const std::string& text : listed) {
        list.remove(text);
    }
}

}  // namespace local_service
