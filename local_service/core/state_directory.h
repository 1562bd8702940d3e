// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <string>

namespace local_service {

/// The user whom the framework knows as security administrator.
inline constexpr uid_t security_administrator = 600;

/// The place that root and the security administrator share.
inline constexpr const char* system_directory = "/var/lib/orvex-local";

/// Returns the directory of the store for this caller, whether it exists or not: `$ORVEX_LOCAL_STATE`; else
/// /var/lib/orvex-local, for root and the security administrator and where they can write it; else orvex-local in
/// `$XDG_STATE_HOME`, which is ~/.local/state where it is not set. Throws a
/// store failure for a relative path in ORVEX_LOCAL_STATE and where there is no home either.
std::string state_directory();

/// Gives the file or directory `path` to `user`, where the caller is root. In a user namespace that user may not exist:
/// then root keeps it.
void give_to(uid_t user, const std::string& path);

}  // namespace local_service
