// SPDX-License-Identifier: Apache-2.0
// What a package's file list costs in the rpm library itself: steps through the list and keeps nothing of it.
#include <rpm/header.h>
#include <rpm/rpmdb.h>
#include <rpm/rpmfi.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmts.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: package_walk PACKAGE\n";
        return 2;
    }
    rpmReadConfigFiles(nullptr, nullptr);
    const rpmts transaction = rpmtsCreate();
    const rpmdbMatchIterator iterator =
        rpmtsInitIterator(transaction, static_cast<rpmDbiTagVal>(RPMDBI_LABEL), argv[1], 0);
    const Header header = rpmdbNextIterator(iterator);
    if (header == nullptr) {
        std::cerr << "package_walk: " << argv[1] << " is not installed\n";
        return 1;
    }
    // The parts of a file list that the program does not load either.
    constexpr rpmfiFlags flags =
        RPMFI_NOFILECLASS | RPMFI_NOFILEDEPS | RPMFI_NOFILELANGS | RPMFI_NOFILECOLORS | RPMFI_NOFILEVERIFYFLAGS;
    const rpmfi files = rpmfiNew(transaction, header, RPMTAG_BASENAMES, flags);
    int count = 0;
    while (rpmfiNext(files) >= 0) {
        rpmfiFN(files);
        ++count;
    }
    std::cout << count << '\n';
    rpmfiFree(files);
    rpmdbFreeIterator(iterator);
    rpmtsFree(transaction);
    return 0;
}
