// SPDX-License-Identifier: Apache-2.0
#include "support/memory_ledger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

void* memory_ledger::hand_out(std::size_t size, way_back way, const std::string& name) {
    void* const memory = std::calloc(1, std::max<std::size_t>(size, 1));
    out_.emplace(memory, piece{way, name});
    return memory;
}

char* memory_ledger::hand_out_text(const std::string& text, way_back way) {
    auto* const copy = static_cast<char*>(hand_out(text.size() + 1, way, text));
    text.copy(copy, text.size());
    return copy;
}

void memory_ledger::note_free(void* memory) {
    const auto entry = out_.find(memory);
    if (entry == out_.end()) {
        return;
    }
    if (entry->second.way == way_back::with_library_call) {
        ADD_FAILURE() << "memory that has a free call of its own was given back with free";
    }
    strike_out(entry);
}

void memory_ledger::take_back(void* memory) {
    if (memory == nullptr) {
        return;
    }
    const auto entry = out_.find(memory);
    if (entry == out_.end() || entry->second.way != way_back::with_library_call) {
        ADD_FAILURE() << "a free call of the library got memory that was not handed out for it";
        return;
    }
    strike_out(entry);
    std::free(memory);
}

void memory_ledger::strike_out(pieces::iterator entry) {
    if (shows_give_backs_) {
        std::cout << "(free: " << entry->second.name << ")" << std::endl;
    }
    out_.erase(entry);
}
