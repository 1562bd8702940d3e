// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "tool/command_runner.h"
#include "tool/failing.h"

namespace local_service {

/// What the command line gives beside the commands, and how the tool is to end.
struct arguments {
    std::string role;
    std::string path;
    bool is_following = false;
    bool is_json = false;
    bool is_forced = false;
    bool is_listing = false;
    bool is_clearing = false;
    typed_wish wish;
    run_place place;
    trace_wish trace;
    int exit_value = 0;
};

/// Adds all commands to `app`. They run while the command line is parsed.
void add_commands(CLI::App& app, arguments& given);

}  // namespace local_service
