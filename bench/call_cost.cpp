// SPDX-License-Identifier: Apache-2.0
// What a call of the stand-in costs beyond what it does, while nothing is traced and nothing is to fail: the processor
// time of a cheap service function, as a ratio to that of the system call behind it.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

#include "service/paths.h"

namespace {

constexpr int calls = 100000;
constexpr int rounds = 15;
constexpr const char* path = "/etc";

bool ask_system() {
    struct stat status {};
    return lstat(path, &status) == 0;
}

bool ask_service() {
    return path_is_exist(path) == 1;
}

/// The processor time of one round, in seconds; without end where an answer is wrong.
double measure(bool (*ask)()) {
    const std::clock_t start = std::clock();
    for (int call = 0; call < calls; ++call) {
        if (!ask()) {
            return std::numeric_limits<double>::infinity();
        }
    }
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

}  // namespace

int main() {
    // In turns, and the best of each, so that what else the machine does counts little.
    double bare = std::numeric_limits<double>::infinity();
    double service = bare;
    for (int round = 0; round < rounds; ++round) {
        bare = std::min(bare, measure(ask_system));
        service = std::min(service, measure(ask_service));
    }
    std::printf("%.2f %.0f\n", service / bare, (service - bare) / calls * 1e9);
    return 0;
}
