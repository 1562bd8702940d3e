// SPDX-License-Identifier: Apache-2.0
// The exceptions of file and process protection as they are stored. They hang on an entry of their own for the object
// and not on its protection: an object that is taken off the protection list keeps its exceptions until they are
// cleared.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/entry_list.h"

namespace local_service {

/// The lists of one protection. `excepted_` are the objects that have exceptions, protected or not.
struct protection {
    entry_list paths;
    entry_list packages;
    entry_list excepted_paths;
    entry_list excepted_packages;
};

inline constexpr protection file_protection{lists::protected_files, lists::protected_packages,
                                            entry_list("file.excepted.path"), entry_list("file.excepted.package")};
/// Process protection knows no packages: that list stays empty.
inline constexpr protection process_protection{lists::protected_programs, entry_list("proc.package"),
                                               entry_list("proc.excepted.path"), entry_list("proc.excepted.package")};

/// An exception, of one of the kinds of service/object_kind.h. A directory stands as its pattern.
struct stored_exception {
    std::int32_t kind;
    std::string text;
};

/// An object with its exceptions.
struct excepted_object {
    std::string resource;
    std::vector<stored_exception> exceptions;
};

/// Returns the objects of the list `excepted`.
std::vector<excepted_object> read_exceptions(const entry_list& excepted);

/// Gives `object` its exceptions, as a part of the transaction that the caller opens; those that it has stay.
void put_exceptions(const entry_list& excepted, const excepted_object& object);

}  // namespace local_service
