// SPDX-License-Identifier: Apache-2.0
// The parsers of what a user types. The first byte is the delimiter, and the rest is the text.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/module_base.h"
#include "fuzz_target.h"

namespace {

constexpr const char* home = "/home/of a user";

void try_split_string(COrvexBase& base, const std::string& text, char delimiter) {
    std::string joined;
    for (const std::string& piece : base.split_string(text, delimiter)) {
        require(!piece.empty() && piece.find(delimiter) == std::string::npos, "a piece is empty or holds a delimiter");
        joined += piece;
    }
    std::string expected = text;
    expected.erase(std::remove(expected.begin(), expected.end(), delimiter), expected.end());
    require(joined == expected, "the pieces joined are not the text without its delimiters");
}

void try_expand_tilde(COrvexBase& base, const std::string& text) {
    const bool is_at_home = text == "~" || text.compare(0, 2, "~/") == 0;
    require(base.expand_tilde(text) == (is_at_home ? home + text.substr(1) : text), "a wrong home");
}

void try_get_path_filename(COrvexBase& base, const std::string& text) {
    if (text.empty()) {
        return;
    }
    const std::string name = base.get_path_filename(text);
    require(name.find('/') == std::string::npos, "a file name holds a slash");
    require(text == text.substr(0, text.size() - name.size()) + name, "a file name is not the end of its path");
    const std::string rest = text.substr(0, text.size() - name.size());
    require(rest.empty() || rest.back() == '/', "a file name begins inside a word");
}

/// A name and what was cut from it are separated at the two dashes and the dot that are the last of their kind.
void try_get_pkg_name_from_nevra(COrvexBase& base, const std::string& text) {
    const std::string name = base.get_pkg_name_from_nevra(text);
    if (name.empty()) {
        return;
    }
    require(text.compare(0, name.size() + 1, name + "-") == 0, "a package's name does not end at a dash");
    const std::string rest = text.substr(name.size() + 1);
    const std::string version_release = rest.substr(0, rest.rfind('.'));
    require(rest.find('.') != std::string::npos, "there was no architecture");
    require(std::count(version_release.begin(), version_release.end(), '-') == 1, "not just version and release");
}

/// The number that the digits of `text` mean, in the form without blanks and signs, where it is `limit` at the most.
std::optional<std::uint64_t> read_plain_number(const std::string& text, std::uint64_t limit) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool is_number = error == std::errc() && stop == end && number <= limit;
    return is_number ? std::optional(number) : std::nullopt;
}

/// Tells whether the text has the form that strtol takes, whatever the number is.
bool is_in_form_of_strtol(const std::string& text) {
    const std::size_t start = std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
    const bool has_sign = start < text.size() && (text[start] == '-' || text[start] == '+');
    const std::string digits = text.substr(start + (has_sign ? 1 : 0));
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
}

template <class Number>
void try_number(COrvexBase& base, Number (COrvexBase::*parse)(const std::string&), const std::string& text,
                std::uint64_t limit) {
    const std::optional<std::uint64_t> plain = read_plain_number(text, limit);
    try {
        const Number number = (base.*parse)(text);
        require(text.empty() || is_in_form_of_strtol(text), "a number was read from what is none");
        require(!plain || *plain == static_cast<std::uint64_t>(number), "a wrong number");
        require((base.*parse)(std::to_string(number)) == number, "a number does not come back");
    } catch (const std::invalid_argument&) {
        require(!plain && !text.empty(), "a number was refused");
    }
}

void try_is_all_digits(COrvexBase& base, const std::string& text) {
    const bool has_digits_only = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    require(base.is_all_digits(text) == has_digits_only, "digits and others were mixed up");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    setenv("HOME", home, 1);
    const std::string text = text_of_input(data + 1, size - 1);
    COrvexBase base;
    try_split_string(base, text, static_cast<char>(*data));
    try_expand_tilde(base, text);
    try_get_path_filename(base, text);
    try_get_pkg_name_from_nevra(base, text);
    try_number(base, &COrvexBase::parse_pid, text, 0x7FFFFFFF);
    try_number(base, &COrvexBase::parse_uint32, text, 0xFFFFFFFF);
    try_is_all_digits(base, text);
    return 0;
}
