// SPDX-License-Identifier: Apache-2.0
#include "tool/show.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

#include "core/entry_list.h"
#include "core/log.h"
#include "core/state_directory.h"
#include "core/states.h"
#include "core/store.h"
#include "service/status.h"

namespace local_service {
namespace {

constexpr int name_width = 18;
constexpr int status_width = 6;
constexpr std::chrono::milliseconds follow_interval(200);

std::string name_of_status(int status) {
    switch (status) {
        case orvex_status_disabled:
            return "disabled";
        case orvex_status_enabled:
            return "enabled";
        case orvex_status_permissive:
            return "permissive";
        default:
            return std::to_string(status);
    }
}

std::string name_of_module(int module) {
    const auto* found = std::find_if(modules.begin(), modules.end(),
                                     [&](const known_module& candidate) { return candidate.number == module; });
    return found == modules.end() ? std::to_string(module) : found->name;
}

std::string on_or_off(int status) {
    return status == 0 ? "off" : "on";
}

void print_row(const std::string& name, const std::string& text) {
    std::cout << std::left << std::setw(name_width) << name << text << '\n';
}

void print_states(const framework_state& states) {
    print_row("Framework:", name_of_status(states.now) + ", after a restart " + name_of_status(states.after_restart));
    print_row("Secret scene:", on_or_off(states.is_secret_scene ? 1 : 0));
    print_row("Restarts:", std::to_string(states.restarts) + " simulated, " +
                               std::to_string(states.requested_restarts) + " of them asked for by a change of state");
    const bool is_in_force = states.now != orvex_status_disabled;
    std::cout << '\n';
    print_row("Modules:", "now   after a restart");
    for (const module_state& module : states.modules) {
        const std::string now = is_in_force ? on_or_off(module.now) : "off";
        std::cout << "  " << std::setw(name_width - 2) << name_of_module(module.number) << std::setw(status_width)
                  << now << on_or_off(module.after_restart) << '\n';
    }
}

void print_list(const char* title, const entry_list& list) {
    const std::vector<std::string> texts = list.texts();
    if (texts.empty()) {
        return;
    }
    std::cout << '\n' << title << ":\n";
    for (const std::string& text : texts) {
        std::cout << "  " << text << '\n';
    }
}

std::string format_time(std::int64_t time_ms) {
    const std::time_t seconds = time_ms / 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    std::ostringstream text;
    text << std::put_time(&local, "%Y-%m-%d %H:%M:%S") << '.' << std::setfill('0') << std::setw(3) << time_ms % 1000;
    return text.str();
}

std::int64_t print_records_after(std::int64_t number) {
    for (const log_record& record : read_log_after(number)) {
        std::cout << format_time(record.time_ms) << ' ' << record.level << ' ' << record.tag << ' ' << record.function
                  << ' ' << record.message << '\n';
        number = record.number;
    }
    std::cout.flush();
    return number;
}

}  // namespace

void print_store() {
    const framework_state states = read_states();
    print_row("State directory:", state_directory());
    print_states(states);
    print_list("Kernel modules protected from unloading", lists::kernel_modules);
    print_list("Programs that execution control leaves alone", lists::exec_files);
    print_list("Packages that execution control leaves alone", lists::exec_packages);
    print_list("Read-only files and directories", lists::protected_files);
    print_list("Read-only packages", lists::protected_packages);
    print_list("Programs protected from being killed", lists::protected_programs);
    print_list("Programs that may not be protected from being killed", lists::blacklist);
    print_list("Files labelled root", lists::role_labels[0]);
    print_list("Files labelled secadm", lists::role_labels[1]);
    print_list("Files labelled auditadm", lists::role_labels[2]);
    std::cout << '\n';
    print_row("Whitelisted:", std::to_string(count_records("whitelist")));
    print_row("Network policies:", std::to_string(count_records("net_policy")));
    print_row("Exceptions:", std::to_string(count_records("exception")));
    print_row("Log records:", std::to_string(count_records("log")));
}

void print_log(bool is_following) {
    std::int64_t last = print_records_after(0);
    while (is_following && std::cout) {
        std::this_thread::sleep_for(follow_interval);
        last = print_records_after(last);
    }
}

}  // namespace local_service
