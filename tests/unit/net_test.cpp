// SPDX-License-Identifier: Apache-2.0
#include "unit/net_test.h"

using testing::Eq;
using testing::Return;

asked_net::asked_net() = default;
asked_net::~asked_net() = default;

netctl_pkg_record stored_pkg_record() {
    return give_netctl_pkg("stored pkg %s", 7, "stored icon %s", "/stored %s.desktop", 9);
}

netctl_ext_record stored_ext_record() {
    return give_netctl_ext("/stored/tool %s", 7, "stored label %s", "stored one %s", "stored two %s", 9);
}

net_test::net_test() = default;
net_test::~net_test() = default;

void net_test::expect_pkg_read(const std::string& pkg, const std::optional<netctl_pkg_record>& answer) {
    EXPECT_CALL(service, orvex_netctl_pkg_read_node_with_uid(0, pkg)).WillOnce(Return(answer));
}

void net_test::expect_ext_read(const std::string& path, const std::optional<netctl_ext_record>& answer) {
    EXPECT_CALL(service, orvex_netctl_ext_read_node_with_uid(0, path)).WillOnce(Return(answer));
}

void net_test::expect_pkg_add(const std::string& pkg, std::int32_t status, int result) {
    EXPECT_CALL(net, get_desktop_file(pkg)).WillOnce(Return("/usr/share/applications/a %s.desktop"));
    EXPECT_CALL(net, get_desktop_icon(pkg)).WillOnce(Return("icon %s"));
    EXPECT_CALL(service, orvex_netctl_pkg_add(0, pkg, status, "icon %s", "/usr/share/applications/a %s.desktop", 2))
        .WillOnce(Return(result));
}

void net_test::expect_pkg_update(std::int32_t status, int result) {
    EXPECT_CALL(service, orvex_netctl_pkg_update(0, "stored pkg %s", status, "stored icon %s", "/stored %s.desktop", 9))
        .WillOnce(Return(result));
}

void net_test::expect_ext_update(std::int32_t status, int result) {
    EXPECT_CALL(service, orvex_netctl_ext_update(0, "/stored/tool %s", status, "stored label %s", Eq("stored one %s"),
                                                 Eq("stored two %s"), 9))
        .WillOnce(Return(result));
}

void net_test::expect_good_file(const std::string& path, const std::string& absolute_path) {
    EXPECT_CALL(service, path_is_exist(path)).WillOnce(Return(1));
    EXPECT_CALL(service, path_is_dir(path)).WillOnce(Return(0));
    EXPECT_CALL(service, get_absolute_path(path)).WillOnce(Return(absolute_path));
}
