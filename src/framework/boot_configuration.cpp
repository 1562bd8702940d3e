// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <fstream>
#include <string>

#include "framework/module_base.h"
#include "framework/output.h"

namespace {

/// Opens a boot configuration file; one that cannot be opened is told by a line.
std::ifstream open_file(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        print_line("打开文件[", path, "]失败");
    }
    return file;
}

/// Plain searches of text: "security=" may stand before "lsm=", and comments count like everything else.
bool has_box_parameters(const std::string& line, std::size_t start) {
    const std::size_t lsm = line.find("lsm=", start);
    if (lsm == std::string::npos || line.find("vemu", lsm) == std::string::npos) {
        return false;
    }
    const std::size_t security = line.find("security=", start);
    return security != std::string::npos && line.find("box", security) != std::string::npos;
}

}  // namespace

bool COrvexBase::is_cmdline_box_enabled() {
    std::ifstream file = open_file("/proc/cmdline");
    std::string line;
    if (!file || !std::getline(file, line)) {
        return false;
    }
    return has_box_parameters(line, 0);
}

bool COrvexBase::is_grub_box_enabled() {
    std::ifstream file = open_file("/etc/default/grub");
    std::string line;
    while (file && std::getline(file, line)) {
        const std::size_t key = line.find("GRUB_CMDLINE_LINUX_SECURITY");
        // The first line with the key decides, whatever stands behind it.
        if (key != std::string::npos) {
            return has_box_parameters(line, key);
        }
    }
    return false;
}
