// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/action.h"
#include "framework/output.h"

/// How a list's lines end for an object that needs no change.
struct wanted_state_tails {
    const char* already_listed;
    const char* not_listed;
};

/// Tells whether an object is in the wanted state already: listed at an add, not listed at a delete. Then a line is
/// printed that begins with the pieces of `object`.
template <class... Pieces>
bool is_in_wanted_state(const wanted_state_tails& tails, int action, bool is_listed, const Pieces&... object) {
    if (action == action_add && is_listed) {
        print_line(object..., tails.already_listed);
        return true;
    }
    if (action == action_delete && !is_listed) {
        print_line(object..., tails.not_listed);
        return true;
    }
    return false;
}
