// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace local_service {

/// Prints where the store lies, all states and all lists that are not empty. A text that would not stay one word on its
/// line is printed as JSON has it.
void print_store();

/// Prints all states and lists as one JSON document.
void print_document();

/// Prints all records of the log, one after the other; with `is_following` also those that come later, without end.
void print_log(bool is_following);

}  // namespace local_service
