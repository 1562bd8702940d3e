// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace local_service {

/// Returns the words of a command line for `app`. Throws a usage error for an unknown word or option and for a value
/// where none belongs. Words of another command, behind a subcommand that takes one, are not looked at, and a "--"
/// before them is left out.
std::vector<std::string> checked_words(const CLI::App& app, int argc, const char* const* argv);

}  // namespace local_service
