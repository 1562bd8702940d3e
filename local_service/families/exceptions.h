// SPDX-License-Identifier: Apache-2.0
// The exceptions of file and process protection as their calls change and hand them out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/exceptions.h"
#include "core/heap.h"
#include "core/trace.h"

namespace local_service {

/// An object, of one of the kinds of service/object_kind.h, as a caller names it.
struct named_object {
    std::int32_t kind;
    std::string name;
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

/// Returns the texts of the exceptions of `object`.
std::vector<std::string> texts_of(const excepted_object& object);

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
        records[index].exceptions = heap_list(texts_of(objects[index]));
        records[index].exception_count = objects[index].exceptions.size();
    }
    *count = objects.size();
    return records.release();
}

/// Writes `count` records.
template <class Record>
void write_records(value_writer& out, const Record* records, std::uint64_t count) {
    out.write_array(records, static_cast<std::int64_t>(count), [&](const Record& record) {
        out.write_object({{"resource", record.resource},
                          {"exceptions", record.exceptions},
                          {"exception_count", record.exception_count}});
    });
}

}  // namespace local_service
