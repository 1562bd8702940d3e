// SPDX-License-Identifier: Apache-2.0
#include "tool/usage.h"

#include <algorithm>
#include <numeric>

namespace local_service {
namespace {

/// How many letters have to be added, removed or replaced to make one word of the other.
std::size_t distance(const std::string& word, const std::string& other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : word) {
        std::size_t diagonal = row[0]++;
        for (std::size_t column = 1; column <= other.size(); ++column) {
            const std::size_t replaced = diagonal + (letter == other[column - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({replaced, row[column] + 1, row[column - 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

usage_error unknown_word(const std::string& kind, const std::string& word, const std::vector<std::string>& known) {
    const auto nearest =
        std::min_element(known.begin(), known.end(), [&](const std::string& first, const std::string& second) {
            return distance(word, first) < distance(word, second);
        });
    const bool is_similar = nearest != known.end() && distance(word, *nearest) <= nearest->size() / 2;
    const std::string advice = is_similar ? ", did you mean '" + *nearest + "'?" : "";
    return usage_error{"unknown " + kind + " '" + word + "'" + advice};
}

}  // namespace local_service
