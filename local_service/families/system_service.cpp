// SPDX-License-Identifier: Apache-2.0
// liborvex: the system service that changes the global state, and the record of the last failure.
#include "core/call.h"
#include "core/states.h"
#include "core/store.h"
#include "service/log.h"
#include "service/status.h"

using namespace local_service;

int setModuleStatusReboot_dbus(int a, int state, int b, int c, int d, int reboot) {
    return guard_change(__func__, {{"a", a}, {"state", state}, {"b", b}, {"c", c}, {"d", d}, {"reboot", reboot}},
                        [&] { request_state(state, reboot == 1); });
}

orvex_error_record* orvex_get_error(void) {
    return guard(
        __func__, {}, [] { return reinterpret_cast<orvex_error_record*>(error_record()); },
        [](value_writer& out, const orvex_error_record* record) {
            out.write(record == nullptr ? nullptr : static_cast<const char*>(record->text));
        });
}
