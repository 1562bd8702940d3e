// SPDX-License-Identifier: Apache-2.0
// The listing of both kinds of policies.
#include <cstring>
#include <vector>

#include "unit/net_test.h"

namespace {

using testing::Return;
using pkg_records = std::vector<netctl_pkg_record>;
using ext_records = std::vector<netctl_ext_record>;

class net_list_test : public net_test {
protected:
    void expect_pkgs(const given<netctl_pkg_record>& answer) {
        EXPECT_CALL(service, orvex_netctl_pkg_read_all_data_with_uid(0)).WillOnce(Return(answer));
    }

    void expect_programs(const given<netctl_ext_record>& answer) {
        EXPECT_CALL(service, orvex_netctl_ext_read_all_data_with_uid(0)).WillOnce(Return(answer));
    }

    call_result list() {
        return capture([&] { return net.list_net_policy(); });
    }
};

netctl_pkg_record pkg(const std::string& name, std::int32_t status) {
    return give_netctl_pkg(name, status, "icon", "/a.desktop", 2);
}

netctl_ext_record program(const std::string& path, std::int32_t status) {
    return give_netctl_ext(path, status, "label", "one", "two", 2);
}

/// Fills a field to its last byte, so that it has no NUL.
template <std::size_t Size>
std::string fill(char (&field)[Size]) {
    std::memset(field, 'x', Size);
    return std::string(Size, 'x');
}

TEST_F(net_list_test, packages_come_first_and_an_empty_line_stands_behind_them_only) {
    expect_pkgs(give_items(pkg_records{pkg("browser", 1), pkg("mail", 2)}));
    expect_programs(give_items(ext_records{program("/opt/a", 2), program("/opt/b c", 1)}));
    EXPECT_EQ(list(), (call_result{0,
                                   "软件包:\n"
                                   "   允许: browser\n"
                                   "   阻止: mail\n"
                                   "\n"
                                   "应用程序:\n"
                                   "   阻止: /opt/a\n"
                                   "   允许: /opt/b c\n"}));
}

TEST_F(net_list_test, a_list_without_records_shows_nothing_not_even_its_heading) {
    expect_pkgs(give_items(pkg_records{pkg("browser", 1)}));
    expect_programs({});
    EXPECT_EQ(list(), (call_result{0, "软件包:\n   允许: browser\n\n"}));

    expect_pkgs({});
    expect_programs(give_items(ext_records{program("/opt/a", 2)}));
    EXPECT_EQ(list(), (call_result{0, "应用程序:\n   阻止: /opt/a\n"}));

    expect_pkgs({});
    expect_programs({});
    EXPECT_EQ(list(), (call_result{0, ""}));
}

TEST_F(net_list_test, an_array_without_a_record_is_given_back_too) {
    expect_pkgs(give_items(pkg_records{}));
    expect_programs(give_items(ext_records{}));
    EXPECT_EQ(list(), (call_result{0, ""}));
}

TEST_F(net_list_test, an_array_with_a_count_below_1_is_no_list) {
    for (const int count : {0, -1}) {
        given<netctl_pkg_record> pkgs = give_items(pkg_records{pkg("browser", 1)});
        pkgs.count = static_cast<std::uint64_t>(count);
        given<netctl_ext_record> programs = give_items(ext_records{program("/opt/a", 2)});
        programs.count = static_cast<std::uint64_t>(count);
        expect_pkgs(pkgs);
        expect_programs(programs);
        EXPECT_EQ(list(), (call_result{0, ""})) << count;
    }
}

TEST_F(net_list_test, no_array_is_no_list_whatever_its_count) {
    for (const std::uint64_t count : {0U, 3U}) {
        expect_pkgs({std::nullopt, count});
        expect_programs({std::nullopt, count});
        EXPECT_EQ(list(), (call_result{0, ""})) << count;
    }
}

TEST_F(net_list_test, a_failed_first_list_does_not_stop_the_second) {
    // The count of the first call is gone before the second.
    expect_pkgs({std::nullopt, 3});
    expect_programs(give_items(ext_records{program("/opt/a", 1)}));
    EXPECT_EQ(list(), (call_result{0, "应用程序:\n   允许: /opt/a\n"}));
}

TEST_F(net_list_test, every_other_status_is_unknown) {
    for (const int status : {0, 3, 7, -1, 258, 65537}) {
        expect_pkgs(give_items(pkg_records{pkg("browser", status)}));
        expect_programs(give_items(ext_records{program("/opt/a", status)}));
        EXPECT_EQ(list(), (call_result{0,
                                       "软件包:\n"
                                       "   未知状态: browser\n"
                                       "\n"
                                       "应用程序:\n"
                                       "   未知状态: /opt/a\n"}))
            << status;
    }
}

TEST_F(net_list_test, names_are_shown_as_they_are) {
    expect_pkgs(give_items(pkg_records{pkg("%s%n", 1), pkg("", 1), pkg("\xff", 1)}));
    expect_programs(give_items(ext_records{program("/a\nb", 2), program("/应用 \"程序\"", 2)}));
    EXPECT_EQ(list(), (call_result{0,
                                   "软件包:\n"
                                   "   允许: %s%n\n"
                                   "   允许: \n"
                                   "   允许: \xff\n"
                                   "\n"
                                   "应用程序:\n"
                                   "   阻止: /a\nb\n"
                                   "   阻止: /应用 \"程序\"\n"}));
}

TEST_F(net_list_test, nothing_behind_the_end_of_a_name_is_shown) {
    netctl_pkg_record browser = pkg("browser", 1);
    std::strcpy(browser.name + sizeof("browser"), "rest");
    netctl_ext_record tool = program("/opt/a", 2);
    std::memset(tool.path + sizeof("/opt/a"), 'x', sizeof(tool.path) - sizeof("/opt/a"));
    expect_pkgs(give_items(pkg_records{browser}));
    expect_programs(give_items(ext_records{tool}));
    EXPECT_EQ(list(), (call_result{0, "软件包:\n   允许: browser\n\n应用程序:\n   阻止: /opt/a\n"}));
}

TEST_F(net_list_test, a_name_that_fills_its_field_but_for_the_nul_is_shown_whole) {
    const std::string name(4095, 'n');
    const std::string path(4163, 'p');
    expect_pkgs(give_items(pkg_records{pkg(name, 1)}));
    expect_programs(give_items(ext_records{program(path, 2)}));
    EXPECT_EQ(list(), (call_result{0, "软件包:\n   允许: " + name + "\n\n应用程序:\n   阻止: " + path + "\n"}));
}

TEST_F(net_list_test, a_field_without_a_nul_is_not_read_beyond_its_end) {
    netctl_pkg_record browser = pkg("", 0x41414141);
    const std::string name = fill(browser.name);
    netctl_ext_record tool = program("", 0x41414141);
    const std::string path = fill(tool.path);
    expect_pkgs(give_items(pkg_records{browser, pkg("mail", 2)}));
    expect_programs(give_items(ext_records{tool, program("/opt/b", 1)}));
    EXPECT_EQ(list(), (call_result{0,
                                   "软件包:\n"
                                   "   未知状态: " +
                                       name +
                                       "\n"
                                       "   阻止: mail\n"
                                       "\n"
                                       "应用程序:\n"
                                       "   未知状态: " +
                                       path +
                                       "\n"
                                       "   允许: /opt/b\n"}));
}

TEST_F(net_list_test, many_records_keep_the_library_s_order) {
    std::string expected = "软件包:\n";
    pkg_records pkgs;
    for (int number = 0; number < 200; ++number) {
        pkgs.push_back(pkg("p" + std::to_string(number), 1 + number % 2));
        expected += (number % 2 == 0 ? "   允许: p" : "   阻止: p") + std::to_string(number) + "\n";
    }
    expect_pkgs(give_items(pkgs));
    expect_programs({});
    EXPECT_EQ(list(), (call_result{0, expected + "\n"}));
}

}  // namespace
