// SPDX-License-Identifier: Apache-2.0
#include "framework/module_base.h"
#include "services/heard_calls.h"
#include "services/test_packages.h"
#include "support/given_variable.h"
#include "support/module_test.h"

namespace {

using testing::ElementsAre;
using file_list = std::list<std::string>;

class package_query_test : public module_test {
protected:
    /// Expects the answer, with nothing on the screen.
    void expect_installed(const std::string& pkg, bool is_installed) {
        EXPECT_EQ(capture([&] { return base.is_pkg_installed(pkg) ? 1 : 0; }), (call_result{is_installed ? 1 : 0, ""}));
    }

    /// Adds the files of `pkg` to `files`.
    call_result get_files(const std::string& pkg) {
        return capture([&] { return base.get_pkg_files(pkg, files); });
    }

    COrvexBase base;
    file_list files;
};

const call_result found = {0, ""};

TEST_F(package_query_test, name_is_installed) {
    expect_installed("orvex-demo-tools", true);
}

TEST_F(package_query_test, name_with_version_is_installed) {
    expect_installed("orvex-demo-tools-1.0", true);
    expect_installed("orvex-demo-tools-1.0-1", true);
}

TEST_F(package_query_test, package_without_files_is_installed) {
    expect_installed("orvex-empty", true);
}

TEST_F(package_query_test, other_name_is_not_installed) {
    expect_installed("orvex-missing", false);
    expect_installed("orvex-demo", false);
    expect_installed("ORVEX-DEMO-TOOLS", false);
    expect_installed("orvex-demo-tools-2.0", false);
    expect_installed("", false);
}

TEST_F(package_query_test, packages_are_those_of_the_present_database) {
    expect_installed("wps-office-1.0", true);
    const given_variable home("HOME", get_home_of_other_packages().c_str());
    expect_installed("wps-office-1.0", false);
    expect_installed("wps-office-2.0", true);
}

TEST_F(package_query_test, files_come_with_directories_and_links_in_the_database_s_order) {
    EXPECT_EQ(get_files("orvex-demo-tools"), found);
    EXPECT_THAT(
        files,
        ElementsAre(get_packaged_path("orvex-demo"), get_packaged_path("orvex-demo/bin"),
                    get_packaged_path("orvex-demo/bin/hello"), get_packaged_path("orvex-demo/bin/hi"),
                    get_packaged_path("orvex-demo/share"), get_packaged_path("orvex-demo/share/100%s \"two words\""),
                    get_packaged_path("orvex-demo/share/dangling"), get_packaged_path("orvex-demo/share/文件")));
}

TEST_F(package_query_test, files_are_added_behind_what_the_list_holds) {
    files = {"/before"};
    EXPECT_EQ(get_files("orvex-shared-a"), found);
    EXPECT_EQ(get_files("orvex-shared-b"), found);
    EXPECT_THAT(files, ElementsAre("/before", get_packaged_path("orvex-shared/common"),
                                   get_packaged_path("orvex-shared/common")));
}

TEST_F(package_query_test, package_without_files_adds_none) {
    EXPECT_EQ(get_files("orvex-empty"), found);
    EXPECT_THAT(files, ElementsAre());
}

TEST_F(package_query_test, files_of_two_versions_are_those_of_the_first_header) {
    EXPECT_EQ(get_files("orvex-twice"), found);
    EXPECT_THAT(files, ElementsAre(get_packaged_path("orvex-twice/only-in-1")));
}

TEST_F(package_query_test, files_of_a_name_with_version_are_those_of_that_version) {
    EXPECT_EQ(get_files("orvex-twice-2"), found);
    EXPECT_THAT(files, ElementsAre(get_packaged_path("orvex-twice/only-in-2")));
}

TEST_F(package_query_test, files_of_a_missing_package_are_told) {
    files = {"/before"};
    EXPECT_EQ(get_files("orvex %s 包"), (call_result{-1, "软件包[orvex %s 包]未安装!\n"}));
    EXPECT_THAT(files, ElementsAre("/before"));
}

TEST_F(package_query_test, empty_name_has_no_files_and_asks_nobody) {
    const heard_calls heard;
    EXPECT_EQ(get_files(""), (call_result{-1, ""}));
    EXPECT_THAT(heard.get_calls_here(), ElementsAre());
}

TEST_F(package_query_test, empty_name_is_looked_up) {
    const heard_calls heard;
    expect_installed("", false);
    EXPECT_THAT(heard.get_calls_here(), testing::Contains("rpmtsInitIterator 2  0"));
}

TEST_F(package_query_test, look_up_makes_its_calls_in_order_and_gives_all_back) {
    const heard_calls heard;
    expect_installed("orvex-empty", true);
    EXPECT_THAT(heard.get_calls_here(),
                ElementsAre("rpmReadConfigFiles null null", "rpmtsCreate", "rpmtsInitIterator 2 orvex-empty 0",
                            "rpmdbNextIterator", "rpmdbFreeIterator", "rpmtsFree"));
}

TEST_F(package_query_test, file_list_makes_its_calls_in_order_and_gives_all_back) {
    const heard_calls heard;
    EXPECT_EQ(get_files("orvex-twice"), found);
    EXPECT_THAT(
        heard.get_calls_here(),
        ElementsAre("rpmReadConfigFiles null null", "rpmtsCreate", "rpmtsInitIterator 2 orvex-twice 0",
                    "rpmdbNextIterator", "rpmfiNew 1117 0x1800e", "rpmfiFree", "rpmdbFreeIterator", "rpmtsFree"));
}

TEST_F(package_query_test, configuration_is_read_for_each_query) {
    const heard_calls heard;
    expect_installed("orvex-empty", true);
    expect_installed("orvex-missing", false);
    EXPECT_EQ(get_files("orvex-empty"), found);
    const std::vector<std::string> calls = heard.get_calls_here();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "rpmReadConfigFiles null null"), 3);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "rpmtsFree"), 3);
}

TEST_F(package_query_test, null_iterator_counts_as_not_installed) {
    planned_faults faults;
    faults.iterator = true;
    const heard_calls heard(faults);
    expect_installed("orvex-empty", false);
    EXPECT_EQ(get_files("orvex-empty"), (call_result{-1, "软件包[orvex-empty]未安装!\n"}));
}

TEST_F(package_query_test, null_file_information_counts_as_no_files) {
    planned_faults faults;
    faults.file_info = true;
    const heard_calls heard(faults);
    EXPECT_EQ(get_files("orvex-demo-tools"), found);
    EXPECT_THAT(files, ElementsAre());
}

}  // namespace
