// SPDX-License-Identifier: Apache-2.0
#include "core/exceptions.h"

#include "core/store.h"

namespace local_service {

std::vector<excepted_object> read_exceptions(const entry_list& excepted) {
    std::vector<excepted_object> objects;
    query rows(
        "SELECT entry.id, entry.text, kind, exception.text FROM entry JOIN exception ON object = entry.id "
        "WHERE list = ? ORDER BY entry.id, exception.id",
        {excepted.name()});
    for (std::int64_t last = 0; rows.next(); last = rows.number(0)) {
        if (objects.empty() || rows.number(0) != last) {
            objects.push_back({rows.text(1), {}});
        }
        objects.back().exceptions.push_back({static_cast<std::int32_t>(rows.number(2)), rows.text(3)});
    }
    return objects;
}

void put_exceptions(const entry_list& excepted, const excepted_object& object) {
    if (object.exceptions.empty()) {
        return;
    }
    excepted.add(object.resource);
    const std::int64_t owner = excepted.find(object.resource).value();
    for (const stored_exception& exception : object.exceptions) {
        change("INSERT INTO exception (object, kind, text) VALUES (?, ?, ?) ON CONFLICT DO NOTHING",
               {owner, std::int64_t{exception.kind}, exception.text});
    }
}

}  // namespace local_service
