// SPDX-License-Identifier: Apache-2.0
// The two reports over everything: the exceptions, and the files that were tampered with.
#include <string>

#include "unit/exec_test.h"

namespace {

using testing::Return;

// The exceptions.

class exec_exception_report_test : public exec_test {
protected:
    call_result list() {
        return capture([&] { return exec.get_all_except_policy(); });
    }

    COrvexExec exec;
};

TEST_F(exec_exception_report_test, files_directories_and_packages_have_one_row_each) {
    expect_exception_files(give_list({"/usr/bin/a", "/opt/app/*", "/usr/bin/b %s", "/srv/*"}));
    expect_dir("/usr/bin/a", 0);
    expect_dir("/opt/app/", 1);
    expect_dir("/usr/bin/b %s", 0);
    expect_dir("/srv/", 1);
    expect_exception_pkgs(give_list({"p", "q %s"}));
    EXPECT_EQ(list(), (call_result{0,
                                   "放行   文件:/usr/bin/a:/usr/bin/b %s\n"
                                   "放行   目录:/opt/app/:/srv/\n"
                                   "放行   软件包:p:q %s\n"}));
}

TEST_F(exec_exception_report_test, nothing_is_printed_without_exceptions) {
    for (const given_list& none : {give_list({}), give_no_list(), give_no_list(3), give_list({nullptr})}) {
        expect_exception_files(none);
        expect_exception_pkgs(none);
        EXPECT_EQ(list(), (call_result{0, ""}));
    }
}

TEST_F(exec_exception_report_test, only_the_rows_with_something_in_them_are_printed) {
    expect_exception_files(give_no_list());
    expect_exception_pkgs(give_list({"p"}));
    EXPECT_EQ(list(), (call_result{0, "放行   软件包:p\n"}));

    expect_exception_files(give_list({"/d/*"}));
    expect_dir("/d/", 1);
    expect_exception_pkgs(give_list({}));
    EXPECT_EQ(list(), (call_result{0, "放行   目录:/d/\n"}));

    expect_exception_files(give_list({"/a"}));
    expect_dir("/a", 0);
    expect_exception_pkgs(give_no_list());
    EXPECT_EQ(list(), (call_result{0, "放行   文件:/a\n"}));
}

TEST_F(exec_exception_report_test, null_entries_are_skipped) {
    expect_exception_files(give_list({nullptr, "/a", nullptr}));
    expect_dir("/a", 0);
    expect_exception_pkgs(give_list({nullptr, "p", nullptr}));
    EXPECT_EQ(list(), (call_result{0, "放行   文件:/a\n放行   软件包:p\n"}));
}

TEST_F(exec_exception_report_test, the_disk_tells_what_is_a_directory) {
    // Only 1 is a directory. One without a star is one too; one that is gone counts as a file, without its star.
    expect_exception_files(give_list({"/plain", "/gone/*", "/odd/*", "/odder/*"}));
    expect_dir("/plain", 1);
    expect_dir("/gone/", 0);
    expect_dir("/odd/", 2);
    expect_dir("/odder/", -1);
    expect_exception_pkgs(give_no_list());
    EXPECT_EQ(list(), (call_result{0, "放行   文件:/gone/:/odd/:/odder/\n放行   目录:/plain\n"}));
}

TEST_F(exec_exception_report_test, one_star_goes_and_no_more) {
    expect_exception_files(give_list({"/a**", "*", "/*/b"}));
    expect_dir("/a*", 0);
    expect_dir("", 0);
    expect_dir("/*/b", 0);
    expect_exception_pkgs(give_list({"p*", "*", ""}));
    EXPECT_EQ(list(), (call_result{0, "放行   文件:/a*::/*/b\n放行   软件包:p*:*:\n"}));
}

using exec_exception_report_death_test = exec_exception_report_test;

TEST_F(exec_exception_report_death_test, an_empty_entry_stops_the_program) {
    EXPECT_DEATH(
        {
            expect_exception_files(give_list({""}));
            list();
        },
        "assertion failed: an entry of the exception files is too short");
}

// The files that were tampered with.

class exec_tamper_report_test : public exec_test {
protected:
    void expect_load(const given_exectl_chain& chain) {
        EXPECT_CALL(service, orvex_scene_exectl_wlist_load_all()).WillOnce(Return(chain));
    }

    void expect_given_back(std::size_t links) { EXPECT_CALL(service, orvex_scene_exectl_objs_free(links)); }

    call_result list() {
        return capture([&] { return exec.get_all_tampered_file(); });
    }

    COrvexExec exec;
};

TEST_F(exec_tamper_report_test, every_file_that_is_not_intact_is_a_line) {
    expect_load({0, {{"/intact", 0}, {"/b %s", 1}, {"/unknown", 2}, {"/intact", 0}, {"/a", -1}, {"/b %s", 1}}});
    expect_given_back(6);
    EXPECT_EQ(list(), (call_result{0, "/b %s\n/unknown\n/a\n/b %s\n"}));
}

TEST_F(exec_tamper_report_test, an_intact_whitelist_is_silent) {
    expect_load({0, {{"/a", 0}, {std::nullopt, 0}}});
    expect_given_back(2);
    EXPECT_EQ(list(), (call_result{0, ""}));
}

TEST_F(exec_tamper_report_test, an_empty_whitelist_is_silent_and_not_given_back) {
    expect_load({0, {}});
    EXPECT_EQ(list(), (call_result{0, ""}));
}

TEST_F(exec_tamper_report_test, a_failed_load_is_told_and_logged_and_not_given_back) {
    for (const int result : {-1, -4, 1}) {
        expect_load({result, {}});
        expect_failure_log("get_all_tampered_file", "get exectl all white list failed, ret: %d",
                           "get exectl all white list failed, ret: " + std::to_string(result));
        EXPECT_EQ(list(), (call_result{-1, "获取执行控制所有白名单失败!\n"})) << result;
    }
}

TEST_F(exec_tamper_report_test, a_record_without_a_path_silences_what_follows) {
    expect_load({0, {{"/a", 1}, {std::nullopt, 1}, {"/b", 1}}});
    expect_given_back(3);
    EXPECT_EQ(list(), (call_result{0, "/a\n"}));
}

TEST_F(exec_tamper_report_test, a_long_whitelist_is_read_and_given_back_whole) {
    given_exectl_chain chain;
    std::string lines;
    for (int number = 0; number < 1000; ++number) {
        const std::string path = "/" + std::to_string(number);
        chain.links.push_back({path, number % 2});
        lines += number % 2 == 0 ? "" : path + "\n";
    }
    expect_load(chain);
    expect_given_back(1000);
    EXPECT_EQ(list(), (call_result{0, lines}));
}

}  // namespace
