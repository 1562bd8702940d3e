// SPDX-License-Identifier: Apache-2.0
#include "state/comparison.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <utility>

#include "state/document.h"
#include "state/host.h"
#include "state/obstacles.h"

namespace state {
namespace {

std::string shown_name(const arguments& given) {
    return given.document == "-" ? "standard input" : given.document;
}

std::string read_input(const arguments& given) {
    std::ostringstream text;
    if (given.document == "-") {
        text << std::cin.rdbuf();
        return text.str();
    }
    errno = 0;
    std::ifstream file(given.document, std::ios::binary);
    // An empty file leaves the target in its failed state, and a directory can be opened.
    if (!file || (file.peek() == std::ifstream::traits_type::eof() && errno != 0)) {
        throw failure(std::strerror(errno));
    }
    text << file.rdbuf();
    return text.str();
}

}  // namespace

comparison compare_with_document(const arguments& given) {
    comparison compared;
    try {
        compared.wanted = read_document(read_input(given));
    } catch (const failure& fault) {
        throw failure(shown_name(given) + ": " + fault.what());
    }
    compared.host = read_host();
    compared.all = find_differences(compared.host, compared.wanted, given.keeps_others);
    return compared;
}

plan make_plan(const comparison& compared, const arguments& given) {
    std::vector<std::string> obstacles = find_obstacles(compared.host, compared.wanted, compared.all);
    for (std::string& obstacle : obstacles) {
        obstacle.insert(0, shown_name(given) + ": ");
    }
    if (!obstacles.empty()) {
        throw refusal(std::move(obstacles));
    }
    return make_plan(compared.host, compared.wanted, compared.all);
}

void tell_restart() {
    std::cerr << "orvex_state: the framework works after a restart of the machine; apply the document again then\n";
}

}  // namespace state
