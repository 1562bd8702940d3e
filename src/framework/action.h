// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Operation numbers of a module's `run`.
inline constexpr int action_none = 0;
inline constexpr int action_add = 1;
inline constexpr int action_update = 2;
inline constexpr int action_delete = 3;
inline constexpr int action_list = 4;
