// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "support/given.h"

/// Gives a variable of the environment another value while the object lives, or takes it away.
class given_variable {
public:
    /// A null `value` takes the variable away.
    given_variable(std::string name, const char* value);
    given_variable(const given_variable&) = delete;
    given_variable& operator=(const given_variable&) = delete;

    /// The variable is as before.
    ~given_variable();

private:
    std::string name_;
    maybe_text old_value_;
};
