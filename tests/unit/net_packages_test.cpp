// SPDX-License-Identifier: Apache-2.0
// The policies of packages, by `-P`.
#include <limits>

#include "unit/net_test.h"

namespace {

using testing::Return;

const std::string pkg = "browser %s";

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

class net_packages_test : public net_test {
protected:
    call_result add(const std::string& name = pkg) {
        return capture([&] { return net.add_net_policy_by_pkg(name); });
    }

    call_result update(std::int32_t status, const std::string& name = pkg) {
        return capture([&] { return net.update_net_policy_by_pkg(name, status); });
    }

    call_result remove(const std::string& name = pkg) {
        return capture([&] { return net.del_net_policy_by_pkg(name); });
    }

    void expect_installed(bool answer) { EXPECT_CALL(net, is_pkg_installed(pkg)).WillOnce(Return(answer)); }
};

// Adding.

TEST_F(net_packages_test, a_package_that_is_not_installed_is_refused_before_the_library_is_asked) {
    expect_installed(false);
    EXPECT_EQ(add(), (call_result{-1, "软件包[browser %s]名称错误, 或者未安装!\n"}));
}

TEST_F(net_packages_test, a_policy_that_is_there_already_is_told_and_not_added_again) {
    expect_installed(true);
    expect_pkg_read(pkg, stored_pkg_record());
    EXPECT_EQ(add(), (call_result{0, "软件包[browser %s]的联网管控策略已存在, 无需重复添加!\n"}));
}

TEST_F(net_packages_test, a_new_policy_denies_and_takes_the_desktop_entry_and_the_icon_along) {
    expect_installed(true);
    expect_pkg_read(pkg, std::nullopt);
    expect_pkg_add(pkg, 2, 0);
    EXPECT_EQ(add(), (call_result{0, ""}));
}

TEST_F(net_packages_test, a_package_without_a_desktop_entry_is_added_with_empty_texts) {
    expect_installed(true);
    expect_pkg_read(pkg, std::nullopt);
    EXPECT_CALL(net, get_desktop_file(pkg)).WillOnce(Return(""));
    EXPECT_CALL(net, get_desktop_icon(pkg)).WillOnce(Return(""));
    EXPECT_CALL(service, orvex_netctl_pkg_add(0, pkg, 2, "", "", 2)).WillOnce(Return(0));
    EXPECT_EQ(add(), (call_result{0, ""}));
}

TEST_F(net_packages_test, an_add_with_a_result_above_0_is_a_success) {
    for (const int result : {1, 3, highest}) {
        expect_installed(true);
        expect_pkg_read(pkg, std::nullopt);
        expect_pkg_add(pkg, 2, result);
        EXPECT_EQ(add(), (call_result{0, ""})) << result;
    }
}

TEST_F(net_packages_test, an_add_with_a_negative_result_is_told_and_logged) {
    for (const int result : {-1, -4, lowest}) {
        expect_installed(true);
        expect_pkg_read(pkg, std::nullopt);
        expect_pkg_add(pkg, 2, result);
        expect_log("netctl", "add_net_policy_by_pkg", "add netctl failed, pkgName: %s, ret: %d",
                   "add netctl failed, pkgName: browser %s, ret: " + std::to_string(result));
        EXPECT_EQ(add(), (call_result{-1, "软件包[browser %s]添加网络管控失败!\n"})) << result;
    }
}

// Updating. Whether the package is installed is not asked.

TEST_F(net_packages_test, without_a_policy_there_is_nothing_to_update) {
    expect_pkg_read(pkg, std::nullopt);
    EXPECT_EQ(update(1), (call_result{0, "软件包[browser %s]的联网管控策略不存在, 请先添加!\n"}));
}

TEST_F(net_packages_test, an_update_changes_the_status_and_gives_back_all_else_as_it_is_stored) {
    for (const std::int32_t status : {1, 2, 7}) {
        expect_pkg_read(pkg, stored_pkg_record());
        expect_pkg_update(status, 0);
        EXPECT_EQ(update(status), (call_result{0, ""})) << status;
    }
}

TEST_F(net_packages_test, an_update_with_any_other_result_than_0_is_told_and_logged) {
    for (const int result : {-1, -4, lowest, 1, highest}) {
        expect_pkg_read(pkg, stored_pkg_record());
        expect_pkg_update(2, result);
        expect_log("netctl", "update_net_policy_by_pkg", "update netctl failed, pkgName: %s, ret: %d",
                   "update netctl failed, pkgName: browser %s, ret: " + std::to_string(result));
        EXPECT_EQ(update(2), (call_result{-1, "更新软件包[browser %s]管控状态失败!\n"})) << result;
    }
}

// Deleting. Whether the package is installed is not asked.

TEST_F(net_packages_test, without_a_policy_there_is_nothing_to_delete) {
    expect_pkg_read(pkg, std::nullopt);
    EXPECT_EQ(remove(), (call_result{0, "软件包[browser %s]的联网管控策略不存在, 无需删除!\n"}));
}

TEST_F(net_packages_test, a_policy_is_deleted_under_the_name_that_the_user_gave) {
    expect_pkg_read(pkg, stored_pkg_record());
    EXPECT_CALL(service, orvex_netctl_pkg_remove(0, pkg)).WillOnce([this] {
        EXPECT_EQ(service.memory().count_out(), 0U) << "the record is not needed any more";
        return 0;
    });
    EXPECT_EQ(remove(), (call_result{0, ""}));
}

TEST_F(net_packages_test, a_delete_with_any_other_result_than_0_is_told_and_logged) {
    for (const int result : {-1, -4, lowest, 1, highest}) {
        expect_pkg_read(pkg, stored_pkg_record());
        EXPECT_CALL(service, orvex_netctl_pkg_remove(0, pkg)).WillOnce(Return(result));
        expect_log("netctl", "del_net_policy_by_pkg", "del netctl failed, pkgName: %s, ret: %d",
                   "del netctl failed, pkgName: browser %s, ret: " + std::to_string(result));
        EXPECT_EQ(remove(), (call_result{-1, "删除软件包[browser %s]联网管控失败!\n"})) << result;
    }
}

// Names at the limits, and names that need care.

TEST_F(net_packages_test, names_go_to_the_library_as_they_are) {
    for (const std::string& name :
         {std::string("a:b"), std::string("~/a"), std::string("a b"), std::string("-x"), std::string("a\nb"),
          std::string("\xff\xfe"), std::string("软件包"), std::string(5000, 'p')}) {
        EXPECT_CALL(net, is_pkg_installed(name)).WillOnce(Return(true));
        expect_pkg_read(name, std::nullopt);
        expect_pkg_add(name, 2, 0);
        EXPECT_EQ(add(name), (call_result{0, ""})) << name;

        expect_pkg_read(name, std::nullopt);
        EXPECT_EQ(update(1, name), (call_result{0, "软件包[" + name + "]的联网管控策略不存在, 请先添加!\n"}));

        expect_pkg_read(name, std::nullopt);
        EXPECT_EQ(remove(name), (call_result{0, "软件包[" + name + "]的联网管控策略不存在, 无需删除!\n"}));
    }
}

TEST_F(net_packages_test, full_fields_go_back_whole_at_an_update) {
    const std::string name(4095, 'n');
    const std::string icon(4095, 'i');
    const std::string desktop(4095, 'd');
    expect_pkg_read(name, give_netctl_pkg(name, 2, icon, desktop, lowest));
    EXPECT_CALL(service, orvex_netctl_pkg_update(0, name, 1, icon, desktop, lowest)).WillOnce(Return(0));
    EXPECT_EQ(update(1, name), (call_result{0, ""}));
}

}  // namespace
