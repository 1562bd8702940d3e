// SPDX-License-Identifier: Apache-2.0
// Path helpers. All paths are NUL-terminated and borrowed for the call. The helpers that answer a question mean yes by
// 1 and nothing else: every other number counts as no.
#pragma once

/// The kind that `parse_file_type` gives a symbolic link.
inline constexpr int orvex_file_type_link = 5;

extern "C" {

/// Returns 1 if `path` exists.
int path_is_exist(const char* path);

/// Returns 1 if `path` is a directory.
int path_is_dir(const char* path);

/// Returns 1 if both paths name the same file.
int path_is_same(const char* path, const char* other);

/// Returns the absolute form of `path`, seen from the working directory, or null on failure. The caller gives it back
/// with `free`.
char* get_absolute_path(const char* path);

/// Returns the framework's standard form of `path`, or null on failure. The caller gives it back with `free`.
char* pathNormalize(const char* path);

/// Returns the kind of the file `path`: 0 to 3 are the kinds that execution control manages, 5 is a symbolic link;
/// every other number, a negative one too, is a kind that is not managed. Links are not followed.
int parse_file_type(const char* path);

/// Returns the files of `directory`, an array of `*count` strings, or null. The caller sets `*count` to 0 before the
/// call and gives back every string and then the array with `free`.
char** get_file_list_from_dir(const char* directory, int* count);

/// Returns 1 if process kill protection refuses to protect the program `path`.
int ppro_path_in_blacklist(const char* path);
}
