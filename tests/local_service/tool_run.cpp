// SPDX-License-Identifier: Apache-2.0
#include "tool_run.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "core/entry_list.h"
#include "service/exectl.h"
#include "service/filectl.h"
#include "service/kmodctl.h"
#include "service/netctl.h"
#include "service/taskctl.h"

int tool::run(const std::string& arguments) {
    const std::string command = "{ '" ORVEX_LOCAL_PROGRAM "' " + arguments + "; } 2>'" + path("errors") + "'";
    FILE* output = popen(command.c_str(), "r");
    output_.clear();
    std::array<char, 4096> buffer{};
    for (std::size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), output)) > 0;) {
        output_.append(buffer.data(), got);
    }
    return WEXITSTATUS(pclose(output));
}

std::string tool::errors() const {
    std::ostringstream text;
    text << std::ifstream(path("errors")).rdbuf();
    return text.str();
}

void tool::fill_store() const {
    write("changed", "before");
    batch files{write("tool", "content"), path("changed")};
    orvex_scene_exectl_wlist_multi_add(files.data(), files.count());
    write("changed", "after");
    orvex_netctl_pkg_add(0, "bash", netctl_deny, "an icon", "", 2);
    orvex_netctl_ext_add(7, "/opt/fetch", netctl_allow, "la\nbel", nullptr, "two", -1);
    batch package{"coreutils"};
    orvex_scene_exectl_multi_add_package_in_permissive(package.data(), package.count());
    local_service::lists::exec_files.add("/opt/tools/*");
    batch protected_files{"/etc/hosts", "/etc/new\nline", "/\xff"};
    orvex_scene_filectl_multi_add_by_path(protected_files.data(), protected_files.count());
    batch protected_package{"setup"};
    orvex_scene_filectl_multi_add_by_pkg(protected_package.data(), protected_package.count());
    batch editor{"/usr/bin/vi"};
    orvex_scene_filectl_exception_multi_add(orvex_kind_file, "/etc/hosts", orvex_kind_file, editor.data(), 1);
    batch editor_package{"vim"};
    orvex_scene_filectl_exception_multi_add(orvex_kind_file, "/etc/hosts", orvex_kind_pkg, editor_package.data(), 1);
    batch installer{"dnf"};
    orvex_scene_filectl_exception_multi_add(orvex_kind_pkg, "setup", orvex_kind_pkg, installer.data(), 1);
    batch server{"/usr/sbin/server"};
    orvex_scene_taskctl_multi_add_by_path(server.data(), server.count());
    batch directory{"/opt"};
    orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/usr/sbin/server", orvex_kind_dir, directory.data(), 1);
    orvex_scene_kmodctl_add_by_name("ext4");
    local_service::lists::blacklist.add("/usr/bin/killer");
    local_service::lists::role_labels[0].add("/etc/one");
    local_service::lists::role_labels[2].add("/etc/two");
}
