// SPDX-License-Identifier: Apache-2.0
// What the program asks of rpm and of GIO. Most commands ask neither, and loading them would be the greater part of
// such a run. So each of the two is asked by a loadable module of the program's own, opened at the first question and
// kept. The modules are the sources in src/on_demand; a program that is linked with these as well opens no module.
#pragma once

#include <list>
#include <string>

/// The questions to the package database. Nothing is kept from one to the next.
struct package_questions {
    /// Tells whether the database knows the label `pkg`.
    bool (*is_installed)(const std::string& pkg);

    /// Appends the files of the first package with the label `pkg` to `files`, in the database's order. Returns 0, or
    /// -1 with a line for a package that is not installed.
    int (*get_files)(const std::string& pkg, std::list<std::string>& files);

    /// Prints the owner of the file `path`, or what went wrong, on standard output. For a child process only: it leaves
    /// standard error elsewhere. Returns the child's exit status.
    int (*print_owner)(const std::string& path);
};

/// The questions to a desktop entry file. A file that cannot be loaded is told by a line and gives an empty text.
struct desktop_questions {
    std::string (*read_icon)(const std::string& file);
    std::string (*read_name)(const std::string& file);
};

/// What the modules define. The numbers grow with each change of the questions, so that a module of another version of
/// the program is not taken for one of this version.
extern "C" const package_questions orvex_package_questions_1;
extern "C" const desktop_questions orvex_desktop_questions_1;

/// Return the questions. A module that is missing or broken is told on standard error and ends the program with 127, as
/// the loader does where a library is missing.
const package_questions& ask_packages();
const desktop_questions& ask_desktop_entries();
