// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "state/policy.h"

namespace state {

/// Reads the policy of this host through the service library. Throws a failure where a state or the whitelist cannot be
/// read. A list that the library does not give counts as empty.
policy read_host();

}  // namespace state
