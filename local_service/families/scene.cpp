// SPDX-License-Identifier: Apache-2.0
// liborvex_scene: states and the switching of modules.
#include <vector>

#include "core/call.h"
#include "core/states.h"
#include "core/store.h"
#include "service/status.h"

using namespace local_service;

namespace {

/// The statuses of a batch whose last call has not come yet. They are kept in the process alone, so that a batch that
/// its process never finishes is gone with it.
std::vector<pending_status>& unfinished_batch() {
    static std::vector<pending_status> statuses;
    return statuses;
}

void gather(const pending_status& next, bool is_final) {
    // Whatever goes wrong, what was gathered must not become valid with a later batch.
    std::vector<pending_status> statuses;
    statuses.swap(unfinished_batch());
    check_module_status(next.module, next.status);
    statuses.push_back(next);
    if (is_final) {
        set_pending_statuses(statuses);
    } else {
        unfinished_batch().swap(statuses);
    }
}

}  // namespace

int orvex_scene_getstatus(void) {
    return guard(__func__, {}, [] { return read_global_status(); });
}

int orvex_scene_get_sm_status(void) {
    return guard(__func__, {}, [] { return read_secret_scene(); });
}

int orvex_scene_get_module_status(int module) {
    return guard(__func__, {{"module", module}}, [&] { return read_module_status(module); });
}

int orvex_scene_set_module_status(int module, int status) {
    return guard_change(__func__, {{"module", module}, {"status", status}}, [&] { switch_module(module, status); });
}

int orvex_scene_set_multi_module_status(int module, int status, int final) {
    return guard_change(__func__, {{"module", module}, {"status", status}, {"final", final}}, [&] {
        gather({module, status}, final == 1);
    });
}
