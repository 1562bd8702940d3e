// SPDX-License-Identifier: Apache-2.0
// What a test lets the double hand out. These are plain values: the memory that the program gets is made from them at
// the call, afresh each time, so that they may serve any number of calls.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "service/netctl.h"

/// A C string that may be null.
using maybe_text = std::optional<std::string>;

/// An array with its count: the items, or no array at all. The count is what the library claims, which for a null array
/// need not be 0.
template <class Item>
struct given {
    std::optional<std::vector<Item>> items;
    std::uint64_t count = 0;
};

/// An array of `items`, which may be none; the array is there all the same.
template <class Item>
given<Item> give_items(std::vector<Item> items) {
    const std::uint64_t count = items.size();
    return {std::move(items), count};
}

/// A list of strings. A null pointer stands for a null entry.
using given_list = given<maybe_text>;

inline given_list give_list(std::initializer_list<const char*> texts) {
    std::vector<maybe_text> items;
    for (const char* text : texts) {
        items.push_back(text == nullptr ? maybe_text() : maybe_text(text));
    }
    return give_items(std::move(items));
}

/// A null list, with the count that goes with it.
inline given_list give_no_list(std::uint64_t count = 0) {
    return {std::nullopt, count};
}

/// The exceptions of one protected object.
struct given_exceptions_of {
    maybe_text resource;
    given_list exceptions;
};
using given_exceptions = given<given_exceptions_of>;

/// One whitelist record.
struct given_exectl {
    maybe_text path;
    std::int32_t status = 0;
};

/// Answer of the look-up of one whitelist record.
struct given_exectl_lookup {
    int result = 0;
    given_exectl record;
};

/// Answer of the load of the whole whitelist; without links the chain's head is null.
struct given_exectl_chain {
    int result = 0;
    std::vector<given_exectl> links;
};

/// A package's network policy, with all bytes behind the texts 0.
netctl_pkg_record give_netctl_pkg(const std::string& name, std::int32_t status, const std::string& icon,
                                  const std::string& desktop, std::int32_t tag);

/// A program's network policy, with all bytes behind the texts 0.
netctl_ext_record give_netctl_ext(const std::string& path, std::int32_t status, const std::string& label,
                                  const std::string& text1, const std::string& text2, std::int32_t tag);
