// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace local_service {

/// Prints where the store lies, all states and all lists that are not empty.
void print_store();

/// Prints all records of the log, one after the other; with `is_following` also those that come later, without end.
void print_log(bool is_following);

}  // namespace local_service
