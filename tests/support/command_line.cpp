// SPDX-License-Identifier: Apache-2.0
#include "support/command_line.h"

#include <utility>

command_line::command_line(std::vector<std::string> words) : words_(std::move(words)) {
    words_.insert(words_.begin(), "orvex_policy");
    for (std::string& word : words_) {
        argv_.push_back(word.data());
    }
    argv_.push_back(nullptr);
}
