// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "framework/module_base.h"

/// The `kmod` command: protects kernel modules from being unloaded. The list of protected modules is the service
/// library's; a module enters it by the path of its `.ko` file or by its name.
class COrvexKmod : public COrvexBase {
public:
    int run(int argc, char** argv) override;
    void usage() override;

    /// Tells whether the module `name` is protected.
    virtual bool check_kmod_is_add_by_name(const std::string& name);

    /// Tells whether the module of the `.ko` file `path` is protected. A file whose module cannot be named is told by a
    /// line and counts as not protected.
    virtual bool check_kmod_is_add_by_file(const std::string& path);

    /// Protects the module of the `.ko` file `path`. Returns 0, also when it is protected already, with a line; or -1,
    /// with the failure printed and logged.
    virtual int add_kmod_by_file(const std::string& path);

    /// Protects the module `name`; reports like `add_kmod_by_file`.
    virtual int add_kmod_by_name(const std::string& name);

    /// Ends the protection of the module of the `.ko` file `path`. Returns 0, also when it is not protected, with a
    /// line; or -1, with the failure printed and logged.
    virtual int del_kmod_by_file(const std::string& path);

    /// Ends the protection of the module `name`; reports like `del_kmod_by_file`.
    virtual int del_kmod_by_name(const std::string& name);
};
