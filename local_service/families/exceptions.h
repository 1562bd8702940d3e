// SPDX-License-Identifier: Apache-2.0
// The exceptions of file and process protection. They hang on an entry of their own for the object and not on its
// protection: an object that is taken off the protection list keeps its exceptions until they are cleared.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/entry_list.h"
#include "core/heap.h"

namespace local_service {

/// The lists of one protection.
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

/// An object, of one of the kinds of service/object_kind.h, as a caller names it.
struct named_object {
    std::int32_t kind;
    std::string name;
};

/// An object as it is stored, with its exceptions as they are stored.
struct excepted_object {
    std::string resource;
    std::vector<std::string> exceptions;
};

/// The exceptions of a call as its C function was given them.
struct given_exceptions {
    std::int32_t kind;
    char** texts;
    std::int64_t count;
};

// All three are parts of a transaction that the caller opens. They throw a failure with the number -3 for an object
// that is not protected, or, at clearing, has no exceptions.

/// Adds exceptions to `object`; those it has already are no failure.
void add_exceptions(const protection& family, const named_object& object, const given_exceptions& added);

/// Takes exceptions off `object`; one that it does not have is a failure.
void remove_exceptions(const protection& family, const named_object& object, const given_exceptions& removed);

/// Takes all exceptions off `object`, which need not be protected any more.
void clear_exceptions(const protection& family, const named_object& object);

/// Returns all objects with exceptions, paths before packages.
std::vector<excepted_object> read_exceptions(const protection& family);

/// Frees `count` records and what hangs on them. Null is allowed.
template <class Record>
void free_records(Record* records, std::uint64_t count) noexcept {
    for (std::uint64_t index = 0; records != nullptr && index < count; ++index) {
        std::free(records[index].resource);
        free_heap_list(records[index].exceptions);
    }
    std::free(records);
}

/// Returns the exceptions of all objects of `family` as records for the caller, and their number in `*count`.
template <class Record>
Record* hand_out_exceptions(const protection& family, std::uint64_t* count) {
    const std::vector<excepted_object> objects = read_exceptions(family);
    const auto free_all = [&](Record* records) { free_records(records, objects.size()); };
    std::unique_ptr<Record[], decltype(free_all)> records(allocate<Record>(objects.size()), free_all);
    for (std::size_t index = 0; index < objects.size(); ++index) {
        records[index].resource = heap_text(objects[index].resource);
        records[index].exceptions = heap_list(objects[index].exceptions);
        records[index].exception_count = objects[index].exceptions.size();
    }
    *count = objects.size();
    return records.release();
}

}  // namespace local_service
