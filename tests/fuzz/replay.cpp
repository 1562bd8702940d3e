// SPDX-License-Identifier: Apache-2.0
// Plays all files of a directory to a fuzz target.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "fuzz_target.h"

namespace {

/// The file that tells run_to_the_end that not all is played; nothing where nobody asks for it.
class unfinished_mark {
public:
    unfinished_mark() {
        if (const char* const path = std::getenv("TEST_PREMATURE_EXIT_FILE"); path != nullptr) {
            path_ = path;
            std::ofstream(path_).put('0');
        }
    }
    ~unfinished_mark() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    unfinished_mark(const unfinished_mark&) = delete;
    unfinished_mark& operator=(const unfinished_mark&) = delete;

private:
    std::filesystem::path path_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: replay DIR\n";
        return 2;
    }
    const unfinished_mark mark;
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
