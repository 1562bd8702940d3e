// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "core/file_reader.h"

namespace local_service {

/// See `file_reader`.
content_digest digest_file(const std::string& path);

}  // namespace local_service
