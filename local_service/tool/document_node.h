// SPDX-License-Identifier: Apache-2.0
// A value in a document that is read, with its place, so that each fault can be told with where it is.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tool/content.h"

namespace local_service {

class document_node {
public:
    /// The value `value` at the JSON pointer `place`.
    document_node(const nlohmann::json& value, std::string place) : value_(value), place_(std::move(place)) {}

    /// Throws the failure that says what is wrong here.
    [[noreturn]] void refuse(const std::string& problem) const;

    /// Refuses what is no object and an object with other fields than `known`.
    void require_fields(const std::vector<std::string>& known) const;

    /// The value of a field of this object, where it is there.
    std::optional<document_node> find(const std::string& field) const;

    /// The value of a field of this object, which has to be there.
    document_node at(const std::string& field) const;

    /// The values of this list.
    std::vector<document_node> elements() const;

    /// This text, or the bytes that an object {"hex": "..."} spells. It is not empty.
    std::string text(text_sort sort) const;

    /// The same, also empty, and of fewer than `size` bytes.
    std::string text_within(std::size_t size) const;

    std::int64_t integer(std::int64_t least, std::int64_t most) const;

    bool truth() const;

    /// The one of `values` whose word stands here.
    template <class Value, std::size_t Count, class WordOf>
    Value choice(const std::array<Value, Count>& values, WordOf word_of_value) const {
        std::string words;
        for (const Value value : values) {
            if (value_ == word_of_value(value)) {
                return value;
            }
            words += (words.empty() ? "" : ", ") + word_of_value(value);
        }
        refuse("not one of " + words);
    }

private:
    [[noreturn]] void refuse_type(const std::string& needed) const;
    std::string plain_text() const;

    const nlohmann::json& value_;
    std::string place_;
};

}  // namespace local_service
