// SPDX-License-Identifier: Apache-2.0
// The framework's log, a table of the store that keeps the last 10,000 records.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace local_service {

/// Level of what the stand-in itself has to tell.
inline constexpr int log_level_note = 6;

/// What is to be logged.
struct log_entry {
    int level;
    std::string tag;
    std::string function;
    std::string message;
};

/// An entry in the log. Number and time, in milliseconds since 1970, are given by the store.
struct log_record : log_entry {
    std::int64_t number;
    std::int64_t time_ms;
};

/// Writes `entry`, within the transaction that is open or in one of its own.
void write_log(const log_entry& entry);

/// Returns the records behind the one with the number `number`, oldest first; 0 gives all.
std::vector<log_record> read_log_after(std::int64_t number);

/// Returns how many records there are.
std::int64_t count_log_records();

}  // namespace local_service
