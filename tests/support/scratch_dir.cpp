// SPDX-License-Identifier: Apache-2.0
#include "support/scratch_dir.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace {

void require(bool is_done, const std::string& what) {
    if (!is_done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

scratch_dir::scratch_dir() : path_(std::filesystem::temp_directory_path() / "orvex-test.XXXXXX") {
    require(mkdtemp(path_.data()) != nullptr, "making a scratch directory");
    // The name of the temporary directory itself may lead through a link.
    path_ = std::filesystem::canonical(path_);
}

scratch_dir::~scratch_dir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string scratch_dir::write(const std::string& name, const std::string& content) const {
    const std::filesystem::path file = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << content << std::flush;
    require(stream.good(), "writing " + file.string());
    return file;
}
