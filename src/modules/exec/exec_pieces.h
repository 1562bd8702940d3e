// SPDX-License-Identifier: Apache-2.0
// What the operations of `exec` share in looking at one piece of a list.
#pragma once

#include <optional>
#include <string>

#include "framework/owned.h"
#include "service/exectl.h"

/// Returns the absolute form of the file `path`, or null with a line: it has to exist and to be no directory. The type
/// is asked of the absolute form; the lines show `path`.
owned_text get_absolute_file(const std::string& path);

/// Tells whether `path` exists and is a directory, with a line where it is not.
bool is_existing_dir(const std::string& path);

/// Returns the absolute form of the directory `path`, or null with a line that shows `shown`.
owned_text get_absolute_dir(const std::string& path, const std::string& shown);

/// Tells whether a kind of file, as `parse_file_type` gives it, is subject to execution control. Negative kinds are
/// not.
bool is_controlled_kind(int kind);

/// Returns the kind of what the symbolic link `path` leads to, or nothing where it cannot be resolved.
std::optional<int> get_target_kind(const std::string& path);

/// Tells whether an entry of the exception files ends in '*'. An empty entry is not to be expected and ends the program
/// in an assertion, in every build.
bool ends_in_star(const std::string& entry);

/// Returns `entry` without its last character. An empty one ends the program in the same assertion.
std::string cut_last(std::string entry);

/// Writes a record of a failed call to the framework's log: `format` takes `object` and then `ret`.
void log_exec_failure(const char* function, const char* format, const std::string& object, int ret);

/// Gives back what a whitelist record in the caller's storage points to.
struct record_contents_deleter {
    void operator()(orvex_exectl_obj* record) const noexcept { orvex_scene_exectl_obj_free(record); }
};
using record_contents = std::unique_ptr<orvex_exectl_obj, record_contents_deleter>;
