// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "state/commands.h"
#include "state/differences.h"

namespace state {

/// A document and the host, and what differs between them.
struct comparison {
    policy wanted;
    policy host;
    differences all;
};

/// Reads the document that the user names, then the host.
comparison compare_with_document(const arguments& given);

}  // namespace state
