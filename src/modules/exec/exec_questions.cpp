// SPDX-License-Identifier: Apache-2.0
// The questions that are asked of the exception lists. Each fetches its list anew.
#include <string>

#include "framework/owned.h"
#include "modules/exec/exec_module.h"
#include "modules/exec/exec_pieces.h"
#include "service/exectl.h"
#include "service/paths.h"

namespace {

/// Returns what an entry of the file list names: an entry that stands for a directory ends in '/' and '*', and both go.
std::string cut_star(const std::string& entry) {
    return ends_in_star(entry) ? cut_last(cut_last(entry)) : entry;
}

/// Tells whether a file named by the user or found in a package is covered by an entry of the file list. A directory
/// covers by plain text, without regard to component borders: "/opt/app" covers "/opt/application" too.
bool covers(const char* entry, const std::string& path) {
    const std::string object = cut_star(entry);
    if (path_is_dir(object.c_str()) == 1) {
        return path.compare(0, object.size(), object) == 0;
    }
    return path == object;
}

}  // namespace

bool COrvexExec::is_file_excepted(const std::string& path) {
    return is_file_excepted_from(path, source_user);
}

bool COrvexExec::is_file_excepted_from(const std::string& path, const int& source) {
    // For a file of a package the package has been asked about already.
    if (source != source_pkg) {
        const std::string pkg = get_pkg_by_file(path);
        if (!pkg.empty() && is_pkg_in_except_list(pkg)) {
            return true;
        }
    }
    const owned_list files(orvex_scene_exectl_get_policy_for_file_permissive);
    // In a directory walk the directory has been asked about already: only the file itself counts.
    return files.has_any([&](const char* entry) { return source == source_dir ? path == entry : covers(entry, path); });
}

bool COrvexExec::is_file_in_except_list(const std::string& path) {
    return owned_list(orvex_scene_exectl_get_policy_for_file_permissive).contains(path);
}

bool COrvexExec::is_dir_in_except_list(const std::string& path) {
    const owned_list files(orvex_scene_exectl_get_policy_for_file_permissive);
    return files.has_any([&](const char* entry) { return path == cut_star(entry); });
}

bool COrvexExec::has_except_dir(const std::string& path) {
    return is_dir_in_except_list(path);
}

bool COrvexExec::is_pkg_in_except_list(const std::string& pkg) {
    return owned_list(orvex_scene_exectl_get_policy_for_package_permissive).contains(pkg);
}

bool COrvexExec::has_except_pkg(const std::string& pkg) {
    return is_pkg_in_except_list(pkg);
}
