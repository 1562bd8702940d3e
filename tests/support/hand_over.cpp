// SPDX-License-Identifier: Apache-2.0
#include "support/hand_over.h"

#include <gtest/gtest.h>

#include "support/service_double.h"

std::string text_of(const char* text) {
    if (text == nullptr) {
        ADD_FAILURE() << "the library got null for a text";
        return "(null)";
    }
    return text;
}

maybe_text maybe_text_of(const char* text) {
    return text == nullptr ? maybe_text() : maybe_text(text);
}

std::vector<std::string> texts_of(char** texts, std::int64_t count) {
    EXPECT_GE(count, 0);
    std::vector<std::string> copies;
    for (std::int64_t index = 0; index < count; ++index) {
        copies.push_back(text_of(texts[index]));
    }
    return copies;
}

std::vector<std::int32_t> numbers_of(const std::int32_t* numbers, std::int64_t count) {
    EXPECT_GE(count, 0);
    return count > 0 ? std::vector<std::int32_t>(numbers, numbers + count) : std::vector<std::int32_t>();
}

char* hand_over_text(const maybe_text& text, way_back way) {
    return text ? service_double::in_use().memory().hand_out_text(*text, way) : nullptr;
}

char** hand_over_entries(const given_list& list, way_back way) {
    if (!list.items) {
        return nullptr;
    }
    void* const memory = service_double::in_use().memory().hand_out(list.items->size() * sizeof(char*), way, "array");
    auto** const entries = static_cast<char**>(memory);
    char** next = entries;
    for (const maybe_text& item : *list.items) {
        *next++ = hand_over_text(item, way);
    }
    return entries;
}

void expect_zero(std::int64_t count) {
    EXPECT_EQ(count, 0) << "the count was not set to 0 in front of the call";
}
