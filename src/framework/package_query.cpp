// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <initializer_list>
#include <list>
#include <string>

#include "framework/module_base.h"
#include "framework/on_demand.h"

bool COrvexBase::is_pkg_installed(const std::string& pkg) {
    return ask_packages().is_installed(pkg);
}

int COrvexBase::get_pkg_files(const std::string& pkg, std::list<std::string>& files) {
    return pkg.empty() ? -1 : ask_packages().get_files(pkg, files);
}

std::string COrvexBase::get_pkg_name_from_nevra(const std::string& nevra) {
    std::string name = nevra;
    // The architecture goes first, and with it the newline of the query's output; then the release and the version.
    for (const char separator : {'.', '-', '-'}) {
        const std::size_t end = name.rfind(separator);
        if (end == std::string::npos) {
            return {};
        }
        name.erase(end);
    }
    return name;
}
