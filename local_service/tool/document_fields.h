// SPDX-License-Identifier: Apache-2.0
// What writer and reader of a document have to agree on, beyond the parts of the content.
#pragma once

#include <array>

#include "service/object_kind.h"
#include "service/status.h"
#include "tool/content.h"

namespace local_service {

inline constexpr int document_version = 1;

/// The fields of the texts of a network policy, by its part; null where a kind has no further text.
inline constexpr std::array<std::array<const char*, 3>, net_parts.size()> net_text_fields{{
    {"icon", "desktop", nullptr},
    {"label", "text1", "text2"},
}};

/// The field that names an object whose name is of the sort `sort`.
constexpr const char* name_field(text_sort sort) {
    return sort == text_sort::path ? "path" : "name";
}

// The numbers behind the words of a document.
inline constexpr std::array<int, 3> status_values{orvex_status_disabled, orvex_status_enabled, orvex_status_permissive};
inline constexpr std::array<std::int32_t, 3> exception_kinds{orvex_kind_file, orvex_kind_dir, orvex_kind_pkg};
inline constexpr std::array<whitelist_status, 3> whitelist_statuses{whitelist_status::intact, whitelist_status::changed,
                                                                    whitelist_status::unknown};

}  // namespace local_service
