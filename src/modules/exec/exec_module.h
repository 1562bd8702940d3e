// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "framework/module_base.h"

/// Where a file of a query comes from; the numbers of the operations' `source` arguments.
inline constexpr int source_user = 1;
inline constexpr int source_dir = 2;
inline constexpr int source_pkg = 3;

/// The `exec` command: execution control. The whitelist of files that may run and the exception programs are the
/// service library's; script control is a switch beside the module's own. Lists of objects are one text, joined by ':'.
/// `action` is `action_add` or `action_delete`.
class COrvexExec : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Tells whether the file `path`, named by the user, is excepted by any list.
    virtual bool is_file_excepted(const std::string& path);

    /// Tells whether the file `path` is excepted by any list, as far as its `source` leaves the question open: the
    /// package is not asked for a file of a package, nor the directories for one of a directory walk.
    virtual bool is_file_excepted_from(const std::string& path, const int& source);

    /// Tells whether the directory `path` is an exception.
    virtual bool is_dir_in_except_list(const std::string& path);

    /// Tells whether the package `pkg` is an exception.
    virtual bool is_pkg_in_except_list(const std::string& pkg);

    /// Adds the files `paths` to the whitelist or takes them off, in one call for all that pass the tests. Returns 0
    /// always; refused pieces and a failed call are told by lines.
    virtual int set_exec_policy_by_file(const std::string& paths, const int& action);

    /// Adds all files below the directories `paths` to the whitelist or takes them off, one call for each directory.
    /// Returns 0, or -1 when it stopped at a piece that is no directory.
    virtual int set_exec_policy_by_dir(const std::string& paths, const int& action);

    /// Adds the controlled files of the packages `pkgs` to the whitelist or takes them off, in one call for all.
    /// Returns the library's own result, or 0 where there was nothing to call for.
    virtual int set_exec_policy_by_pkg(const std::string& pkgs, const int& action);

    /// Adds the files `paths` to the exceptions or takes them off, in one call for all that pass the tests. Returns 0
    /// always.
    virtual int set_exec_except_policy_by_file(const std::string& paths, const int& action);

    /// Adds the directories `paths` to the exceptions or takes them off, in one call for all. Returns 0, or -1 when a
    /// piece is no directory: then none of the list is applied.
    virtual int set_exec_except_policy_by_dir(const std::string& paths, const int& action);

    /// Adds the packages `pkgs` to the exceptions or takes them off, in one call for all that pass the tests. Returns 0
    /// always.
    virtual int set_exec_except_policy_by_pkg(const std::string& pkgs, const int& action);

    /// Prints the whitelisted files that are no longer intact. Returns 0, or -1 when the whitelist cannot be loaded.
    virtual int get_all_tampered_file();

    /// Prints the state of each of the files `paths`. Returns 0 always.
    virtual int get_whlist_status_by_file(const std::string& paths);

    /// Prints the state of each controlled file below the directories `paths`. Returns 0, or -1 when it stopped at a
    /// piece that is no directory.
    virtual int get_whlist_status_by_dir(const std::string& paths);

    /// Prints the state of each controlled file of the packages `pkgs`. Returns 0, or -1 when it stopped at a package
    /// whose files cannot be had.
    virtual int get_whlist_status_by_pkg(const std::string& pkgs);

    /// Prints the exceptions: files, directories and packages, one row each. Returns 0 always.
    virtual int get_all_except_policy();

    /// Looks up the whitelist record of `path`. Returns 0 for none, 1 for an intact file, 2 for one that was tampered
    /// with, -1 for a failed look-up or an unknown state, with a line.
    virtual int check_file_in_policy(const std::string& path);

    /// Tells whether `path` stands in the list of exception files, as it is.
    virtual bool is_file_in_except_list(const std::string& path);

    /// Tells whether the directory `path` is an exception.
    virtual bool has_except_dir(const std::string& path);

    /// Tells whether the package `pkg` is an exception.
    virtual bool has_except_pkg(const std::string& pkg);

    /// Prints the row of one file. A file of a kind that is not controlled gets a line with `verbose` only. Returns 0,
    /// or -1 when the look-up failed, with a line.
    virtual int print_whlist_status_by_file(const std::string& path, const int& source, bool verbose);
};
