// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "framework/module_base.h"

/// The `net` command: allows or denies network use. The package is the unit: a program file that a package owns is
/// served through the package's policy, and only a file of no package gets a record of its own. `status` is
/// `netctl_allow` or `netctl_deny`.
class COrvexNet : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Adds a policy that denies, for the package of the file `path` or for the file itself. Returns 0, also where
    /// there is one already, with a line; or -1 with the failure printed.
    virtual int add_net_policy_by_file(const std::string& path);

    /// Adds a policy that denies for the installed package `pkg`. Returns 0, also where there is one already, with a
    /// line; or -1 with the failure printed.
    virtual int add_net_policy_by_pkg(const std::string& pkg);

    /// Removes the policy of the package of the file `path` and the file's own. An absolute path need not exist.
    /// Returns 0, also where there is none, with a line; -1 for a bad path; or the library's own result of the
    /// last step.
    virtual int del_net_policy_by_file(const std::string& path);

    /// Removes the policy of the package `pkg`, installed or not. Returns 0, also where there is none, with a line; or
    /// -1 with the failure printed.
    virtual int del_net_policy_by_pkg(const std::string& pkg);

    /// Sets the status of the policy of the package of the file `path`, or of the file's own. Returns 0, also where
    /// there is none, with a line; or -1 with the failure printed.
    virtual int update_net_policy_by_file(const std::string& path, const std::int32_t& status);

    /// Sets the status of the policy of the package `pkg`, installed or not. Returns 0, also where there is none, with
    /// a line; or -1 with the failure printed.
    virtual int update_net_policy_by_pkg(const std::string& pkg, const std::int32_t& status);

    /// Prints all policies, packages first. Returns 0 always.
    virtual int list_net_policy();
};
