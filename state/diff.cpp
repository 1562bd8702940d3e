// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <iostream>

#include "state/comparison.h"

namespace state {

int show_differences(const arguments& given) {
    const differences all = compare_with_document(given).all;
    if (given.is_json) {
        std::cout << write_differences(all);
    } else {
        for (const std::string& line : tell_differences(all, isatty(STDOUT_FILENO) == 1)) {
            std::cout << line << '\n';
        }
    }
    return all.empty() ? exit_done : exit_different;
}

}  // namespace state
