// SPDX-License-Identifier: Apache-2.0
// What the operations of `exec` share in looking at one piece of a list.
#pragma once

#include <optional>
#include <string>

#include "framework/failure_log.h"
#include "framework/owned.h"

/// Returns the absolute form of the file `path`, or null with a line: it has to exist and to be no directory. The type
/// is asked of the absolute form; the lines show `path`.
owned_text accept_file(const std::string& path);

/// Refuses a `path` that does not exist or is no directory, with a line.
bool refuse_non_dir(const std::string& path);

/// Returns the absolute form of the directory `path`, or null with a line that shows `shown`.
owned_text get_absolute_dir(const std::string& path, const std::string& shown);

/// Tells whether a kind of file, as `parse_file_type` gives it, is subject to execution control. Negative kinds are
/// not.
bool is_controlled_kind(int kind);

/// Returns the kind that counts for the file `path`, whose own kind is `kind`: of a symbolic link that of its target,
/// or nothing where it cannot be resolved.
std::optional<int> follow_link(const std::string& path, int kind);

/// Tells whether an entry of the exception files ends in '*'. An empty entry is not to be expected and ends the program
/// in an assertion, in every build.
bool ends_in_star(const std::string& entry);

/// Returns `entry` without its last character. An empty one ends the program in the same assertion.
std::string cut_last(std::string entry);

/// How a failed call is told: the object that was named stands between the head and the tail of the line.
struct failure_words {
    const char* head;
    const char* tail;
    log_format<const char*, int> log;
};

/// Tells a failed call by a line with `named` and by a record of `source` with `logged` and the call's result.
void report_failure(const log_source& source, const failure_words& words, const std::string& named,
                    const std::string& logged, int ret);
