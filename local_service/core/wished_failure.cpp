// SPDX-License-Identifier: Apache-2.0
#include "core/wished_failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>

#include "core/failure.h"
#include "core/state_directory.h"
#include "core/store.h"
#include "core/store_file.h"

namespace local_service {
namespace {

/// The wishes lie in the store, and this file beside it says that there are some, so that a call has to ask nothing of
/// the store while there are none. It is made and removed by whoever holds the store for writing.
std::string marker_file() {
    return state_directory() + "/failing";
}

/// What was last seen of the marker, and in which tick of the clock.
struct marker_sight {
    std::int64_t tick = -1;
    bool is_there = false;
};
marker_sight last_sight;

bool is_marker_there() {
    try {
        return access(marker_file().c_str(), F_OK) == 0;
    } catch (const store_failure&) {
        // There is no place for a store: the call itself says so if it needs one.
        return false;
    }
}

bool may_be_wished() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    const std::int64_t tick = std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
    if (tick != last_sight.tick) {
        last_sight = {tick, is_marker_there()};
    }
    return last_sight.is_there;
}

struct next_wish {
    std::int64_t id;
    failure_wish wish;
};

failure_wish wish_in(const query& row) {
    const std::int64_t times = row.number(3);
    return {row.text(1), static_cast<int>(row.number(2)), times == 0 ? std::nullopt : std::optional(times),
            row.number(4), row.text(5)};
}

std::optional<next_wish> find_next(const char* function) {
    query rows("SELECT id, call, result, times, after, error FROM failing WHERE call = ? ORDER BY id LIMIT 1",
               {function});
    return rows.next() ? std::optional(next_wish{rows.number(0), wish_in(rows)}) : std::nullopt;
}

void count_down(const next_wish& next) {
    if (next.wish.after > 0) {
        change("UPDATE failing SET after = after - 1 WHERE id = ?", {next.id});
    } else if (next.wish.times.has_value()) {
        change("UPDATE failing SET times = times - 1 WHERE id = ?", {next.id});
        change("DELETE FROM failing WHERE id = ? AND times = 0", {next.id});
    }
}

void remove_idle_marker() {
    transaction held;
    query rows("SELECT 1 FROM failing");
    if (!rows.next()) {
        unlink(marker_file().c_str());
    }
    last_sight = {};
}

std::optional<next_wish> take_turn(const char* function) {
    transaction whole;
    std::optional<next_wish> next = find_next(function);
    if (next.has_value()) {
        count_down(*next);
    }
    whole.commit();
    return next;
}

/// A caller who cannot write the store gets the result all the same, and is not counted.
std::optional<next_wish> take_turn_or_look(const char* function) {
    try {
        return take_turn(function);
    } catch (const store_failure&) {
        return find_next(function);
    }
}

}  // namespace

void fail_if_wished(const char* function) {
    if (!may_be_wished() || !find_next(function).has_value()) {
        return;
    }
    const std::optional<next_wish> next = take_turn_or_look(function);
    if (!next.has_value() || next->wish.after > 0) {
        return;
    }
    if (next->wish.times == 1) {
        remove_idle_marker();
    }
    const std::string& error = next->wish.error;
    throw failure(error.empty() ? std::string(function) + " fails on request" : error, next->wish.result);
}

void add_failure_wish(const failure_wish& wish) {
    transaction whole;
    const std::string marker = marker_file();
    const int file = open(marker.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) {
        throw store_failure(marker + ": cannot be made: " + std::strerror(errno));
    }
    close(file);
    change("INSERT INTO failing (call, result, times, after, error) VALUES (?, ?, ?, ?, ?)",
           {wish.call, std::int64_t{wish.result}, wish.times.value_or(0), wish.after, wish.error});
    whole.commit();
    last_sight = {};
}

std::vector<failure_wish> read_failure_wishes() {
    std::vector<failure_wish> wishes;
    query rows("SELECT id, call, result, times, after, error FROM failing ORDER BY id");
    while (rows.next()) {
        wishes.push_back(wish_in(rows));
    }
    return wishes;
}

void clear_failure_wishes() {
    change("DELETE FROM failing");
    remove_idle_marker();
}

}  // namespace local_service
