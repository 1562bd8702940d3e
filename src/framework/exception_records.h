// SPDX-License-Identifier: Apache-2.0
// The exception programs of protected objects, as the service library returns them for `file` and `proc`.
#pragma once

#include <cstdint>
#include <span>  // IWYU pragma: export
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "framework/output.h"
#include "framework/owned.h"

/// An array of exception records, given back by the library's own call on every way out, also where it is null or
/// empty.
template <class Record, void (*give_back)(Record*, std::uint64_t)>
class exception_records {
public:
    /// Fetches the records: `fetch` is called once with the address of a count that is 0.
    template <class Fetch>
    explicit exception_records(Fetch fetch) : records_(fetch(&count_)) {}

    exception_records(const exception_records&) = delete;
    exception_records& operator=(const exception_records&) = delete;

    ~exception_records() { give_back(records_, count_); }

    bool empty() const { return records_ == nullptr || count_ == 0; }

    /// All records, in the library's order.
    std::span<const Record> all() const { return empty() ? std::span<const Record>() : std::span(records_, count_); }

    /// Returns the first record of `object`, byte for byte, or null. Records without a resource are skipped.
    const Record* find(const std::string& object) const {
        for (std::uint64_t i = 0; !empty() && i < count_; ++i) {
            if (records_[i].resource != nullptr && object == records_[i].resource) {
                return &records_[i];
            }
        }
        return nullptr;
    }

    /// Tells whether the first record of `object` has `exception`. No later record is looked at.
    bool hold(const std::string& object, const std::string& exception) const {
        const Record* record = find(object);
        for (std::uint64_t i = 0; record != nullptr && i < record->exception_count; ++i) {
            if (record->exceptions[i] != nullptr && exception == record->exceptions[i]) {
                return true;
            }
        }
        return false;
    }

    /// Prints a row for each protected object of the lists, null ones left out. Each is given back behind its row, and
    /// each list behind its last one.
    void print_rows(std::span<owned_list> lists) const {
        const auto first_records = collect_first_records();
        for (owned_list& list : lists) {
            owned_list objects = std::move(list);
            objects.show_and_give_back([&](const char* object) {
                if (object != nullptr) {
                    const auto found = first_records.find(object);
                    print_row(object, found == first_records.end() ? nullptr : found->second);
                }
            });
        }
    }

private:
    /// Returns what `find` finds, for all resources at once: of many rows none walks over the records by itself.
    std::unordered_map<std::string_view, const Record*> collect_first_records() const {
        std::unordered_map<std::string_view, const Record*> first_records;
        for (std::uint64_t i = 0; !empty() && i < count_; ++i) {
            if (records_[i].resource != nullptr) {
                first_records.try_emplace(records_[i].resource, &records_[i]);
            }
        }
        return first_records;
    }

    /// The two shapes of a row differ by more than their content: with no record there is a blank behind the object and
    /// a colon in the braces.
    static void print_row(const char* object, const Record* record) {
        if (record == nullptr) {
            print_line(object, " {例外:}");
            return;
        }
        std::string exceptions;
        for (std::uint64_t i = 0; i < record->exception_count; ++i) {
            // A null exception ends in the exception that building the string raises.
            exceptions += ":" + std::string(record->exceptions[i]);
        }
        print_line(object, "{例外", exceptions, "}");
    }

    // The count stands first: it has to be 0 when the records are fetched.
    std::uint64_t count_ = 0;
    Record* records_;
};
