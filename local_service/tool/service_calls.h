// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

namespace local_service {

enum class call_result {
    number,
    pointer,
    nothing,
};

struct service_call {
    const char* name;
    call_result result;
};

/// Returns all functions of the service library, by their names.
const std::vector<service_call>& service_calls();

}  // namespace local_service
