// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "state/commands.h"
#include "state/differences.h"
#include "state/plan.h"

namespace state {

/// A document and the host, and what differs between them.
struct comparison {
    policy wanted;
    policy host;
    differences all;
};

/// Reads the document that the user names, then the host.
comparison compare_with_document(const arguments& given);

/// Plans the commands for what differs. Throws a refusal that tells all obstacles where there are some.
plan make_plan(const comparison& compared, const arguments& given);

/// Tells on standard error that nothing more can be done before a restart.
void tell_restart();

}  // namespace state
