// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace local_service {

/// Returns the directory of the libraries that this process runs on, built or installed: an absolute path without
/// links. Throws a failure where it cannot be found.
std::string library_directory();

}  // namespace local_service
