// SPDX-License-Identifier: Apache-2.0
// The stand-in's readers of paths: a path in its form has no needless piece, keeps it, and is what the standard library
// says.
#include <filesystem>
#include <string>

#include "core/failure.h"
#include "core/paths.h"
#include "fuzz_target.h"

namespace {

using local_service::absolute_path;
using local_service::normalise_path;
using local_service::standard_path;

bool holds(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
}

void check_form(const std::string& path) {
    const std::string within = "/" + path + "/";
    require(path == "/" || !holds(path, "//"), "an empty piece");
    require(path == "." || !holds(within, "/./"), "a piece that says nothing");
    require(!holds("/" + path + "/", "/../") || path.compare(0, 2, "..") == 0, "a way back inside a path");
    require(path.size() == 1 || path.back() != '/', "a slash at the end");
    require(normalise_path(path) == path, "the form of a form is another one");
}

/// The standard library's form, without the slash that it leaves at the end; of a path of nothing but slashes it leaves
/// all.
std::string normalise_by_library(const std::string& text) {
    std::string path = std::filesystem::path(text).lexically_normal().string();
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path.empty() ? "." : path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = text_of_input(data, size);
    const std::string path = normalise_path(text);
    check_form(path);
    require(path == normalise_by_library(text), "another path than the standard library's");
    try {
        check_form(standard_path(text));
        require(standard_path(text + "\n") == standard_path(text), "a line break at the end counts");
    } catch (const local_service::failure&) {
        require(text.find_first_not_of(std::string_view("\r\n\0", 3)) == std::string::npos, "a path was refused");
    }
    try {
        const std::string absolute = absolute_path(text);
        check_form(absolute);
        require(absolute.front() == '/', "an absolute path is relative");
    } catch (const local_service::failure&) {
        require(text.empty(), "a path was refused");
    }
    return 0;
}
