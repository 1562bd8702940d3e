// SPDX-License-Identifier: Apache-2.0
#include "core/store.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <vector>

#include "core/failure.h"
#include "core/schema.h"
#include "core/state_directory.h"
#include "core/store_file.h"

namespace local_service {
namespace {

constexpr int busy_timeout_ms = 30000;
/// Above this nobody asks how much the database takes: no policy is so large.
constexpr std::uint64_t plenty_of_room = std::uint64_t{1024} * 1024 * 1024;

std::string explain(const SQLite::Exception& error) {
    const std::string advice = error.getErrorCode() == SQLITE_FULL ? "; make room on its file system" : "";
    return error.what() + advice;
}

/// Runs `work` and tells a fault of the database in `directory` as a failure of the store.
template <class Work>
auto on_database(const std::string& directory, Work work) -> decltype(work()) {
    try {
        return work();
    } catch (const SQLite::Exception& error) {
        throw store_failure(store_file(directory) + ": " + explain(error));
    }
}

struct connection {
    explicit connection(std::string state_directory)
        : directory(std::move(state_directory)),
          // For a caller who may not write the file, SQLite itself opens it for reading only.
          database(store_file(directory), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, busy_timeout_ms) {
        // The log of writes stays where it is, empty: a process that cannot write the directory still needs it there.
        int keep_files = 1;
        sqlite3_file_control(database.getHandle(), nullptr, SQLITE_FCNTL_PERSIST_WAL, &keep_files);
        const int version = database.execAndGet("PRAGMA user_version").getInt();
        if (version != schema_version) {
            throw store_failure(store_file(directory) + ": a store of version " + std::to_string(version) +
                                ", where version " + std::to_string(schema_version) + " is needed");
        }
    }

    /// What only writers need: most runs read and end.
    void prepare_for_writing() {
        if (!is_writer) {
            is_writer = true;
            remove_stale_drafts(directory);
            database.exec("PRAGMA journal_size_limit = 0; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");
        }
    }

    const std::string directory;
    const pid_t process = getpid();
    bool is_writer = false;
    SQLite::Database database;
    std::map<std::string, SQLite::Statement, std::less<>> statements;
};

/// Closes a connection in the process that opened it. A forked child must not, and only keeps it in sight.
struct connection_deleter {
    void operator()(connection* closed) const {
        static std::vector<connection*> inherited;
        if (closed->process == getpid()) {
            const std::unique_ptr<connection> last_owner(closed);
        } else {
            inherited.push_back(closed);
        }
    }
};
using owned_connection = std::unique_ptr<connection, connection_deleter>;

/// The connection in use. At the end of the process only one that was written to is closed, as the log of writes is
/// emptied then. For all others the end itself does it, for less.
struct present_connection : owned_connection {
    using owned_connection::operator=;
    present_connection() = default;
    present_connection(const present_connection&) = delete;
    present_connection& operator=(const present_connection&) = delete;
    ~present_connection() {
        if (get() != nullptr && !get()->is_writer) {
            left_open = release();
        }
    }

    /// Keeps it in sight of those who look for lost memory.
    static inline connection* left_open = nullptr;
};

connection& open_store() {
    static present_connection current;
    std::string directory = state_directory();
    if (current != nullptr && current->directory == directory) {
        if (current->process != getpid()) {
            throw failure("a forked child cannot use the store that its parent has opened");
        }
        return *current;
    }
    current.reset();
    if (!has_store_file(directory)) {
        remove_stale_drafts(directory);
        make_store_file(directory);
    }
    // Nobody asks how much memory SQLite has, and counting it takes a lock at each allocation.
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    current.reset(on_database(directory, [&] { return std::make_unique<connection>(directory).release(); }));
    return *current;
}

/// Runs `work` on the open database.
template <class Work>
auto on_store(Work work) {
    connection& store = open_store();
    return on_database(store.directory, [&] { return work(store); });
}

}  // namespace

/// A statement, bound, and the directory of the store that it works on.
struct prepared_statement {
    SQLite::Statement& statement;
    const std::string& directory;
};

namespace {

prepared_statement prepare(const std::string& sql, bound_values bound) {
    return on_store([&](connection& store) {
        SQLite::Statement& statement = store.statements.try_emplace(sql, store.database, sql).first->second;
        int position = 0;
        for (const bound_value& item : bound) {
            ++position;
            std::visit([&](const auto& plain) { statement.bind(position, plain); }, item);
        }
        return prepared_statement{statement, store.directory};
    });
}

}  // namespace

query::query(const std::string& sql, bound_values bound) : query(prepare(sql, bound)) {}

query::query(const prepared_statement& prepared) : statement_(prepared.statement), directory_(prepared.directory) {}

query::~query() {
    statement_.tryReset();
}

bool query::next() {
    return on_database(directory_, [&] { return statement_.executeStep(); });
}

std::string_view query::view(int column) const {
    const SQLite::Column value = statement_.getColumn(column);
    const char* const text = value.getText();
    return {text, static_cast<std::size_t>(value.getBytes())};
}

std::int64_t query::number(int column) const {
    return statement_.getColumn(column).getInt64();
}

int change(const std::string& sql, bound_values bound) {
    on_store([](connection& store) { store.prepare_for_writing(); });
    const auto [statement, directory] = prepare(sql, bound);
    return on_database(directory, [&statement = statement] {
        try {
            const int changed = statement.exec();
            statement.reset();
            return changed;
        } catch (...) {
            // A statement that failed keeps hold of its transaction until it is reset.
            statement.tryReset();
            throw;
        }
    });
}

transaction::transaction(access wanted) {
    change(wanted == access::write ? "BEGIN IMMEDIATE" : "BEGIN");
}

transaction::~transaction() {
    if (!is_open_) {
        return;
    }
    try {
        change("ROLLBACK");
    } catch (...) {
        // SQLite has rolled back on its own, or does so when the process ends.
        return;
    }
}

void transaction::commit() {
    change("COMMIT");
    is_open_ = false;
}

void reset_policies() {
    on_store([](connection& store) { return store.database.exec(std::string(clear_policies) + insert_initial_rows); });
}

void reset_store() {
    transaction reset;
    reset_policies();
    change("DELETE FROM log");
    change("DELETE FROM failing");
    reset.commit();
}

void require_room() {
    const std::string& directory = open_store().directory;
    const std::uint64_t room = free_room(directory);
    if (room > plenty_of_room) {
        return;
    }
    query sizes(
        "SELECT page_size * (page_count - freelist_count) "
        "FROM pragma_page_size, pragma_page_count, pragma_freelist_count");
    sizes.next();
    if (room < static_cast<std::uint64_t>(sizes.number(0))) {
        throw store_failure(store_file(directory) +
                            ": the disk is full but for the room that is kept for taking something off");
    }
}

void replace_store() {
    const std::string directory = state_directory();
    if (has_store_file(directory)) {
        remove_store_file(directory);
    }
    open_store();
}

bool has_store() {
    return has_store_file(state_directory());
}

}  // namespace local_service
