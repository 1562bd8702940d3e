// SPDX-License-Identifier: Apache-2.0
#include "core/paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "core/failure.h"

namespace local_service {

std::string given_text(const char* text) {
    if (text == nullptr) {
        throw failure("null where a text is needed");
    }
    return text;
}

std::string normalise_path(std::string_view path) {
    const bool is_absolute = !path.empty() && path.front() == '/';
    std::vector<std::string_view> kept;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view piece = path.substr(start, end - start);
        start = end + 1;
        if (piece.empty() || piece == ".") {
            continue;
        }
        if (piece == ".." && !kept.empty() && kept.back() != "..") {
            kept.pop_back();
        } else if (piece != ".." || !is_absolute) {
            kept.push_back(piece);
        }
    }
    std::string normal;
    for (const std::string_view piece : kept) {
        normal.append(is_absolute || !normal.empty() ? "/" : "").append(piece);
    }
    if (!normal.empty()) {
        return normal;
    }
    return is_absolute ? "/" : ".";
}

std::string standard_path(std::string text) {
    text.resize(text.find_last_not_of(std::string_view("\r\n\0", 3)) + 1);
    if (text.empty()) {
        throw failure("an empty path has no standard form");
    }
    return normalise_path(text);
}

std::string absolute_path(const std::string& path) {
    if (path.empty()) {
        throw failure("an empty path has no absolute form");
    }
    if (path.front() == '/') {
        return normalise_path(path);
    }
    return normalise_path(std::filesystem::current_path().string() + "/" + path);
}

bool is_present(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

bool is_directory(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace local_service
