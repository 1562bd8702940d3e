// SPDX-License-Identifier: Apache-2.0
#include "core/file_reader.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "core/library_directory.h"

namespace local_service {
namespace {

const file_reader& load_file_reader() {
    // Not by $ORIGIN: a library that is put in front of dlopen, as a sanitizer's is, would be the one beside which it
    // is sought.
    void* const library = dlopen((library_directory() + "/orvex_local/file_reader.so").c_str(), RTLD_NOW);
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
