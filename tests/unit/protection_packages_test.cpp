// SPDX-License-Identifier: Apache-2.0
// Which packages `file` accepts for protection and for its end. What becomes of the accepted ones is in
// protection_change_test.cpp.
#include "modules/file/file_module.h"
#include "support/module_test.h"

namespace {

using testing::Return;
using texts = std::vector<std::string>;

constexpr int add = 1;
constexpr int remove = 3;

/// A module for which the test knows the list and the installed packages.
class known_file : public COrvexFile {
public:
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
    MOCK_METHOD(bool, is_pkg_in_policy, (const std::string& package), (override));
};

class protection_package_test : public module_test {
protected:
    call_result set(const std::string& packages, int action) {
        return capture([&] { return file.set_file_policy_by_pkg(packages, action); });
    }

    void expect_installed(const std::string& pkg, bool answer) {
        EXPECT_CALL(file, is_pkg_installed(pkg)).WillOnce(Return(answer));
    }

    void expect_listed(const std::string& pkg, bool answer) {
        EXPECT_CALL(file, is_pkg_in_policy(pkg)).WillOnce(Return(answer));
    }

    void expect_added(const texts& packages) {
        EXPECT_CALL(service, orvex_scene_filectl_multi_add_by_pkg(packages)).WillOnce(Return(0));
    }

    void expect_removed(const texts& packages) {
        EXPECT_CALL(service, orvex_scene_filectl_multi_remove_by_pkg(packages)).WillOnce(Return(0));
        for (const std::string& pkg : packages) {
            EXPECT_CALL(service, orvex_scene_filectl_exception_clear_resource_policy(3, pkg)).WillOnce(Return(0));
        }
    }

    testing::StrictMock<known_file> file;
};

TEST_F(protection_package_test, without_a_piece_nothing_is_done) {
    for (const char* packages : {"", ":", "::"}) {
        EXPECT_EQ(set(packages, add), (call_result{0, ""})) << packages;
        EXPECT_EQ(set(packages, remove), (call_result{0, ""})) << packages;
    }
}

TEST_F(protection_package_test, an_installed_package_is_added_by_the_name_as_it_stands) {
    for (const char* pkg : {"hesa-guard", "~/hesa", "/opt", "%s", "包"}) {
        expect_installed(pkg, true);
        expect_listed(pkg, false);
        expect_added({pkg});
        EXPECT_EQ(set(pkg, add), (call_result{0, ""})) << pkg;
    }
}

TEST_F(protection_package_test, a_package_that_is_not_installed_is_refused_at_an_add) {
    expect_installed("nosuch%s", false);
    EXPECT_EQ(set("nosuch%s", add), (call_result{0, "软件包[nosuch%s]未安装, 不支持添加!\n"}));
}

TEST_F(protection_package_test, a_package_that_is_listed_already_is_refused_at_an_add) {
    expect_installed("hesa-guard", true);
    expect_listed("hesa-guard", true);
    EXPECT_EQ(set("hesa-guard", add), (call_result{0, "软件包[hesa-guard]已存在只读保护列表中, 无需重复添加!\n"}));
}

TEST_F(protection_package_test, a_removal_does_not_ask_whether_the_package_is_installed) {
    expect_listed("nosuch", true);
    expect_removed({"nosuch"});
    EXPECT_EQ(set("nosuch", remove), (call_result{0, ""}));
}

TEST_F(protection_package_test, a_package_that_is_not_listed_is_refused_at_a_removal) {
    expect_listed("hesa-guard", false);
    EXPECT_EQ(set("hesa-guard", remove), (call_result{0, "软件包[hesa-guard]不在只读保护列表中, 无需删除!\n"}));
}

TEST_F(protection_package_test, a_refused_package_does_not_stop_the_others) {
    expect_installed("a", true);
    expect_listed("a", false);
    expect_installed("b", false);
    expect_installed("c", true);
    expect_listed("c", true);
    expect_installed("d", true);
    expect_listed("d", false);
    expect_added({"a", "d"});
    EXPECT_EQ(set("a:b:c:d", add), (call_result{0,
                                                "软件包[b]未安装, 不支持添加!\n"
                                                "软件包[c]已存在只读保护列表中, 无需重复添加!\n"}));

    expect_listed("a", true);
    expect_listed("b", false);
    expect_listed("a", true);
    expect_removed({"a", "a"});
    EXPECT_EQ(set("a:b:a", remove), (call_result{0, "软件包[b]不在只读保护列表中, 无需删除!\n"}));
}

TEST_F(protection_package_test, with_every_package_refused_the_library_is_not_called) {
    expect_installed("a", false);
    expect_installed("b", false);
    EXPECT_EQ(set("a:b", add), (call_result{0, "软件包[a]未安装, 不支持添加!\n软件包[b]未安装, 不支持添加!\n"}));
}

}  // namespace
