// SPDX-License-Identifier: Apache-2.0
#include "core/store.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <system_error>
#include <vector>

#include "core/descriptor.h"
#include "core/failure.h"
#include "core/schema.h"
#include "core/state_directory.h"

namespace local_service {
namespace {

constexpr int busy_timeout_ms = 30000;
constexpr mode_t database_mode = 0644;

[[noreturn]] void throw_system_error(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Root's store serves the security administrator as well, who is an ordinary user to the system.
void prepare_directory(const std::string& directory) {
    if (std::filesystem::create_directories(directory) && directory == system_directory) {
        give_to(security_administrator, directory);
    }
}

uid_t owner_of(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw_system_error("cannot read the owner of " + path);
    }
    return status.st_uid;
}

/// A name for a file that is removed again at the end of its life.
class draft_file {
public:
    explicit draft_file(std::string name_template) : name_(std::move(name_template)) {
        const int file = mkostemp(name_.data(), O_CLOEXEC);
        if (file < 0) {
            throw_system_error("cannot create " + name_);
        }
        const bool is_mode_set = fchmod(file, database_mode) == 0;
        close(file);
        if (!is_mode_set) {
            throw_system_error("cannot set the mode of " + name_);
        }
    }
    draft_file(const draft_file&) = delete;
    draft_file& operator=(const draft_file&) = delete;
    ~draft_file() { unlink(name_.c_str()); }

    const std::string& name() const { return name_; }

private:
    std::string name_;
};

/// Waits until the file `path` is on the disk. False where that fails.
bool write_to_disk(const std::string& path) {
    const descriptor file(path);
    return file.number() >= 0 && fsync(file.number()) == 0;
}

/// The database is made under another name and gets its own by a link, whole: of two first processes one wins, and
/// neither ever sees half a database.
void create_database(const std::string& directory, const std::string& file) {
    prepare_directory(directory);
    const draft_file draft(directory + "/.new-XXXXXX");
    give_to(owner_of(directory), draft.name());
    {
        SQLite::Database database(draft.name(), SQLite::OPEN_READWRITE);
        // Until it has its name, one write to the disk at the end is enough.
        database.exec("PRAGMA synchronous = OFF; PRAGMA journal_mode = WAL");
        database.exec(std::string("BEGIN;") + create_tables + insert_initial_rows +
                      "PRAGMA user_version = " + std::to_string(schema_version) + "; COMMIT");
    }
    if (!write_to_disk(draft.name()) || (link(draft.name().c_str(), file.c_str()) != 0 && errno != EEXIST)) {
        throw_system_error("cannot create " + file);
    }
}

struct connection {
    explicit connection(std::string state_directory)
        : directory(std::move(state_directory)),
          // For a caller who may not write the file, SQLite itself opens it for reading only.
          database(directory + "/orvex.db", SQLite::OPEN_READWRITE, busy_timeout_ms) {
        // The log of writes stays where it is, empty: a process that cannot write the directory still needs it there.
        int keep_files = 1;
        sqlite3_file_control(database.getHandle(), nullptr, SQLITE_FCNTL_PERSIST_WAL, &keep_files);
        database.exec("PRAGMA journal_size_limit = 0; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");
        const int version = database.execAndGet("PRAGMA user_version").getInt();
        if (version != schema_version) {
            throw failure(directory + " holds a store of another version: " + std::to_string(version));
        }
    }

    const std::string directory;
    const pid_t process = getpid();
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

connection& open_store() {
    static owned_connection current;
    std::string directory = state_directory();
    if (current != nullptr && current->directory == directory) {
        if (current->process != getpid()) {
            throw failure("a forked child cannot use the store that its parent has opened");
        }
        return *current;
    }
    current.reset();
    const std::string file = directory + "/orvex.db";
    if (access(file.c_str(), F_OK) != 0) {
        create_database(directory, file);
    }
    current.reset(std::make_unique<connection>(std::move(directory)).release());
    return *current;
}

SQLite::Statement& prepare(const std::string& sql, bound_values bound) {
    connection& store = open_store();
    SQLite::Statement& statement = store.statements.try_emplace(sql, store.database, sql).first->second;
    int position = 0;
    for (const bound_value& item : bound) {
        ++position;
        std::visit([&](const auto& plain) { statement.bind(position, plain); }, item);
    }
    return statement;
}

}  // namespace

query::query(const std::string& sql, bound_values bound) : statement_(prepare(sql, bound)) {}

query::~query() {
    statement_.tryReset();
}

bool query::next() {
    return statement_.executeStep();
}

std::string query::text(int column) const {
    return statement_.getColumn(column).getString();
}

std::int64_t query::number(int column) const {
    return statement_.getColumn(column).getInt64();
}

int change(const std::string& sql, bound_values bound) {
    SQLite::Statement& statement = prepare(sql, bound);
    try {
        const int changed = statement.exec();
        statement.reset();
        return changed;
    } catch (...) {
        // A statement that failed keeps hold of its transaction until it is reset.
        statement.tryReset();
        throw;
    }
}

transaction::transaction() {
    change("BEGIN IMMEDIATE");
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

void reset_store() {
    transaction reset;
    open_store().database.exec(std::string(clear_tables) + insert_initial_rows);
    reset.commit();
}

std::int64_t count_records(const std::string& table) {
    query count("SELECT COUNT(*) FROM " + table);
    count.next();
    return count.number(0);
}

}  // namespace local_service
