// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "framework/output.h"
#include "framework/owned.h"
#include "modules/net/net_module.h"
#include "modules/net/net_pieces.h"
#include "service/netctl.h"

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

/// Prints the policies of one list under their heading and gives the list back. Tells whether there were any: a list
/// without a policy prints nothing.
template <class Record, std::size_t size>
bool print_policies(const char* heading, Record* (*read_all)(std::uint32_t uid, std::int32_t* count),
                    const char (Record::*name)[size]) {
    std::int32_t count = 0;
    const owned_memory<Record> records(read_all(policy_uid, &count));
    if (records == nullptr || count < 1) {
        return false;
    }
    print_line(heading);
    for (const Record& record : std::span(records.get(), static_cast<std::size_t>(count))) {
        print_policy(record.status, get_text(record.*name));
    }
    return true;
}

}  // namespace

int COrvexNet::list_net_policy() {
    // The packages are given back before the programs are fetched: either list may be very long.
    if (print_policies("软件包:", orvex_netctl_pkg_read_all_data_with_uid, &netctl_pkg_record::name)) {
        // No empty line stands behind the programs.
        print_line();
    }
    print_policies("应用程序:", orvex_netctl_ext_read_all_data_with_uid, &netctl_ext_record::path);
    return 0;
}
