// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "state/policy.h"

/// A host with the framework enabled, execution control on, all other modules off, and something on some lists.
inline state::policy sample_host() {
    using enum state::list_id;
    state::policy host;
    host.framework = state::framework_enabled;
    for (const std::string& name : state::module_names()) {
        host.modules[name] = state::module_off_word;
    }
    host.modules[state::exec_module] = state::module_on_word;
    host.remembered_script = state::module_off_word;
    host.lists.fill(state::policy_entries());
    host.list(exec_whitelist) = state::policy_entries{{"/bin/a", {state::whitelist_intact, {}, true}},
                                                      {"/bin/b", {state::whitelist_tampered, {}, true}}};
    host.list(net_packages) = state::policy_entries{{"bash", {state::net_deny, {}, true}}};
    host.list(file_files) = state::policy_entries{{"/notes", {{}, {{{"/editor"}, {}, {}}}, true}}};
    host.list(kmod_modules) = state::policy_entries{{"ext4", {}}};
    return host;
}
