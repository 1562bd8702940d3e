// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "framework/module_base.h"
#include "framework/owned.h"
#include "framework/path_checks.h"

/// Returns the path that a delete works on, or null with lines: the real path where `path` exists, else `path` as it
/// stands, so that what has left the disk can still be taken off by its stored text. For that it has to be absolute;
/// `advice` is the second line where it is not.
owned_text get_path_to_delete(COrvexBase& module, path_kind kind, const std::string& path, const char* advice);
