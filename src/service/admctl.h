// SPDX-License-Identifier: Apache-2.0
// Administrator-role labels.
#pragma once

#include <cstdint>

extern "C" {

/// Returns the files that carry the label of the role `user_type` (0 root, 1 secadm, 2 auditadm), an array of `*count`
/// paths, or null, which counts as an empty list; an entry may be null. The caller sets `*count` to 0 before the call
/// and gives back every string and then the array with `free`.
char** orvex_scene_admctl_get_user_policy(std::int32_t user_type, std::uint64_t* count);
}
