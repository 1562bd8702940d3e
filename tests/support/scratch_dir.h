// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A directory that goes with the object, with all that is in it.
class scratch_dir {
public:
    scratch_dir();
    scratch_dir(const scratch_dir&) = delete;
    scratch_dir& operator=(const scratch_dir&) = delete;
    ~scratch_dir();

    const std::string& path() const { return path_; }

    /// Writes the file `name`, in a sub-directory where the name says so. Returns its whole path.
    std::string write(const std::string& name, const std::string& content) const;

private:
    std::string path_;
};
