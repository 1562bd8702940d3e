// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "core/entry_list.h"
#include "core/heap.h"

namespace local_service {

/// Returns the texts of `list` as a heap list for the caller, and their number in `*count`.
inline char** hand_out(const entry_list& list, std::uint64_t* count) {
    heap_texts texts;
    list.for_each([&](std::string_view text) { texts.add(text); });
    *count = texts.count();
    return texts.release();
}

}  // namespace local_service
