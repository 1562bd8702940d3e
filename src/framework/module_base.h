// SPDX-License-Identifier: Apache-2.0
// The base class of all module commands and the services that they share.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

/// The framework's security modules, by the numbers of the service library.
enum orvex_module_type : std::int32_t {
    module_exec = 0,
    module_net = 1,
    module_file = 2,
    module_kmod = 3,
    module_3adm = 4,
    module_proc = 5,
    module_exec_script = 7,
    module_box = 11,
};

/// Base class of the module commands. A plain object serves the permission check and the status report.
/// All operations are virtual, and their order is fixed: derived classes override the destructor, `run` and `usage` and
/// add their own operations behind the last one here. They add no data members.
class COrvexBase {
public:
    COrvexBase() = default;
    COrvexBase(const COrvexBase&) = delete;
    COrvexBase& operator=(const COrvexBase&) = delete;

    virtual ~COrvexBase();

    /// Serves one command line, `main`'s own arguments: `argv[1]` is the module's word. Returns 0, -1 or what an
    /// operation returned, with every message already printed. Here it does nothing and returns 0.
    virtual int run(int argc, char** argv);

    /// Prints the module's help. Here it prints nothing.
    virtual void usage();

    /// Returns the name of the package that owns the file `path`, or an empty string. A forked child asks the package
    /// database, and every call reads rpm's configuration anew. A file of two packages gives the first one's whole
    /// query line in front of the second's name. A failing pipe, fork or read is told on standard error.
    virtual std::string get_pkg_by_file(const std::string& path);

    /// Returns `path` from its last '/' on, that one included, or all of it where it has none.
    virtual std::string get_path_tail(const std::string& path);

    /// Returns the desktop entry file of the package `pkg`, or an empty string: the last file in the package's list
    /// that has "/usr/share/applications/" anywhere in its path.
    virtual std::string get_desktop_file(const std::string& pkg);

    /// Returns the icon text of the package's desktop entry, or an empty string; a desktop entry that cannot be loaded
    /// is told by a line.
    virtual std::string get_desktop_icon(const std::string& pkg);

    /// Returns the file name of `path`, empty where `path` ends in '/'. Throws std::runtime_error for an empty path.
    virtual std::string get_path_filename(const std::string& path);

    /// Returns the application name of the package's desktop entry, or an empty string; a desktop entry that cannot be
    /// loaded is told by a line.
    virtual std::string get_desktop_name(const std::string& pkg);

    /// Appends the files of the installed package `pkg` to `files`, in the database's order. Returns 0, or -1 for a
    /// package that is not installed, with a line, and for an empty name, with none.
    virtual int get_pkg_files(const std::string& pkg, std::list<std::string>& files);

    /// Tells whether the package database knows the label `pkg`.
    virtual bool is_pkg_installed(const std::string& pkg);

    /// Tells whether the text of the normalised absolute `path` begins with the home directory's, path components not
    /// regarded. An unset HOME is told by a line and gives false.
    virtual bool is_path_under_home(const std::string& path);

    /// Tells whether `text` is one or more of the digits '0' to '9' and nothing else.
    virtual bool is_all_digits(const std::string& text);

    /// Tells whether the running kernel's command line carries the parameters of the file box. A file that cannot be
    /// opened is told by a line.
    virtual bool is_cmdline_box_enabled();

    /// Tells whether the boot loader's defaults carry the parameters of the file box. A file that cannot be opened is
    /// told by a line.
    virtual bool is_grub_box_enabled();

    /// Tells whether `path` begins with '/'. Throws std::out_of_range for an empty path.
    virtual bool is_absolute_path(const std::string& path);

    /// Returns the value of HOME, or an empty string with a line where it is unset.
    virtual std::string get_home_dir();

    /// Returns `path` with a leading '~' replaced by the home directory. Other users' homes are not expanded; without a
    /// home a line is printed and the path comes back as it is.
    virtual std::string expand_tilde(const std::string& path);

    /// Returns the decimal number in `text`, 0 for an empty one; blanks in front and a sign are accepted as strtoul
    /// accepts them. Throws std::invalid_argument, with the message for the user, for anything else.
    virtual std::uint32_t parse_uint32(const std::string& text);

    /// Returns the process id in `text`, 0 for an empty one. Throws std::invalid_argument, with the message for the
    /// user, for what is no number from 0 to 2147483647.
    virtual pid_t parse_pid(const std::string& text);

    /// Returns the pieces of `text` between the delimiters, in order, without the empty ones.
    virtual std::vector<std::string> split_string(const std::string& text, char delimiter);

    /// Prints `label` and the local time of now, with milliseconds, as one line.
    virtual void print_current_time(const std::string& label);

    /// Returns the program path of the process `pid`, from the framework's attribute file and in the framework's
    /// standard form. Throws std::runtime_error with the message for the user.
    virtual std::string get_path_by_pid(std::uint32_t pid);

    /// Switches `module` to `status` (0 off, 1 on). While the framework is disabled this enables it with the module
    /// alone in force, after the next restart. Returns 0, or -1 with the failure already printed.
    virtual int set_module_status(const orvex_module_type& module, const int& status);

    /// Fills the module table. May run more than once.
    virtual void init_module_table();

    /// The names of the modules by type; empty until `init_module_table`.
    virtual std::map<orvex_module_type, std::string>& get_module_names();

    /// The modules in the order of the status report; empty until `init_module_table`.
    virtual std::vector<orvex_module_type>& get_module_types();

    /// Tells whether the caller may change anything. On refusal `error` becomes the message for the user; nothing is
    /// printed.
    virtual bool check_permission(std::string& error);

    /// Returns the name in a text of the form name-version-release.arch, or an empty string.
    virtual std::string get_pkg_name_from_nevra(const std::string& nevra);

private:
    std::map<orvex_module_type, std::string> module_names;
    std::vector<orvex_module_type> module_types;
};
