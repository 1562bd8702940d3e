// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "framework/module_base.h"

/// A running process and the path of its program.
struct running_program {
    pid_t pid;
    std::string path;
};

/// Returns the process that `text` names by its id, with its program, or nothing with a line.
std::optional<running_program> find_running_program(COrvexBase& module, const std::string& text);
