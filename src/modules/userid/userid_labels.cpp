// SPDX-License-Identifier: Apache-2.0
// The look-up of role labels. A single file stops at the first role found, a batch shows the last one; the two differ
// on purpose.
#include <cstdint>
#include <initializer_list>
#include <list>
#include <optional>
#include <string>

#include "framework/output.h"
#include "framework/owned.h"
#include "modules/userid/userid_module.h"
#include "service/admctl.h"
#include "service/paths.h"

namespace {

struct role {
    std::int32_t user_type;
    const char* label;
};
constexpr role root_role = {.user_type = 0, .label = "root"};
constexpr role secadm_role = {.user_type = 1, .label = "secadm"};
constexpr role auditadm_role = {.user_type = 2, .label = "auditadm"};

constexpr const char* no_role_label = "none";

/// The files that carry one role's label.
class labelled_files {
public:
    explicit labelled_files(const role& of)
        : label_(of.label),
          paths_([&of](std::uint64_t* count) { return orvex_scene_admctl_get_user_policy(of.user_type, count); }) {}

    const char* label() const { return label_; }

    /// Tells whether `path` is among them. The first one that matches ends the search.
    bool hold(const std::string& path) const {
        return paths_.has_any(
            [&](const char* labelled) { return path == labelled || path_is_same(labelled, path.c_str()) == 1; });
    }

private:
    const char* label_;
    owned_list paths_;
};

/// Returns the label of the first role found; the roles behind it are not asked.
const char* find_first_label(const std::string& path) {
    for (const role& of : {root_role, secadm_role, auditadm_role}) {
        if (labelled_files(of).hold(path)) {
            return of.label;
        }
    }
    return no_role_label;
}

/// The labels of all three roles, fetched once for a whole batch of files.
class all_labels {
public:
    void print(const std::string& path) const {
        const char* label = no_role_label;
        // Every role is asked, and a later one replaces an earlier one.
        for (const labelled_files* files : {&root_, &secadm_, &auditadm_}) {
            if (files->hold(path)) {
                label = files->label();
            }
        }
        print_line(path, ": ", label);
    }

private:
    // In the order in which the lists are fetched, which is not the order in which they are asked.
    labelled_files secadm_{secadm_role};
    labelled_files auditadm_{auditadm_role};
    labelled_files root_{root_role};
};

}  // namespace

int COrvexUserid::print_userid_by_file(const std::string& path) {
    const std::optional<std::string> absolute_path = take_text(owned_text(get_absolute_path(path.c_str())));
    if (!absolute_path) {
        print_line("获取文件[", path, "]的绝对路径失败!");
        return -1;
    }
    print_line(*absolute_path, ": ", find_first_label(*absolute_path));
    return 0;
}

int COrvexUserid::print_userid_by_dir(const std::string& dir) {
    owned_text absolute_path(get_absolute_path(dir.c_str()));
    if (absolute_path == nullptr) {
        print_line("获取目录[", dir, "]的绝对路径失败!");
        return -1;
    }
    int count = 0;
    owned_list files([&](std::uint64_t* size) {
        char** list = get_file_list_from_dir(absolute_path.get(), &count);
        *size = count > 0 ? static_cast<std::uint64_t>(count) : 0;
        return list;
    });
    print_userid_of_file_array(files.data(), count);
    // The path goes before the files.
    absolute_path.reset();
    return 0;
}

int COrvexUserid::print_userid_by_pkg(const std::string& pkg) {
    std::list<std::string> files;
    if (get_pkg_files(pkg, files) != 0) {
        print_line("获取软件包[", pkg, "]中所有文件失败!");
        return -1;
    }
    print_userid_of_file_list(files);
    return 0;
}

// By value, as the operation's place in the class fixes it.
void COrvexUserid::print_userid_of_file_list(
    std::list<std::string> files) {  // NOLINT(performance-unnecessary-value-param)
    const all_labels labels;
    for (const std::string& file : files) {
        labels.print(file);
    }
}

void COrvexUserid::print_userid_of_file_array(char** files, int count) {
    const all_labels labels;
    for (int i = 0; files != nullptr && i < count; ++i) {
        if (files[i] != nullptr) {
            labels.print(files[i]);
        }
    }
}
