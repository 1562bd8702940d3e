// SPDX-License-Identifier: Apache-2.0
// The calls of the C library and of rpm that the package queries make, heard in the order in which they are made, in
// this process and in the child that it forks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Which calls do not do what they should. What is not named here works.
struct planned_faults {
    bool pipe = false;
    bool fork = false;
    bool read = false;
    bool option_context = false;
    bool transaction = false;
    bool iterator = false;
    bool file_info = false;
    /// `freopen` fails for these files.
    std::vector<std::string> reopened_files;
    /// What rpm's query prints in place of its answer, and what it returns.
    std::optional<std::string> printed_by_query;
    /// What the query prints besides, once the parent has made its read.
    std::string printed_after_the_read;
    int query_result = 0;
};

/// Hears the calls while it lives. There is one at a time. The terminal is replaced by /dev/null meanwhile, as there
/// need not be one.
class heard_calls {
public:
    explicit heard_calls(const planned_faults& faults = {});
    heard_calls(const heard_calls&) = delete;
    heard_calls& operator=(const heard_calls&) = delete;
    ~heard_calls();

    /// The calls of this process, each with the arguments that matter.
    std::vector<std::string> get_calls_here() const;

    /// The calls of the children.
    std::vector<std::string> get_calls_in_child() const;

    /// How many descriptors of the last child led to its standard output, a pipe, when it began to ask rpm.
    std::size_t get_pipe_ends_in_child() const;
};

/// Notes `call` among those of this process or of the child, whichever it is, while somebody listens.
void hear(const std::string& call);

/// How many descriptors this process has open.
std::size_t count_descriptors();
