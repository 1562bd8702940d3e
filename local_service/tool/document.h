// SPDX-License-Identifier: Apache-2.0
// The content of a store as a JSON document.
#pragma once

#include <string>

#include "tool/content.h"

namespace local_service {

/// Returns the document of `content`, with a line break at its end.
std::string make_document(const store_content& content);

/// Returns the content that `document` describes; what it does not mention is as in a new store. Throws a failure that
/// names the place for a fault of syntax, an unknown version or field, a wrong type, and what no store can hold.
store_content read_document(const std::string& document);

}  // namespace local_service
