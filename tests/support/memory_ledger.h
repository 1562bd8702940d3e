// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

/// How the program has to give memory back.
enum class way_back {
    with_free,
    with_library_call,
};

/// Keeps the memory that the double handed out until the program has given it back. All of it comes from `malloc`.
class memory_ledger {
public:
    /// Hands out `size` bytes, all 0.
    void* hand_out(std::size_t size, way_back way);

    /// Hands out a copy of `text` with its NUL.
    char* hand_out_text(const std::string& text, way_back way);

    /// The program frees `memory`, which need not be of the ledger. Fails the test where another way back was told.
    /// Does not free it.
    void note_free(void* memory);

    /// A call of the library frees `memory`, null or handed out for that call; anything else fails the test.
    void take_back(void* memory);

    /// The number of pieces that are still out.
    std::size_t count_out() const { return out_.size(); }

private:
    std::unordered_map<void*, way_back> out_;
};
