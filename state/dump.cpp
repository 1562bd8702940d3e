// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "state/commands.h"
#include "state/document.h"
#include "state/host.h"

namespace state {
namespace {

/// The file is opened when all is read, so that a failure leaves what it holds.
void write_file(const std::string& path, const std::string& text) {
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw failure(path + ": " + std::strerror(errno));
    }
}

}  // namespace

int dump_policy(const arguments& given) {
    policy host = read_host();
    if (host.framework == framework_disabled) {
        // Its modules have no state of their own.
        host.modules.clear();
    }
    const std::string document = write_document(host);
    if (given.output.empty()) {
        std::cout << document;
    } else {
        write_file(given.output, document);
    }
    return exit_done;
}

}  // namespace state
