// SPDX-License-Identifier: Apache-2.0
// Prints how the memory of one process grows with its package queries, in KiB, a row for each kind of query.
#include <rpm/rpmlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <list>
#include <string>

#include "framework/module_base.h"

namespace {

struct query_kind {
    const char* name;
    void (*ask)(COrvexBase& base);
};

constexpr std::array<query_kind, 4> kinds = {{
    {"is_pkg_installed", [](COrvexBase& base) { base.is_pkg_installed("orvex-demo-tools"); }},
    {"get_pkg_files",
     [](COrvexBase& base) {
         std::list<std::string> files;
         base.get_pkg_files("orvex-demo-tools", files);
     }},
    // What the two above have in common.
    {"rpmReadConfigFiles", [](COrvexBase&) { rpmReadConfigFiles(nullptr, nullptr); }},
    {"get_pkg_by_file", [](COrvexBase& base) { base.get_pkg_by_file(TEST_PACKAGES_DIR "/root/orvex-demo/bin/hello"); }},
}};
constexpr std::array<int, 5> counts = {0, 1, 10, 100, 1000};

/// The memory of this process that is in use, in KiB.
long get_resident_size() {
    long pages = 0;
    std::string total;
    std::ifstream("/proc/self/statm") >> total >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

void print_row(const query_kind& kind) {
    COrvexBase base;
    std::printf("%-18s", kind.name);
    int done = 0;
    for (const int count : counts) {
        for (; done < count; ++done) {
            kind.ask(base);
        }
        std::printf(" %8ld", get_resident_size());
    }
    std::printf("\n");
}

}  // namespace

int main() {
    setenv("HOME", TEST_PACKAGES_DIR "/home", 1);
    std::printf("%-18s", "queries");
    for (const int count : counts) {
        std::printf(" %8d", count);
    }
    std::printf("\n");
    for (const query_kind& kind : kinds) {
        // Each kind begins in a fresh process.
        static_cast<void>(std::fflush(stdout));
        if (fork() == 0) {
            print_row(kind);
            std::exit(0);
        }
        wait(nullptr);
    }
    return 0;
}
