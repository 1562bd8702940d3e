// SPDX-License-Identifier: Apache-2.0
// Wrong command lines, told with the word that is wrong.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace local_service {

/// A command line that cannot be understood.
class usage_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns the error of `word`, which is no `kind`, with the most similar one of `known` where one is similar.
usage_error unknown_word(const std::string& kind, const std::string& word, const std::vector<std::string>& known);

}  // namespace local_service
