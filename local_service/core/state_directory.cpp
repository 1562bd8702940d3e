// SPDX-License-Identifier: Apache-2.0
#include "core/state_directory.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "core/store_file.h"

namespace local_service {
namespace {

constexpr const char* system_parent = "/var/lib";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool is_system_directory_usable() {
    const uid_t caller = getuid();
    if (caller != 0 && caller != security_administrator) {
        return false;
    }
    return access(system_directory, W_OK) == 0 || (errno == ENOENT && access(system_parent, W_OK) == 0);
}

std::string home_directory() {
    std::string home = environment("HOME");
    if (!home.empty()) {
        return home;
    }
    const passwd* entry = getpwuid(getuid());
    if (entry == nullptr || entry->pw_dir == nullptr) {
        throw store_failure("no place for the store: neither ORVEX_LOCAL_STATE nor a home directory is known");
    }
    return entry->pw_dir;
}

}  // namespace

std::string state_directory() {
    if (std::string chosen = environment("ORVEX_LOCAL_STATE"); !chosen.empty()) {
        if (chosen.front() != '/') {
            throw store_failure("ORVEX_LOCAL_STATE is no absolute path: " + chosen);
        }
        return chosen;
    }
    if (is_system_directory_usable()) {
        return system_directory;
    }
    if (const std::string state_home = environment("XDG_STATE_HOME"); !state_home.empty()) {
        return state_home + "/orvex-local";
    }
    return home_directory() + "/.local/state/orvex-local";
}

void give_to(uid_t user, const std::string& path) {
    if (geteuid() == 0 && chown(path.c_str(), user, static_cast<gid_t>(-1)) != 0 && errno != EINVAL && errno != EPERM) {
        throw store_failure(path + ": the owner cannot be set: " + std::strerror(errno));
    }
}

}  // namespace local_service
