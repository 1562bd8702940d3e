// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <string_view>

#include "framework/output.h"
#include "modules/net/net_pieces.h"

namespace {

/// Returns the text in a fixed field. A field without a terminating NUL is not read beyond its end.
template <std::size_t size>
std::string_view get_text(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

void print_policy(std::int32_t status, std::string_view name) {
    switch (status) {
        case netctl_allow:
            print_line("   允许: ", name);
            break;
        case netctl_deny:
            print_line("   阻止: ", name);
            break;
        default:
            print_line("   未知状态: ", name);
            break;
    }
}

}  // namespace

int COrvexNet::list_net_policy() {
    std::int32_t count = 0;
    const owned_pkg_records pkgs(orvex_netctl_pkg_read_all_data_with_uid(policy_uid, &count));
    if (pkgs != nullptr && count >= 1) {
        print_line("软件包:");
        for (std::int32_t i = 0; i < count; ++i) {
            const netctl_pkg_record& record = pkgs.get()[i];
            print_policy(record.status, get_text(record.name));
        }
        print_line();
    }

    count = 0;
    const owned_ext_records programs(orvex_netctl_ext_read_all_data_with_uid(policy_uid, &count));
    if (programs != nullptr && count >= 1) {
        print_line("应用程序:");
        for (std::int32_t i = 0; i < count; ++i) {
            const netctl_ext_record& record = programs.get()[i];
            print_policy(record.status, get_text(record.path));
        }
        // No empty line here, unlike behind the packages.
    }
    return 0;
}
