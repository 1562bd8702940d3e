// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace local_service {

/// Returns `text`, a C string from outside. Throws a failure where it is null.
std::string given_text(const char* text);

/// Returns `path` without ".", ".." and needless slashes, by its text alone: links are not looked at.
std::string normalise_path(std::string_view path);

/// Returns the framework's standard form of `text`, what a process's attribute file says: the path without the line
/// break at its end, normalised. Throws a failure where nothing is left.
std::string standard_path(std::string text);

/// Returns the normalised form of `path` seen from the working directory. Throws a failure for an empty path and where
/// the working directory is not known.
std::string absolute_path(const std::string& path);

/// Tells whether there is something at `path`; a link counts, wherever it leads.
bool is_present(const std::string& path);

/// Tells whether `path` is a directory or a link to one.
bool is_directory(const std::string& path);

}  // namespace local_service
