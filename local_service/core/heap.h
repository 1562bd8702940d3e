// SPDX-License-Identifier: Apache-2.0
// Memory from `malloc`, as callers of the service library give it back with `free`.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
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
char* heap_text(const std::string& text);

/// Returns an array of copies of `texts`, with a null behind the last.
char** heap_list(const std::vector<std::string>& texts);

/// Frees a list of `heap_list`. Null is allowed.
void free_heap_list(char** list) noexcept;

}  // namespace local_service
