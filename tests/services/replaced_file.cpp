// SPDX-License-Identifier: Apache-2.0
#include "services/replaced_file.h"

#include <dlfcn.h>

#include <cstdio>
#include <map>
#include <stdexcept>
#include <utility>

namespace {

using open_function = std::FILE* (*)(const char*, const char*);

std::map<std::string, std::string>& replacements() {
    static std::map<std::string, std::string> all;
    return all;
}

}  // namespace

replaced_file::replaced_file(std::string path, std::string replacement) : path_(std::move(path)) {
    if (!replacements().emplace(path_, std::move(replacement)).second) {
        throw std::logic_error("replaced already: " + path_);
    }
}

replaced_file::~replaced_file() {
    replacements().erase(path_);
}

// The function that the library of the streams opens files with: this definition comes before the C library's.
extern "C" std::FILE* fopen64(const char* path, const char* mode) {
    static const auto open_file = reinterpret_cast<open_function>(dlsym(RTLD_NEXT, "fopen64"));
    const auto replaced = replacements().find(path);
    return open_file(replaced == replacements().end() ? path : replaced->second.c_str(), mode);
}
