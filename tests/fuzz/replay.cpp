// SPDX-License-Identifier: Apache-2.0
// Plays all files of a directory to a fuzz target.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "fuzz_target.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: replay DIR\n";
        return 2;
    }
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ostringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        const std::string input = text.str();
        std::cout << entry.path().filename().string() << std::endl;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
        ++count;
    }
    // A directory without seeds would be tested well.
    return count > 0 ? 0 : 1;
}
