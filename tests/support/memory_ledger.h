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
    /// Hands out `size` bytes, all 0, under a name for `show_give_backs`.
    void* hand_out(std::size_t size, way_back way, const std::string& name);

    /// Hands out a copy of `text` with its NUL. Its name is the text.
    char* hand_out_text(const std::string& text, way_back way);

    /// The program frees `memory`, which need not be of the ledger. Fails the test where another way back was told.
    /// Does not free it.
    void note_free(void* memory);

    /// A call of the library frees `memory`, null or handed out for that call; anything else fails the test.
    void take_back(void* memory);

    /// From now on each piece that is given back is told on standard output by a line "(free: NAME)", so that a test
    /// sees when it was in the output of the program.
    void show_give_backs() { shows_give_backs_ = true; }

    /// The number of pieces that are still out.
    std::size_t count_out() const { return out_.size(); }

private:
    struct piece {
        way_back way;
        std::string name;
    };
    using pieces = std::unordered_map<void*, piece>;

    void strike_out(pieces::iterator entry);

    pieces out_;
    bool shows_give_backs_ = false;
};
