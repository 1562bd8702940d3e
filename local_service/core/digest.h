// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace local_service {

/// What can be said of a file's content.
struct content_digest {
    enum class outcome {
        read,
        /// There is no regular file at the path.
        gone,
        /// There is one, and it cannot be read.
        unreadable,
    };
    outcome result;
    /// The SHA-256 of the content in hexadecimal digits; empty unless it was read.
    std::string text;
};

/// Reads the file `path`, through a link too.
content_digest digest_file(const std::string& path);

}  // namespace local_service
