// SPDX-License-Identifier: Apache-2.0
#include "core/library_directory.h"

#include <dlfcn.h>

#include <filesystem>

#include "core/failure.h"

namespace local_service {

std::string library_directory() {
    Dl_info library{};
    if (dladdr(reinterpret_cast<const void*>(&library_directory), &library) == 0) {
        throw failure("cannot find the stand-in's libraries");
    }
    return std::filesystem::canonical(library.dli_fname).parent_path().string();
}

}  // namespace local_service
