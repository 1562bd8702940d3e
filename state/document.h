// SPDX-License-Identifier: Apache-2.0
// A policy as a JSON document.
#pragma once

#include <string>

#include "state/policy.h"

namespace state {

inline constexpr int document_version = 1;

/// Returns the document of `content`, with a line break at its end. The same content gives the same bytes.
std::string write_document(const policy& content);

/// Returns what `document` wants. Throws a failure that begins with the place for a fault of syntax, an unknown version
/// or field, a wrong type, and for entries that contradict each other.
policy read_document(const std::string& document);

}  // namespace state
