// SPDX-License-Identifier: Apache-2.0
// Shows all fields of the network policies of a user, which no command of the program does: show_net UID.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "service/netctl.h"

namespace {

struct free_deleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

void show(const netctl_pkg_record& record) {
    std::printf("package [%s] status %d icon [%s] desktop [%s] tag %d\n", record.name, record.status, record.icon,
                record.desktop, record.tag);
}

void show(const netctl_ext_record& record) {
    std::printf("program [%s] status %d label [%s] text1 [%s] text2 [%s] tag %d\n", record.path, record.status,
                record.label, record.text1, record.text2, record.tag);
}

template <class Record>
void show_all(Record* (*read)(std::uint32_t, std::int32_t*), std::uint32_t user) {
    std::int32_t count = 0;
    const std::unique_ptr<Record, free_deleter> records(read(user, &count));
    for (std::int32_t number = 0; number < count; ++number) {
        show(records.get()[number]);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: show_net UID\n", stderr);
        return EXIT_FAILURE;
    }
    const auto user = static_cast<std::uint32_t>(std::strtoul(argv[1], nullptr, 10));
    show_all(orvex_netctl_pkg_read_all_data_with_uid, user);
    show_all(orvex_netctl_ext_read_all_data_with_uid, user);
    return EXIT_SUCCESS;
}
