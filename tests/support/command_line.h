// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// A command line as `main` gets it: the program's name, the words, a null pointer; all of it writable.
class command_line {
public:
    explicit command_line(const std::vector<std::string>& words);
    command_line(const command_line&) = delete;
    command_line& operator=(const command_line&) = delete;

    int argc() const { return static_cast<int>(argv_.size()) - 1; }
    char** argv() { return argv_.data(); }

private:
    std::vector<std::string> words_;
    std::vector<char*> argv_;
};
