// SPDX-License-Identifier: Apache-2.0
#include "support/command_line.h"

command_line::command_line(const std::vector<std::string>& words) : words_{"orvex_policy"} {
    words_.insert(words_.end(), words.begin(), words.end());
    for (std::string& word : words_) {
        argv_.push_back(word.data());
    }
    argv_.push_back(nullptr);
}
