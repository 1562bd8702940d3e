// SPDX-License-Identifier: Apache-2.0
#include "core/states.h"

#include <string>

#include "core/failure.h"
#include "core/log.h"
#include "core/state_directory.h"
#include "core/store.h"
#include "core/store_file.h"
#include "service/status.h"

namespace local_service {
namespace {

int read_number(const char* sql, bound_values bound = {}) {
    query rows(sql, bound);
    if (!rows.next()) {
        throw failure("no such module, or a damaged store");
    }
    return static_cast<int>(rows.number(0));
}

/// Changes `count` rows, all that there are of their kind.
void update(int count, const char* sql, bound_values bound = {}) {
    if (change(sql, bound) != count) {
        throw store_failure(store_file(state_directory()) + ": damaged, as rows of states are missing");
    }
}

int status_of_state(int state) {
    switch (state) {
        case orvex_state_disable:
            return orvex_status_disabled;
        case orvex_state_enable:
            return orvex_status_enabled;
        case orvex_state_permissive:
            return orvex_status_permissive;
        default:
            throw failure("unknown state " + std::to_string(state));
    }
}

}  // namespace

int read_global_status() {
    return read_number("SELECT now FROM framework");
}

int read_secret_scene() {
    return read_number("SELECT secret_scene FROM framework");
}

int read_module_status(int module) {
    return read_number(
        "SELECT CASE framework.now WHEN 0 THEN 0 ELSE module.now END FROM module, framework WHERE number = ?",
        {std::int64_t{module}});
}

framework_state read_states() {
    query rows(
        "SELECT framework.now, framework.after_restart, secret_scene, restarts, requested_restarts, number, "
        "CASE framework.now WHEN 0 THEN 0 ELSE module.now END, module.after_restart "
        "FROM framework, module ORDER BY number");
    framework_state states{};
    while (rows.next()) {
        states.now = static_cast<int>(rows.number(0));
        states.after_restart = static_cast<int>(rows.number(1));
        states.is_secret_scene = rows.number(2) != 0;
        states.restarts = rows.number(3);
        states.requested_restarts = rows.number(4);
        states.modules.push_back(
            {static_cast<int>(rows.number(5)), static_cast<int>(rows.number(6)), static_cast<int>(rows.number(7))});
    }
    return states;
}

void write_states(const framework_state& states) {
    update(1, "UPDATE framework SET now = ?, after_restart = ?, secret_scene = ?, restarts = ?, requested_restarts = ?",
           {std::int64_t{states.now}, std::int64_t{states.after_restart}, std::int64_t{states.is_secret_scene ? 1 : 0},
            states.restarts, states.requested_restarts});
    for (const module_state& module : states.modules) {
        update(1, "UPDATE module SET now = ?, after_restart = ? WHERE number = ?",
               {std::int64_t{module.now}, std::int64_t{module.after_restart}, std::int64_t{module.number}});
    }
}

void set_secret_scene(bool is_on) {
    update(1, "UPDATE framework SET secret_scene = ?", {std::int64_t{is_on ? 1 : 0}});
}

void switch_module(int module, int status) {
    check_module_status(module, status);
    if (read_global_status() == orvex_status_disabled) {
        throw failure("the framework is disabled: its modules are switched for after the restart");
    }
    update(1, "UPDATE module SET now = ?1, after_restart = ?1 WHERE number = ?2",
           {std::int64_t{status}, std::int64_t{module}});
}

void set_pending_statuses(const std::vector<pending_status>& batch) {
    if (read_global_status() != orvex_status_disabled) {
        throw failure("the framework is not disabled: its modules are switched at once");
    }
    for (const pending_status& item : batch) {
        update(1, "UPDATE module SET after_restart = ? WHERE number = ?",
               {std::int64_t{item.status}, std::int64_t{item.module}});
    }
}

void check_module_status(int module, int status) {
    read_module_status(module);
    if (status != orvex_module_off && status != orvex_module_on) {
        throw failure("a module is switched to 0 or 1, not to " + std::to_string(status));
    }
}

void request_state(int state, bool is_restart_requested) {
    const int status = status_of_state(state);
    update(1, "UPDATE framework SET after_restart = ?1, now = CASE now WHEN 0 THEN 0 ELSE ?1 END",
           {std::int64_t{status}});
    if (is_restart_requested) {
        update(1, "UPDATE framework SET requested_restarts = requested_restarts + 1");
        simulate_restart();
        write_log({log_level_note, "local_service", "setModuleStatusReboot_dbus",
                   "restart requested with the change of state: simulated, the machine keeps running"});
    }
}

void simulate_restart() {
    update(1, "UPDATE framework SET now = after_restart, restarts = restarts + 1");
    update(static_cast<int>(modules.size()), "UPDATE module SET now = after_restart");
}

}  // namespace local_service
