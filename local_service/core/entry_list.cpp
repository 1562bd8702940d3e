// SPDX-License-Identifier: Apache-2.0
#include "core/entry_list.h"

#include "core/paths.h"
#include "core/store.h"

namespace local_service {
namespace {

std::string strip_slashes(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    return path.substr(0, last == std::string::npos ? 0 : last + 1);
}

}  // namespace

std::vector<std::string> entry_list::texts() const {
    std::vector<std::string> all;
    for_each([&](std::string_view text) { all.emplace_back(text); });
    return all;
}

void entry_list::for_each(const std::function<void(std::string_view)>& take) const {
    query rows("SELECT text FROM entry WHERE list = ? ORDER BY id", {name_});
    while (rows.next()) {
        take(rows.view(0));
    }
}

std::optional<std::int64_t> entry_list::find(const std::string& text) const {
    query rows("SELECT id FROM entry WHERE list = ? AND text = ?", {name_, text});
    return rows.next() ? std::optional(rows.number(0)) : std::nullopt;
}

bool entry_list::add(const std::string& text) const {
    return change("INSERT INTO entry (list, text) VALUES (?, ?) ON CONFLICT DO NOTHING", {name_, text}) != 0;
}

bool entry_list::remove(const std::string& text) const {
    return change("DELETE FROM entry WHERE list = ? AND text = ?", {name_, text}) != 0;
}

std::string directory_pattern(const std::string& path) {
    return strip_slashes(path) + "/*";
}

std::string listed_form(const std::string& path) {
    return is_directory(path) ? directory_pattern(path) : path;
}

std::optional<std::string> find_listed_form(const entry_list& list, const std::string& path) {
    const std::string pattern = directory_pattern(path);
    const std::string plain = path == "/" ? path : strip_slashes(path);
    const bool is_pattern_first = is_directory(path);
    const std::string& first = is_pattern_first ? pattern : plain;
    const std::string& second = is_pattern_first ? plain : pattern;
    if (list.contains(first)) {
        return first;
    }
    return list.contains(second) ? std::optional(second) : std::nullopt;
}

}  // namespace local_service
