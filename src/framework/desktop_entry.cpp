// SPDX-License-Identifier: Apache-2.0
#include <list>
#include <string>

#include "framework/module_base.h"
#include "framework/on_demand.h"

namespace {

bool holds(const std::string& text, const char* piece) {
    return text.find(piece) != std::string::npos;
}

}  // namespace

std::string COrvexBase::get_desktop_file(const std::string& pkg) {
    std::list<std::string> files;
    if (pkg.empty() || get_pkg_files(pkg, files) != 0) {
        return {};
    }
    std::string found;
    for (const std::string& file : files) {
        // This one package brings several entries, of which only one is the application's.
        const bool is_entry =
            holds(file, "/usr/share/applications/") && (pkg != "wps-office" || holds(file, "wps-office-prometheus"));
        // The last one counts.
        if (is_entry) {
            found = file;
        }
    }
    return found;
}

std::string COrvexBase::get_desktop_icon(const std::string& pkg) {
    const std::string file = get_desktop_file(pkg);
    return file.empty() ? std::string() : ask_desktop_entries().read_icon(file);
}

std::string COrvexBase::get_desktop_name(const std::string& pkg) {
    const std::string file = get_desktop_file(pkg);
    return file.empty() ? std::string() : ask_desktop_entries().read_name(file);
}
