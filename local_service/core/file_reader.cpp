// SPDX-License-Identifier: Apache-2.0
#include "core/file_reader.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace local_service {
namespace {

const file_reader& load_file_reader() {
    void* const library = dlopen("$ORIGIN/orvex_local/file_reader.so", RTLD_NOW);
    const void* const reader = library == nullptr ? nullptr : dlsym(library, "orvex_local_file_reader");
    if (reader == nullptr) {
        throw std::runtime_error(std::string("files cannot be read: ") + dlerror());
    }
    return *static_cast<const file_reader*>(reader);
}

}  // namespace

const file_reader& get_file_reader() {
    static const file_reader& reader = load_file_reader();
    return reader;
}

}  // namespace local_service
