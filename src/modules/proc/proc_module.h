// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "framework/module_base.h"

/// The `proc` command: protects programs from being killed, by path or by running process, and lists the programs that
/// may kill them all the same. Lists of objects are one text, joined by ':'. `action` is `action_add` or
/// `action_delete`; kinds are the `orvex_kind_` numbers.
class COrvexProc : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Protects the programs `paths` or ends their protection, in one call for all that pass the tests. A path has to
    /// exist, at a delete too, and must not be blacklisted. Returns 0 or the library's own number.
    virtual int set_proc_policy_by_file(const std::string& paths, const int& action);

    /// Does the same for the programs of the running processes `pids`. The blacklist is not asked.
    virtual int set_proc_policy_by_pid(const std::string& pids, const int& action);

    /// Adds the programs `except_object`, a list, to those that may kill `first_object`, one program, or takes them
    /// off. Returns 0; -1 where an object is refused; or the library's own number.
    virtual int set_proc_except_policy(const std::int32_t& first_kind, const std::string& first_object,
                                       const std::int32_t& except_kind, const std::string& except_object,
                                       const int& action);

    /// Does the same for the program of the one running process `pid`.
    virtual int set_proc_except_policy_by_pid(const std::string& pid, const std::int32_t& except_kind,
                                              const std::string& except_object, const int& action);

    /// Prints every protected program with its exceptions. Returns 0 always.
    virtual int list_proc_policy();

    /// Tells whether the program `path` is protected.
    virtual bool is_proc_in_policy(const std::string& path);

    /// Tells whether `except_object` may kill the protected program `path`. It is looked for as its pattern where it is
    /// a directory.
    virtual bool is_proc_except_in_policy(const std::string& path, const std::string& except_object);
};
