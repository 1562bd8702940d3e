// SPDX-License-Identifier: Apache-2.0
// What the calls that take many objects at once share.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/entry_list.h"

namespace local_service {

/// How an object of a batch stands on the list.
enum class listed_as {
    /// As it was given.
    given,
    /// A directory as its pattern.
    path,
};

/// Returns the texts of a batch from outside. Throws a failure for a null among them and for a count below 0.
std::vector<std::string> given_texts(char** texts, std::int64_t count);

/// Puts `texts` on `list`, as a part of the transaction that the caller opens. What stands there already is no failure.
void add_batch(const entry_list& list, listed_as form, const std::vector<std::string>& texts);

/// Takes `texts` off `list`, as a part of the transaction that the caller opens. Throws a failure for a text that does
/// not stand there.
void remove_batch(const entry_list& list, listed_as form, const std::vector<std::string>& texts);

}  // namespace local_service
