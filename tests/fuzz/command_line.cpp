// SPDX-License-Identifier: Apache-2.0
// Whole command lines over a service whose answers come from the input too. The first line has the words, separated by
// tabs, and the rest the answers; see fuzzed_service.h.
#include "support/command_line.h"

#include <fcntl.h>
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "fuzzed_service.h"
#include "support/captured_stream.h"
#include "support/given_input.h"

int orvex_policy_main(int argc, char** argv);

namespace {

/// What is left of a run of the program.
struct finished_run {
    /// Nothing where an exception ended the run.
    std::optional<int> exit_value;
    std::string output;
    bool is_output_good;
};

std::vector<std::string> split_words(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream stream(line);
    for (std::string word; std::getline(stream, word, '\t');) {
        // Further than a NUL no command line goes.
        words.emplace_back(word.c_str());
    }
    return words;
}

bool is_global_state(const std::string& word) {
    return word == "enable" || word == "disable" || word == "permissive";
}

/// Of a listing that meets a null exception the end is an exception that nothing catches.
std::optional<int> run_main(command_line& line) {
    try {
        return orvex_policy_main(line.argc(), line.argv());
    } catch (const std::logic_error& error) {
        require(std::string(error.what()).find("null") != std::string::npos, error.what());
        return std::nullopt;
    }
}

finished_run run(const std::vector<std::string>& words) {
    command_line line(words);
    std::cout.clear();
    optind = 0;
    // The C library's own complaints are its own.
    opterr = 0;
    std::optional<given_input> input;
    if (!words.empty() && words.front() == "disable") {
        input.emplace(fuzzed_service::take_text() + "\n");
    }
    const captured_stream output(stdout);
    const std::optional<int> exit_value = run_main(line);
    return {exit_value, output.read_all(), std::cout.good()};
}

int find_free_descriptor() {
    const int number = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(number);
    return number;
}

void check(const std::vector<std::string>& words, const finished_run& done) {
    const bool may_be_refused = !words.empty() && is_global_state(words.front());
    require(!done.exit_value || *done.exit_value == 0 || (may_be_refused && *done.exit_value == -1),
            "a wrong exit value");
    const bool may_end_in_a_question = !words.empty() && words.front() == "disable";
    require(done.output.empty() || done.output.back() == '\n' || !done.is_output_good || may_end_in_a_question,
            "a line without its end");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzzed_service service;
    setenv("HOME", "/home/user", 1);
    const std::string input = text_of_input(data, size);
    const std::string first_line = input.substr(0, input.find('\n'));
    service.begin(input.substr(std::min(first_line.size() + 1, input.size())));
    const std::vector<std::string> words = split_words(first_line);

    const int free_descriptor = find_free_descriptor();
    check(words, run(words));
    require(service.count_out() == 0, "memory of the library was not given back");
    require(find_free_descriptor() == free_descriptor, "a descriptor was left open");
    return 0;
}
