// SPDX-License-Identifier: Apache-2.0
// The named lists of texts of which most policies consist.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace local_service {

/// One list: texts, each once, in the order in which they were added.
class entry_list {
public:
    /// The list with the name `name`, a literal.
    constexpr explicit entry_list(const char* name) : name_(name) {}

    const char* name() const { return name_; }

    /// Returns all texts.
    std::vector<std::string> texts() const;

    /// Shows each text to `take`, in the order of entry.
    void for_each(const std::function<void(std::string_view)>& take) const;

    /// Tells whether `text` stands on the list.
    bool contains(const std::string& text) const { return find(text).has_value(); }

    /// Returns the number by which the store knows the entry `text`, or nothing.
    std::optional<std::int64_t> find(const std::string& text) const;

    /// Puts `text` on the list. False where it stood there already.
    bool add(const std::string& text) const;

    /// Takes `text` off the list. False where it was not there.
    bool remove(const std::string& text) const;

private:
    const char* name_;
};

/// The lists of the policies. `exec_` are the programs that execution control leaves alone; `excepted_` are the objects
/// that have exceptions, protected or not.
namespace lists {
inline constexpr entry_list kernel_modules("kmod");
inline constexpr entry_list exec_files("exec.file");
inline constexpr entry_list exec_packages("exec.package");
inline constexpr entry_list protected_files("file.path");
inline constexpr entry_list protected_packages("file.package");
inline constexpr entry_list protected_programs("proc.path");
inline constexpr entry_list blacklist("blacklist");

/// Labelled files, by the number of the role.
inline constexpr std::array<entry_list, 3> role_labels{entry_list("label.root"), entry_list("label.secadm"),
                                                       entry_list("label.auditadm")};
}  // namespace lists

/// Returns the text under which the directory `path` stands on a list: its path and "/*".
std::string directory_pattern(const std::string& path);

/// Returns the text under which `path` goes on a list: the pattern for what is a directory now, else the path.
std::string listed_form(const std::string& path);

/// Returns the text under which `path` stands on `list`, its pattern or the path itself, or nothing. The object may be
/// gone from the disk, and the path may end in a slash.
std::optional<std::string> find_listed_form(const entry_list& list, const std::string& path);

}  // namespace local_service
