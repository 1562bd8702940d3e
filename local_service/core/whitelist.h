// SPDX-License-Identifier: Apache-2.0
// The whitelist of execution control: paths, each with the digest that the file's content had when it was added.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace local_service {

struct whitelisted_file {
    std::string path;
    std::string digest;
};

enum class whitelist_status : std::int32_t {
    intact = 0,
    /// Another content, or no file any more.
    changed = 1,
    /// The caller may not read the file: neither answer would be true.
    unknown = 2,
};

/// Returns the record of the file `path` as its content is now. Throws a failure where it cannot be read.
whitelisted_file whitelist_record(std::string path);

/// Returns all records in the order in which they were added.
std::vector<whitelisted_file> read_whitelist();

/// Adds the record `file`, or gives the one of its path the digest.
void put_on_whitelist(const whitelisted_file& file);

/// Compares the record `file` with what the file holds now.
whitelist_status status_of(const whitelisted_file& file);

}  // namespace local_service
