// SPDX-License-Identifier: Apache-2.0
// liborvex_extend: path helpers.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "core/call.h"
#include "core/entry_list.h"
#include "core/failure.h"
#include "core/file_kind.h"
#include "core/heap.h"
#include "core/paths.h"
#include "service/paths.h"

using namespace local_service;

namespace {

bool is_same_file(const std::string& path, const std::string& other) {
    struct stat status {};
    struct stat other_status {};
    return stat(path.c_str(), &status) == 0 && stat(other.c_str(), &other_status) == 0 &&
           status.st_dev == other_status.st_dev && status.st_ino == other_status.st_ino;
}

std::vector<std::string> list_regular_files(const std::string& directory) {
    const std::string path = absolute_path(directory);
    std::error_code error;
    std::filesystem::directory_iterator entries(path, error);
    if (error) {
        throw failure(path + ": " + error.message());
    }
    std::vector<std::string> files;
    for (const std::filesystem::directory_entry& entry : entries) {
        if (std::filesystem::is_regular_file(entry.symlink_status())) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int path_is_exist(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return is_present(given_text(path)) ? 1 : 0; });
}

int path_is_dir(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return is_directory(given_text(path)) ? 1 : 0; });
}

int path_is_same(const char* path, const char* other) {
    return guard(__func__, {{"path", path}, {"other", other}}, [&] {
        const std::string first = given_text(path);
        const std::string second = given_text(other);
        return normalise_path(first) == normalise_path(second) || is_same_file(first, second) ? 1 : 0;
    });
}

char* get_absolute_path(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return heap_text(absolute_path(given_text(path))); });
}

char* pathNormalize(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return heap_text(standard_path(given_text(path))); });
}

int parse_file_type(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return static_cast<int>(read_file_kind(given_text(path))); });
}

char** get_file_list_from_dir(const char* directory, int* count) {
    *count = 0;
    return guard(__func__, {{"directory", directory}, {"count", count}}, [&] {
        const std::vector<std::string> files = list_regular_files(given_text(directory));
        char** list = heap_list(files);
        *count = static_cast<int>(files.size());
        return list;
    });
}

int ppro_path_in_blacklist(const char* path) {
    return guard(__func__, {{"path", path}}, [&] { return lists::blacklist.contains(given_text(path)) ? 1 : 0; });
}
