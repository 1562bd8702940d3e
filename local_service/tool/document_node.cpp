// SPDX-License-Identifier: Apache-2.0
#include "tool/document_node.h"

#include <algorithm>
#include <charconv>

#include "core/failure.h"
#include "tool/usage.h"

namespace local_service {

void document_node::refuse(const std::string& problem) const {
    throw failure((place_.empty() ? "the document" : place_) + ": " + problem);
}

void document_node::refuse_type(const std::string& needed) const {
    refuse(needed + " is needed here, found: " + value_.dump());
}

void document_node::require_fields(const std::vector<std::string>& known) const {
    if (!value_.is_object()) {
        refuse_type("an object");
    }
    for (const auto& [field, value] : value_.items()) {
        if (std::find(known.begin(), known.end(), field) == known.end()) {
            document_node(value, place_ + "/" + field).refuse(unknown_word("field", field, known).what());
        }
    }
}

std::optional<document_node> document_node::find(const std::string& field) const {
    const auto found = value_.find(field);
    if (found == value_.end()) {
        return std::nullopt;
    }
    return document_node(*found, place_ + "/" + field);
}

document_node document_node::at(const std::string& field) const {
    const std::optional<document_node> found = find(field);
    if (!found.has_value()) {
        refuse("the field '" + field + "' is missing");
    }
    return *found;
}

std::vector<document_node> document_node::elements() const {
    if (!value_.is_array()) {
        refuse_type("a list");
    }
    std::vector<document_node> all;
    for (std::size_t index = 0; index < value_.size(); ++index) {
        all.emplace_back(value_[index], place_ + "/" + std::to_string(index));
    }
    return all;
}

std::string document_node::plain_text() const {
    if (!value_.is_string()) {
        refuse_type("a text");
    }
    return value_.get<std::string>();
}

std::string document_node::text_within(std::size_t size) const {
    std::string text;
    if (value_.is_object()) {
        require_fields({"hex"});
        const document_node hex = at("hex");
        const std::string digits = hex.plain_text();
        for (std::size_t index = 0; index + 1 < digits.size(); index += 2) {
            unsigned char byte = 0;
            const char* end = digits.data() + index + 2;
            if (std::from_chars(end - 2, end, byte, 16).ptr != end) {
                break;
            }
            text += static_cast<char>(byte);
        }
        if (text.size() * 2 != digits.size()) {
            hex.refuse("two hexadecimal digits are needed for each byte");
        }
    } else {
        text = plain_text();
    }
    if (text.size() >= size) {
        refuse("longer than " + std::to_string(size - 1) + " bytes");
    }
    if (text.find('\0') != std::string::npos) {
        refuse("a text cannot hold a byte 0");
    }
    return text;
}

std::string document_node::text(text_sort sort) const {
    std::string text = text_within(std::string::npos);
    if (text.empty()) {
        refuse("an empty text");
    }
    if (sort == text_sort::path && text.front() != '/') {
        refuse("a relative path");
    }
    return text;
}

std::int64_t document_node::integer(std::int64_t least, std::int64_t most) const {
    if (!value_.is_number_integer()) {
        refuse_type("a whole number");
    }
    const bool is_too_large = value_.is_number_unsigned() && value_.get<std::uint64_t>() > std::uint64_t{INT64_MAX};
    const auto number = value_.get<std::int64_t>();
    if (is_too_large || number < least || number > most) {
        refuse("a number from " + std::to_string(least) + " to " + std::to_string(most) + " is needed here");
    }
    return number;
}

bool document_node::truth() const {
    if (!value_.is_boolean()) {
        refuse_type("true or false");
    }
    return value_.get<bool>();
}

}  // namespace local_service
