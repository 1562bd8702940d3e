// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "framework/module_base.h"

/// The `file` command: read-only protection of files, directories and packages, and the programs excepted from the
/// protection of each. Lists of objects are one text, joined by ':'. `action` is `action_add` or `action_delete`; kinds
/// are the `orvex_kind_` numbers.
class COrvexFile : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Protects the files `paths` or ends their protection, in one call for all that pass the tests. At a delete a file
    /// that is gone may be named by its absolute path. Returns 0 or the library's own number; refused pieces are told
    /// by lines.
    virtual int set_file_policy_by_file(const std::string& paths, const int& action);

    /// Does the same for the directories `paths`.
    virtual int set_file_policy_by_dir(const std::string& paths, const int& action);

    /// Does the same for the packages `packages`. Only an add asks whether a package is installed.
    virtual int set_file_policy_by_pkg(const std::string& packages, const int& action);

    /// Adds the programs `except_object`, a list, to the exceptions of `first_object`, one object, or takes them off.
    /// Returns 0; -1 where an object is refused; or the library's own number.
    virtual int set_file_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                                       const std::int32_t& except_kind, const std::string& except_object,
                                       const int& action);

    /// Prints every protected path and then every protected package, each with its exceptions. Returns 0 always.
    virtual int list_file_policy();

    /// Tells whether the file `path` is protected.
    virtual bool is_file_in_policy(const std::string& path);

    /// Tells whether the directory `path` is protected. It is looked for as its pattern only.
    virtual bool is_dir_in_policy(const std::string& path);

    /// Tells whether the package `package` is protected.
    virtual bool is_pkg_in_policy(const std::string& package);

    /// Tells whether `except_object` is an exception of `object`. Either is looked for as its pattern where it is a
    /// directory.
    virtual bool is_except_in_policy(const std::string& object, const std::string& except_object);
};
