// SPDX-License-Identifier: Apache-2.0
// Owners of the memory that crosses the border to the service library.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>  // IWYU pragma: export
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// Gives memory from `malloc` back with `free`.
struct free_deleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// A C string, or a record without pointers in it, that is given back with `free`. May be null.
template <class Value>
using owned_memory = std::unique_ptr<Value, free_deleter>;
using owned_text = owned_memory<char>;

/// Returns a heap copy of `text` up to its first NUL.
inline owned_text copy_text(const std::string& text) {
    return owned_text(strdup(text.c_str()));
}

/// Returns what `text` holds and gives its memory back at once. Null gives nothing.
inline std::optional<std::string> take_text(owned_text text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text.get());
}

/// A heap list of heap strings, as a service call returns it with a 64-bit count. Every string and the array are given
/// back with `free`. A null array is an empty list; entries may be null.
class owned_list {
public:
    /// Fetches the list: `fetch` is called once with the address of a count that is 0, and returns the array, or null.
    template <class Fetch>
    explicit owned_list(Fetch fetch) : entries_(fetch(&count_)) {}

    owned_list(owned_list&&) noexcept = default;
    owned_list& operator=(owned_list&&) = delete;

    ~owned_list() {
        show_and_give_back([](const char* /*entry*/) {});
    }

    /// Tells whether the library returned no array at all.
    bool is_null() const { return entries_ == nullptr; }

    /// All entries in the library's order, null ones among them.
    const char* const* begin() const { return entries_.get(); }
    const char* const* end() const { return is_null() ? nullptr : begin() + count_; }

    /// The array itself, for an operation that takes one.
    char** data() { return entries_.get(); }

    /// Tells whether an entry passes the `test`. Null entries are skipped; the first match ends the search.
    template <class Test>
    bool has_any(Test test) const {
        return std::any_of(begin(), end(), [&](const char* entry) { return entry != nullptr && test(entry); });
    }

    /// Tells whether an entry equals `text` byte for byte, in length too.
    bool contains(const std::string& text) const {
        return has_any([&](const char* entry) { return text == entry; });
    }

    /// Shows every entry to `look`, in the library's order, null ones among them, and gives each one back as soon as it
    /// was shown. The array stays.
    template <class Look>
    void show_and_give_back(Look look) {
        for (std::uint64_t i = 0; !is_null() && i < count_; ++i) {
            const owned_text entry(std::exchange(data()[i], nullptr));
            look(entry.get());
        }
    }

private:
    // The count stands first: it has to be 0 when the array is fetched.
    std::uint64_t count_ = 0;
    owned_memory<char*> entries_;
};

/// A growing array of heap strings for a service call that takes many objects at once. It owns the strings; the library
/// only reads them.
class text_batch {
public:
    text_batch() = default;
    text_batch(text_batch&&) noexcept = default;
    text_batch(const text_batch&) = delete;
    text_batch& operator=(const text_batch&) = delete;

    ~text_batch() {
        for (char* text : texts_) {
            std::free(text);
        }
    }

    /// Takes `text` over as the last string of the batch.
    void add(owned_text text) {
        texts_.push_back(text.get());
        static_cast<void>(text.release());
    }

    bool empty() const { return texts_.empty(); }

    /// The array and its length for the call; valid until the next `add`.
    char** data() { return texts_.data(); }
    int count() const { return static_cast<int>(texts_.size()); }
    std::span<char*> texts() { return texts_; }

private:
    std::vector<char*> texts_;
};
