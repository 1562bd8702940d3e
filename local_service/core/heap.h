// SPDX-License-Identifier: Apache-2.0
// Memory from `malloc`, as callers of the service library give it back with `free`.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace local_service {

/// Returns zeroed memory for `count` values; `count` may be 0. Throws where there is none.
template <class Value>
Value* allocate(std::size_t count) {
    void* memory = std::calloc(count == 0 ? 1 : count, sizeof(Value));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return static_cast<Value*>(memory);
}

/// Gives memory of `allocate` back.
struct heap_deleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// Returns a copy of `text`.
char* heap_text(std::string_view text);

/// A list of texts for a caller, in the making.
class heap_texts {
public:
    /// Appends a copy of `text`.
    void add(std::string_view text) { texts_.emplace_back(heap_text(text)); }

    std::size_t count() const { return texts_.size(); }

    /// Hands the texts over as an array with a null behind the last.
    char** release();

private:
    std::vector<std::unique_ptr<char, heap_deleter>> texts_;
};

/// Returns a list of copies of `texts`.
char** heap_list(const std::vector<std::string>& texts);

/// Frees a list of `heap_texts`. Null is allowed.
void free_heap_list(char** list) noexcept;

}  // namespace local_service
