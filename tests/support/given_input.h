// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Lets standard input be `text`, and end behind it, while the object lives. The text fits into a pipe.
class given_input {
public:
    explicit given_input(const std::string& text);
    given_input(const given_input&) = delete;
    given_input& operator=(const given_input&) = delete;

    /// Standard input is the old one again.
    ~given_input();

private:
    int old_place_;
};
