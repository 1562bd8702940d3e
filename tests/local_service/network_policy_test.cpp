// SPDX-License-Identifier: Apache-2.0
#include <memory>

#include "local_store.h"
#include "service/netctl.h"

using testing::ElementsAre;

namespace {

struct free_deleter {
    void operator()(void* memory) const { std::free(memory); }
};
using package_record = std::unique_ptr<netctl_pkg_record, free_deleter>;
using program_record = std::unique_ptr<netctl_ext_record, free_deleter>;

class network_policies : public local_store {
protected:
    static package_record read_package(const std::string& name, std::uint32_t uid = 0) {
        return package_record(orvex_netctl_pkg_read_node_with_uid(uid, name.c_str()));
    }
    static program_record read_program(const std::string& path, std::uint32_t uid = 0) {
        return program_record(orvex_netctl_ext_read_node_with_uid(uid, path.c_str()));
    }
    static int add_package(const std::string& name, std::uint32_t uid = 0) {
        return orvex_netctl_pkg_add(uid, name.c_str(), netctl_deny, "icon", "desktop", 2);
    }
    static int add_program(const std::string& path, std::uint32_t uid = 0) {
        return orvex_netctl_ext_add(uid, path.c_str(), netctl_deny, path.c_str(), nullptr, nullptr, 2);
    }
};

TEST_F(network_policies, are_none_in_a_fresh_store) {
    std::int32_t count = 0;
    EXPECT_EQ(orvex_netctl_pkg_read_all_data_with_uid(0, &count), nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(orvex_netctl_ext_read_all_data_with_uid(0, &count), nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(read_package("bash"), nullptr);
    EXPECT_EQ(read_program("/bin/a"), nullptr);
}

TEST_F(network_policies, of_packages_keep_all_fields) {
    EXPECT_GE(orvex_netctl_pkg_add(0, "bash", netctl_deny, "an icon", "a desktop file", 2), 0);
    const package_record record = read_package("bash");
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->name, "bash");
    EXPECT_EQ(record->status, netctl_deny);
    EXPECT_STREQ(record->icon, "an icon");
    EXPECT_STREQ(record->desktop, "a desktop file");
    EXPECT_EQ(record->tag, 2);
}

TEST_F(network_policies, of_programs_keep_all_fields) {
    EXPECT_GE(orvex_netctl_ext_add(0, "/bin/a", netctl_allow, "label", "one", "two", -7), 0);
    const program_record record = read_program("/bin/a");
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->path, "/bin/a");
    EXPECT_EQ(record->status, netctl_allow);
    EXPECT_STREQ(record->label, "label");
    EXPECT_STREQ(record->text1, "one");
    EXPECT_STREQ(record->text2, "two");
    EXPECT_EQ(record->tag, -7);
}

TEST_F(network_policies, take_null_texts_as_empty) {
    EXPECT_GE(orvex_netctl_ext_add(0, "/bin/a", netctl_deny, nullptr, nullptr, nullptr, 2), 0);
    const program_record record = read_program("/bin/a");
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->label, "");
    EXPECT_STREQ(record->text1, "");
    EXPECT_STREQ(record->text2, "");
}

TEST_F(network_policies, come_as_one_array_in_the_order_of_their_adding) {
    add_package("zsh");
    add_package("bash");
    std::int32_t count = 0;
    const package_record packages(orvex_netctl_pkg_read_all_data_with_uid(0, &count));
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(packages.get()[0].name, "zsh");
    EXPECT_STREQ(packages.get()[1].name, "bash");
    add_program("/b");
    add_program("/a");
    const program_record programs(orvex_netctl_ext_read_all_data_with_uid(0, &count));
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(programs.get()[0].path, "/b");
    EXPECT_STREQ(programs.get()[1].path, "/a");
}

TEST_F(network_policies, are_kept_apart_by_user_and_kind) {
    add_package("same", 0);
    add_package("same", 4000000000U);
    add_program("same", 0);
    EXPECT_EQ(orvex_netctl_pkg_remove(0, "same"), 0);
    EXPECT_EQ(read_package("same", 0), nullptr);
    EXPECT_NE(read_package("same", 4000000000U), nullptr);
    EXPECT_NE(read_program("same", 0), nullptr);
}

TEST_F(network_policies, cannot_be_added_twice) {
    add_package("bash");
    add_program("/a");
    EXPECT_LT(orvex_netctl_pkg_add(0, "bash", netctl_allow, "", "", 0), 0);
    EXPECT_LT(orvex_netctl_ext_add(0, "/a", netctl_allow, "", "", "", 0), 0);
    EXPECT_EQ(last_error(), "/a has a network policy already");
    EXPECT_EQ(read_package("bash")->status, netctl_deny);
    EXPECT_EQ(read_program("/a")->status, netctl_deny);
}

TEST_F(network_policies, are_updated_in_every_field) {
    add_package("bash");
    EXPECT_EQ(orvex_netctl_pkg_update(0, "bash", netctl_allow, "new icon", "new desktop", 9), 0);
    const package_record package = read_package("bash");
    EXPECT_EQ(package->status, netctl_allow);
    EXPECT_STREQ(package->icon, "new icon");
    EXPECT_STREQ(package->desktop, "new desktop");
    EXPECT_EQ(package->tag, 9);
    add_program("/a");
    EXPECT_EQ(orvex_netctl_ext_update(0, "/a", netctl_allow, "l", "1", "2", 9), 0);
    const program_record program = read_program("/a");
    EXPECT_EQ(program->status, netctl_allow);
    EXPECT_STREQ(program->label, "l");
    EXPECT_STREQ(program->text1, "1");
    EXPECT_STREQ(program->text2, "2");
    EXPECT_EQ(program->tag, 9);
}

TEST_F(network_policies, that_do_not_exist_are_neither_updated_nor_removed) {
    EXPECT_NE(orvex_netctl_pkg_update(0, "bash", netctl_allow, "", "", 2), 0);
    EXPECT_NE(orvex_netctl_pkg_remove(0, "bash"), 0);
    EXPECT_NE(orvex_netctl_ext_update(0, "/a", netctl_allow, "", "", "", 2), 0);
    EXPECT_NE(orvex_netctl_remove(0, "/a"), 0);
    EXPECT_EQ(last_error(), "/a has no network policy");
}

TEST_F(network_policies, need_a_name) {
    EXPECT_LT(orvex_netctl_pkg_add(0, "", netctl_deny, "", "", 2), 0);
    EXPECT_LT(orvex_netctl_pkg_add(0, nullptr, netctl_deny, "", "", 2), 0);
    EXPECT_EQ(orvex_netctl_pkg_read_node_with_uid(0, nullptr), nullptr);
}

TEST_F(network_policies, cut_a_text_at_the_end_of_its_field) {
    const std::string longest(4095, 'n');
    const std::string too_long(5000, 'n');
    EXPECT_GE(orvex_netctl_pkg_add(0, too_long.c_str(), netctl_deny, too_long.c_str(), too_long.c_str(), 2), 0);
    const package_record package = read_package(too_long);
    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->name, longest);
    EXPECT_EQ(package->icon, longest);
    EXPECT_EQ(package->desktop, longest);
    EXPECT_EQ(package->status, netctl_deny);
    EXPECT_EQ(package->tag, 2);
    EXPECT_EQ(
        orvex_netctl_ext_add(0, too_long.c_str(), netctl_deny, too_long.c_str(), too_long.c_str(), too_long.c_str(), 2),
        0);
    const program_record program = read_program(too_long);
    ASSERT_NE(program, nullptr);
    EXPECT_EQ(program->path, std::string(4163, 'n'));
    EXPECT_EQ(program->label, std::string(255, 'n'));
    EXPECT_EQ(program->text1, longest);
    EXPECT_EQ(program->text2, longest);
    EXPECT_EQ(program->tag, 2);
}

TEST_F(network_policies, with_a_cut_name_answer_to_the_name_in_their_record) {
    const std::string too_long(5000, 'n');
    orvex_netctl_pkg_add(0, too_long.c_str(), netctl_deny, "", "", 2);
    const package_record package = read_package(too_long);
    EXPECT_EQ(orvex_netctl_pkg_update(0, package->name, netctl_allow, "", "", 2), 0);
    EXPECT_EQ(orvex_netctl_pkg_remove(0, too_long.c_str()), 0);
}

TEST_F(network_policies, are_changed_by_root_and_the_security_administrator_alone) {
    become(1000);
    EXPECT_LT(add_package("bash"), 0);
    EXPECT_LT(add_program("/a"), 0);
    become(600);
    EXPECT_GE(add_package("bash"), 0);
    become(1000);
    EXPECT_NE(orvex_netctl_pkg_remove(0, "bash"), 0);
    EXPECT_NE(read_package("bash"), nullptr);
}

}  // namespace
