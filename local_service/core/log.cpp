// SPDX-License-Identifier: Apache-2.0
#include "core/log.h"

#include <chrono>

#include "core/store.h"

namespace local_service {

void write_log(const log_entry& entry) {
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t now = std::chrono::duration_cast<std::chrono::milliseconds>(since_1970).count();
    change("INSERT INTO log (time_ms, level, tag, function, message) VALUES (?, ?, ?, ?, ?)",
           {now, std::int64_t{entry.level}, entry.tag, entry.function, entry.message});
    // A trigger would do it as well, and every process would read its text with the tables.
    change("DELETE FROM log WHERE id <= last_insert_rowid() - 10000");
}

std::vector<log_record> read_log_after(std::int64_t number) {
    std::vector<log_record> records;
    query rows("SELECT level, tag, function, message, id, time_ms FROM log WHERE id > ? ORDER BY id", {number});
    while (rows.next()) {
        records.push_back({{static_cast<int>(rows.number(0)), rows.text(1), rows.text(2), rows.text(3)},
                           rows.number(4),
                           rows.number(5)});
    }
    return records;
}

std::int64_t count_log_records() {
    query count("SELECT COUNT(*) FROM log");
    count.next();
    return count.number(0);
}

}  // namespace local_service
