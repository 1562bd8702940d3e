// SPDX-License-Identifier: Apache-2.0
// The tests of a path that a user names, each with its line. The modules differ in the order of the tests and in the
// form of the path that a line shows.
#pragma once

#include <string>

#include "framework/owned.h"

/// What a path is wanted to name. Everything that is no directory counts as a file.
enum class path_kind { file, dir };

// A `refuse_` function tells whether it refused what it was given, and has then printed the line for it.

/// Refuses a `path` that names nothing.
bool refuse_missing(path_kind kind, const std::string& path);

/// Refuses a `path` that names something other than the wanted kind. The line shows `shown`.
bool refuse_other_kind(path_kind kind, const std::string& path, const std::string& shown);

/// Returns the absolute form of the file `path`, or null, with a line.
owned_text get_absolute_file(const std::string& path);

/// Returns the real path behind `path`, all links resolved, or null with a line: it has to be of the wanted kind. The
/// line for the wrong kind shows the real path.
owned_text get_real_path(path_kind kind, const std::string& path);

/// Does the same for a path that is first asked to exist.
owned_text get_existing_real_path(path_kind kind, const std::string& path);

/// Returns the pattern that stands for the directory `dir` in the service library's lists: its path, '/' and '*'.
std::string get_dir_pattern(const std::string& dir);

/// Returns the pattern of `object` where it is a directory, else `object` as it stands.
std::string to_pattern_if_dir(const std::string& object);
