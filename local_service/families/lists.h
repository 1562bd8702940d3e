// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "core/entry_list.h"
#include "core/heap.h"

namespace local_service {

/// Returns the texts of `list` as a heap list for the caller, and their number in `*count`.
inline char** hand_out(const entry_list& list, std::uint64_t* count) {
    const std::vector<std::string> texts = list.texts();
    char** handed_out = heap_list(texts);
    *count = texts.size();
    return handed_out;
}

}  // namespace local_service
