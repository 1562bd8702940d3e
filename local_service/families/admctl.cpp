// SPDX-License-Identifier: Apache-2.0
// libvemulabelmgr: administrator-role labels. Only orvex_local changes them.
#include "service/admctl.h"

#include <string>

#include "core/call.h"
#include "core/entry_list.h"
#include "core/failure.h"
#include "families/lists.h"

using namespace local_service;

char** orvex_scene_admctl_get_user_policy(std::int32_t user_type, std::uint64_t* count) {
    return guard(__func__, {{"user_type", user_type}, {"count", count}}, [&] {
        const auto role = static_cast<std::size_t>(user_type);
        if (role >= lists::role_labels.size()) {
            throw failure("no role has the number " + std::to_string(user_type));
        }
        return hand_out(lists::role_labels[role], count);
    });
}
