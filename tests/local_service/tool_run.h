// SPDX-License-Identifier: Apache-2.0
// orvex_local as a process.
#pragma once

#include "local_store.h"

/// Runs the tool on the test's store.
class tool : public local_store {
protected:
    /// Runs orvex_local with `arguments`, a piece of a shell's command line, and keeps what it printed. Returns its
    /// exit value.
    int run(const std::string& arguments);

    /// What the last run printed.
    const std::string& output() const { return output_; }
    std::string errors() const;

    /// Puts something on each list of the store.
    void fill_store() const;

private:
    std::string output_;
};
