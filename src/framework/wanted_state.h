// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/action.h"
#include "framework/output.h"

/// Tells whether an object needs no change: it is listed already at an add, or not listed at a delete.
constexpr bool needs_no_change(int action, bool is_listed) {
    return (action == action_add && is_listed) || (action == action_delete && !is_listed);
}

/// How a list's lines end for an object that needs no change.
struct wanted_state_tails {
    const char* already_listed;
    const char* not_listed;
};

/// Refuses an object that needs no change, with a line that begins with the pieces of `object`.
template <class... Pieces>
bool refuse_needless_change(const wanted_state_tails& tails, int action, bool is_listed, const Pieces&... object) {
    if (!needs_no_change(action, is_listed)) {
        return false;
    }
    print_line(object..., action == action_add ? tails.already_listed : tails.not_listed);
    return true;
}
