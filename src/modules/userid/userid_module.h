// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <list>
#include <string>

#include "framework/module_base.h"

/// The `userid` command: tells which administrator role's label a file, the files of a directory or those of a package
/// carry. It changes nothing and has no switch.
class COrvexUserid : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Prints the absolute form of `path` and its role: the first one found in the order root, secadm, auditadm.
    /// Returns 0, or -1 with a line where there is no absolute form.
    virtual int print_userid_by_file(const std::string& path);

    /// Prints each file of `dir` and its role. Returns 0, also for a directory that cannot be read, or -1 with a line
    /// where there is no absolute form.
    virtual int print_userid_by_dir(const std::string& dir);

    /// Prints each file of the package `pkg` and its role. Returns 0, or -1 with a line where the files cannot be had.
    virtual int print_userid_by_pkg(const std::string& pkg);

    /// Prints each of `files` as it stands, and its role: unlike for a single file the last one found in the order
    /// root, secadm, auditadm.
    virtual void print_userid_of_file_list(std::list<std::string> files);

    /// Does the same for an array of `count` strings, which stays the caller's and may be null.
    virtual void print_userid_of_file_array(char** files, int count);
};
