// SPDX-License-Identifier: Apache-2.0
// The one database behind all libraries. It is opened by the first call that needs it and stays open to the end of the
// process; a call that finds the state directory changed opens the database there instead.
//
// A store that cannot be used is told by a store failure (core/store_file.h).
//
// One thread and one process: a child made by fork cannot use the parent's database and fails until it runs a program.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace SQLite {
class Statement;
}

namespace local_service {

/// What can be bound to a statement's question marks.
using bound_value = std::variant<std::int64_t, std::string>;
using bound_values = std::initializer_list<bound_value>;

struct prepared_statement;

/// A statement that gives rows. It reads a consistent state from its first row to its end of life.
class query {
public:
    /// Prepares `sql`, or takes the prepared statement of an earlier use, and binds `bound` in order.
    explicit query(const std::string& sql, bound_values bound = {});
    query(const query&) = delete;
    query& operator=(const query&) = delete;
    ~query();

    /// Goes to the first or the next row. False when there is none.
    bool next();

    /// The present row's columns, counted from 0. What is viewed is there until the next row.
    std::string_view view(int column) const;
    std::string text(int column) const { return std::string(view(column)); }
    std::int64_t number(int column) const;

private:
    explicit query(const prepared_statement& prepared);

    SQLite::Statement& statement_;
    /// Where the store lies that the rows come from.
    const std::string& directory_;
};

/// Runs a statement that gives no rows and returns how many rows it changed.
int change(const std::string& sql, bound_values bound = {});

/// Makes one transaction of the changes up to `commit`; without it they are undone at the end of its life. Writers in
/// other processes wait from the beginning on.
class transaction {
public:
    /// Readers hold up nobody and see the store as it is at one moment.
    enum class access { read, write };

    explicit transaction(access wanted = access::write);
    transaction(const transaction&) = delete;
    transaction& operator=(const transaction&) = delete;
    ~transaction();

    /// Makes the changes valid.
    void commit();

private:
    bool is_open_ = true;
};

/// Tells whether there is a store already. Unlike all else here, this makes none.
bool has_store();

/// Throws a store failure where the disk has less room left than the database takes. To be called before something is
/// added, so that there is still room to take something off when nothing more can be added.
void require_room();

/// Brings states and policies back to what a new store holds, as a part of the transaction that the caller opens.
void reset_policies();

/// Brings the store back to what it holds when new.
void reset_store();

/// Removes the store, whatever it holds, and makes a new one.
void replace_store();

}  // namespace local_service
