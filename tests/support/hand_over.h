// SPDX-License-Identifier: Apache-2.0
// Between the values of the tests and the C side of the service functions. For the double's own sources.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/given.h"
#include "support/memory_ledger.h"

/// The text, which has to be there: null fails the test.
std::string text_of(const char* text);

/// The text, or nothing for null.
maybe_text maybe_text_of(const char* text);

/// The texts of an array that the program passes with its count.
std::vector<std::string> texts_of(char** texts, std::int64_t count);

/// The numbers of an array that the program passes with its count.
std::vector<std::int32_t> numbers_of(const std::int32_t* numbers, std::int64_t count);

/// A heap copy of `text`, or null, to be given back with `free`.
char* hand_over_text(const maybe_text& text, way_back way = way_back::with_free);

/// The strings and the array of `list`, or null.
char** hand_over_entries(const given_list& list, way_back way);

/// Fails the test unless the program has set the count to 0 in front of the call.
void expect_zero(std::int64_t count);

/// Hands a list over, to be given back with `free`.
template <class Count>
char** hand_over_list(const given_list& list, Count* count) {
    expect_zero(static_cast<std::int64_t>(*count));
    *count = static_cast<Count>(list.count);
    return hand_over_entries(list, way_back::with_free);
}
