// SPDX-License-Identifier: Apache-2.0
#include "framework/module_base.h"
#include "services/test_packages.h"
#include "support/given_variable.h"
#include "support/module_test.h"

namespace {

/// Answers with the text of one operation, and hands it to the test.
class desktop_entry_test : public module_test {
protected:
    /// Expects `answer` and, on the screen, `output`.
    void expect(std::string (COrvexBase::*operation)(const std::string&), const std::string& pkg,
                const std::string& answer, const std::string& output = "") {
        COrvexBase base;
        std::string got;
        EXPECT_EQ(capture([&] {
                      got = (base.*operation)(pkg);
                      return 0;
                  }),
                  (call_result{0, output}));
        EXPECT_EQ(got, answer);
    }

    /// Expects that there is no file, no icon and no name, each told by `output`.
    void expect_none(const std::string& pkg, const std::string& output = "") {
        expect(&COrvexBase::get_desktop_file, pkg, "", output);
        expect_not_loaded(pkg, output);
    }

    /// Expects that there is no icon and no name, each told by `output`.
    void expect_not_loaded(const std::string& pkg, const std::string& output) {
        expect(&COrvexBase::get_desktop_icon, pkg, "", output);
        expect(&COrvexBase::get_desktop_name, pkg, "", output);
    }
};

const std::string broken_entry = get_packaged_path("orvex-desktop-broken/usr/share/applications/broken.desktop");

TEST_F(desktop_entry_test, file_is_the_last_one_and_may_lie_in_a_sub_directory) {
    expect(&COrvexBase::get_desktop_file, "orvex-desktop",
           get_packaged_path("orvex-desktop/usr/share/applications/sub/second.desktop"));
}

TEST_F(desktop_entry_test, file_need_not_be_a_desktop_entry) {
    expect(&COrvexBase::get_desktop_file, "orvex-desktop-cache",
           get_packaged_path("usr/share/applications/zz-orvex.cache"));
}

TEST_F(desktop_entry_test, file_of_the_office_package_is_its_own_entry_only) {
    expect(&COrvexBase::get_desktop_file, "wps-office",
           get_packaged_path("orvex-office/usr/share/applications/wps-office-prometheus.desktop"));
}

TEST_F(desktop_entry_test, file_of_the_office_package_by_its_version_is_the_last_one) {
    expect(&COrvexBase::get_desktop_file, "wps-office-1.0",
           get_packaged_path("orvex-office/usr/share/applications/wps-office-wps.desktop"));
}

TEST_F(desktop_entry_test, office_package_without_its_own_entry_has_none) {
    const given_variable home("HOME", get_home_of_other_packages().c_str());
    expect_none("wps-office");
}

TEST_F(desktop_entry_test, package_without_such_a_file_has_none) {
    expect_none("orvex-demo-tools");
}

TEST_F(desktop_entry_test, package_without_files_has_none) {
    expect_none("orvex-empty");
}

TEST_F(desktop_entry_test, empty_package_name_has_none_and_asks_nobody) {
    expect_none("");
}

TEST_F(desktop_entry_test, missing_package_is_told_once) {
    expect_none("orvex-missing", "软件包[orvex-missing]未安装!\n");
}

TEST_F(desktop_entry_test, icon_is_a_name) {
    expect(&COrvexBase::get_desktop_icon, "wps-office", "office");
}

TEST_F(desktop_entry_test, icon_is_a_path) {
    expect(&COrvexBase::get_desktop_icon, "orvex-desktop", "/opt/orvex-desktop/second.png");
}

TEST_F(desktop_entry_test, missing_icon_is_empty) {
    expect(&COrvexBase::get_desktop_icon, "orvex-desktop-plain", "");
}

TEST_F(desktop_entry_test, name_is_the_application_s) {
    expect(&COrvexBase::get_desktop_name, "wps-office", "Office");
    expect(&COrvexBase::get_desktop_name, "orvex-desktop", "Second");
    expect(&COrvexBase::get_desktop_name, "orvex-desktop-plain", "Plain");
}

TEST_F(desktop_entry_test, broken_entry_is_told) {
    expect(&COrvexBase::get_desktop_file, "orvex-desktop-broken", broken_entry);
    expect_not_loaded("orvex-desktop-broken", "加载desktop文件失败: " + broken_entry + "\n");
}

TEST_F(desktop_entry_test, entry_that_is_not_there_is_told) {
    expect_not_loaded("orvex-desktop-cache",
                      "加载desktop文件失败: " + get_packaged_path("usr/share/applications/zz-orvex.cache") + "\n");
}

/// A module whose look-ups answer without a package database.
class scripted_base : public COrvexBase {
public:
    MOCK_METHOD(int, get_pkg_files, (const std::string& pkg, std::list<std::string>& files), (override));
    MOCK_METHOD(std::string, get_desktop_file, (const std::string& pkg), (override));
};

using desktop_entry_of_a_module_test = module_test;

using testing::_;
using testing::DoAll;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

TEST_F(desktop_entry_of_a_module_test, file_is_looked_for_in_the_module_s_own_file_list) {
    testing::StrictMock<scripted_base> base;
    const std::list<std::string> files = {"/a/usr/share/applications/one", "/usr/share/applications",
                                          "/usr/share/applications/two", "/usr/share/other"};
    EXPECT_CALL(base, get_pkg_files("p", IsEmpty())).WillOnce(DoAll(SetArgReferee<1>(files), Return(0)));
    EXPECT_EQ(base.COrvexBase::get_desktop_file("p"), "/usr/share/applications/two");
}

TEST_F(desktop_entry_of_a_module_test, office_text_may_stand_anywhere_in_the_path) {
    testing::StrictMock<scripted_base> base;
    const std::list<std::string> files = {"/wps-office-prometheus/usr/share/applications/one",
                                          "/opt/wps-office-prometheus", "/usr/share/applications/wps-office"};
    EXPECT_CALL(base, get_pkg_files("wps-office", _)).WillOnce(DoAll(SetArgReferee<1>(files), Return(0)));
    EXPECT_EQ(base.COrvexBase::get_desktop_file("wps-office"), "/wps-office-prometheus/usr/share/applications/one");
}

TEST_F(desktop_entry_of_a_module_test, failing_file_list_counts_as_none) {
    testing::StrictMock<scripted_base> base;
    const std::list<std::string> files = {"/usr/share/applications/one"};
    EXPECT_CALL(base, get_pkg_files("p", _)).WillOnce(DoAll(SetArgReferee<1>(files), Return(1)));
    EXPECT_EQ(base.COrvexBase::get_desktop_file("p"), "");
}

TEST_F(desktop_entry_of_a_module_test, icon_and_name_use_the_module_s_own_file) {
    testing::StrictMock<scripted_base> base;
    EXPECT_CALL(base, get_desktop_file("p")).Times(2).WillRepeatedly(Return(""));
    EXPECT_EQ(base.get_desktop_icon("p"), "");
    EXPECT_EQ(base.get_desktop_name("p"), "");
}

}  // namespace
