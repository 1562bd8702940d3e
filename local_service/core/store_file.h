// SPDX-License-Identifier: Apache-2.0
// The file of the store: whether its place can be trusted, and how it is made.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace local_service {

/// The store cannot be used, or not for what was wanted. The text names the path and the reason.
class store_failure : public std::runtime_error {
public:
    explicit store_failure(const std::string& text);
    store_failure(const store_failure&) = default;
    store_failure& operator=(const store_failure&) = default;
    ~store_failure() override;
};

/// Returns the path of the database in the state directory `directory`.
std::string store_file(const std::string& directory);

/// Tells whether the state directory `directory` holds a database. Throws a store failure where that cannot be told,
/// and where the directory or what lies there in place of the database cannot be trusted.
bool has_store_file(const std::string& directory);

/// Makes the database in `directory`, and the directory with those above it. Another process may be faster: then its
/// database stays.
void make_store_file(const std::string& directory);

/// Removes the drafts of databases in `directory` whose makers have died.
void remove_stale_drafts(const std::string& directory);

/// Removes the database in `directory`, whatever it holds, with its side files.
void remove_store_file(const std::string& directory);

/// Returns how many bytes can be added to the files in `directory`; without end where that cannot be told.
std::uint64_t free_room(const std::string& directory);

}  // namespace local_service
