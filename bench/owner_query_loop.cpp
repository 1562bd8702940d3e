// SPDX-License-Identifier: Apache-2.0
// The dearest part of a directory's listing and nothing else: asks for the package of every file below a directory,
// with the fork and the query of the program itself.
#include <filesystem>
#include <iostream>

#include "framework/module_base.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: owner_query_loop DIR\n";
        return 2;
    }
    COrvexBase base;
    int asked = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[1])) {
        if (!entry.is_directory()) {
            base.get_pkg_by_file(entry.path().string());
            ++asked;
        }
    }
    std::cout << asked << '\n';
    return 0;
}
