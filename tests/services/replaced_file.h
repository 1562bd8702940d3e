// SPDX-License-Identifier: Apache-2.0
// Files of the kernel and of /etc that a test makes up.
#pragma once

#include <string>

/// While the object lives, streams of this process that open `path` find the file `replacement` there; if that does not
/// exist, none. No other process notices, and nothing is mounted.
class replaced_file {
public:
    replaced_file(std::string path, std::string replacement);
    replaced_file(const replaced_file&) = delete;
    replaced_file& operator=(const replaced_file&) = delete;
    ~replaced_file();

private:
    std::string path_;
};
