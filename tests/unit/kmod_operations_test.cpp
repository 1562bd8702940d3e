// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <string>

#include "modules/kmod/kmod_module.h"
#include "support/module_test.h"

namespace {

using testing::Return;

// The checks.

class kmod_check_test : public module_test {
protected:
    void expect_list(const given_list& list) {
        EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(list));
    }

    void expect_absolute_path(const std::string& path, const maybe_text& answer) {
        EXPECT_CALL(service, get_absolute_path(path)).WillOnce(Return(answer));
    }

    void expect_module_name(const std::string& path, const maybe_text& answer) {
        EXPECT_CALL(service, orvex_scene_get_module_name_from_ko_path(path)).WillOnce(Return(answer));
    }

    call_result check_name(const std::string& name) {
        return capture([&] { return kmod.check_kmod_is_add_by_name(name) ? 1 : 0; });
    }

    call_result check_file(const std::string& path) {
        return capture([&] { return kmod.check_kmod_is_add_by_file(path) ? 1 : 0; });
    }

    COrvexKmod kmod;
};

TEST_F(kmod_check_test, a_name_on_the_list_is_found_wherever_it_stands) {
    for (const char* name : {"ext4", "xfs", "btrfs"}) {
        expect_list(give_list({"ext4", "xfs", "btrfs"}));
        EXPECT_EQ(check_name(name), (call_result{1, ""})) << name;
    }
}

TEST_F(kmod_check_test, a_name_matches_over_its_whole_length_and_byte_for_byte) {
    for (const char* name : {"ext", "ext44", "EXT4", " ext4", "ext4 ", "4", "xfs", ""}) {
        expect_list(give_list({"ext4"}));
        EXPECT_EQ(check_name(name), (call_result{0, ""})) << name;
    }
}

TEST_F(kmod_check_test, a_name_with_a_nul_is_compared_over_its_whole_length) {
    expect_list(give_list({"ext4"}));
    EXPECT_EQ(check_name(std::string("ext4\0x", 6)), (call_result{0, ""}));
}

TEST_F(kmod_check_test, null_names_are_skipped) {
    expect_list(give_list({nullptr, "ext4", nullptr}));
    EXPECT_EQ(check_name("ext4"), (call_result{1, ""}));
    expect_list(give_list({nullptr, nullptr}));
    EXPECT_EQ(check_name("ext4"), (call_result{0, ""}));
    expect_list(give_list({nullptr}));
    EXPECT_EQ(check_name(""), (call_result{0, ""}));
}

TEST_F(kmod_check_test, an_empty_name_matches_an_empty_name_only) {
    expect_list(give_list({"ext4", ""}));
    EXPECT_EQ(check_name(""), (call_result{1, ""}));
}

TEST_F(kmod_check_test, an_empty_list_and_no_list_have_no_name) {
    expect_list(give_list({}));
    EXPECT_EQ(check_name("ext4"), (call_result{0, ""}));
    expect_list(give_no_list());
    EXPECT_EQ(check_name("ext4"), (call_result{0, ""}));
    expect_list(give_no_list(3));
    EXPECT_EQ(check_name("ext4"), (call_result{0, ""}));
}

TEST_F(kmod_check_test, a_file_is_looked_up_by_the_name_of_its_module) {
    expect_absolute_path("x.ko", "/home/tavro/x.ko");
    expect_module_name("/home/tavro/x.ko", "x_module");
    expect_list(give_list({"ext4", "x_module"}));
    EXPECT_EQ(check_file("x.ko"), (call_result{1, ""}));
}

TEST_F(kmod_check_test, a_file_whose_module_is_not_on_the_list_is_not_found) {
    expect_absolute_path("/x.ko", "/x.ko");
    expect_module_name("/x.ko", "x");
    expect_list(give_list({"/x.ko", "x.ko"}));
    EXPECT_EQ(check_file("/x.ko"), (call_result{0, ""}));
}

TEST_F(kmod_check_test, a_file_without_an_absolute_path_is_told_and_not_logged) {
    expect_absolute_path("x %s.ko", std::nullopt);
    EXPECT_EQ(check_file("x %s.ko"), (call_result{0, "获取文件[x %s.ko]的绝对路径失败\n"}));
}

TEST_F(kmod_check_test, a_file_whose_module_has_no_name_is_told_and_logged_as_typed) {
    expect_absolute_path("x %s.ko", "/tmp/x %s.ko");
    expect_module_name("/tmp/x %s.ko", std::nullopt);
    expect_log("kmod", "check_kmod_is_add_by_file", "get kmod name by kmod file failed, path: %s",
               "get kmod name by kmod file failed, path: x %s.ko");
    EXPECT_EQ(check_file("x %s.ko"), (call_result{0, "通过内核模块文件[x %s.ko]获取模块名称失败!\n"}));
}

TEST_F(kmod_check_test, the_check_of_a_file_asks_the_virtual_check_of_the_name) {
    class by_name_watcher : public COrvexKmod {
    public:
        MOCK_METHOD(bool, check_kmod_is_add_by_name, (const std::string& name), (override));
    };
    testing::StrictMock<by_name_watcher> watched;
    for (const bool answer : {true, false}) {
        expect_absolute_path("/x.ko", "/x.ko");
        expect_module_name("/x.ko", "x");
        EXPECT_CALL(watched, check_kmod_is_add_by_name("x")).WillOnce(Return(answer));
        EXPECT_EQ(watched.check_kmod_is_add_by_file("/x.ko"), answer);
    }
}

// The four changes.

/// A module whose checks are answered by the test.
class checked_kmod : public COrvexKmod {
public:
    MOCK_METHOD(bool, check_kmod_is_add_by_file, (const std::string& path), (override));
    MOCK_METHOD(bool, check_kmod_is_add_by_name, (const std::string& name), (override));
};

/// One operation, its calls and its words.
struct change_row {
    const char* name;
    int (COrvexKmod::*operation)(const std::string& text);
    bool is_by_file;
    /// The answer of the check with which nothing is left to do.
    bool is_listed_when_done;
    void (*expect_call)(service_double& service, const std::string& text, int result);
    const char* done_head;
    const char* done_tail;
    const char* failure_head;
    const char* log_format;
    const char* log_head;
};

void PrintTo(const change_row& row, std::ostream* stream) {
    *stream << row.name;
}

std::string name_row(const testing::TestParamInfo<change_row>& row) {
    return row.param.name;
}

const change_row changes[] = {
    {"add_kmod_by_file", &COrvexKmod::add_kmod_by_file, true, true,
     [](service_double& service, const std::string& text, int result) {
         EXPECT_CALL(service, orvex_scene_kmodctl_add_by_path(text)).WillOnce(Return(result));
     },
     "文件[", "]已添加内核模块防卸载, 无需重复添加!\n", "添加内核模块[", "add kmod failed, file=%s, ret=%d",
     "add kmod failed, file="},
    {"add_kmod_by_name", &COrvexKmod::add_kmod_by_name, false, true,
     [](service_double& service, const std::string& text, int result) {
         EXPECT_CALL(service, orvex_scene_kmodctl_add_by_name(text)).WillOnce(Return(result));
     },
     "模块[", "]已添加内核模块防卸载, 无需重复添加!\n", "添加内核模块[", "add kmod failed, name=%s, ret=%d",
     "add kmod failed, name="},
    {"del_kmod_by_file", &COrvexKmod::del_kmod_by_file, true, false,
     [](service_double& service, const std::string& text, int result) {
         EXPECT_CALL(service, orvex_scene_kmodctl_remove_by_path(text)).WillOnce(Return(result));
     },
     "文件[", "]未添加内核模块防卸载, 无需删除!\n", "删除内核模块[", "del kmod failed, file=%s, ret=%d",
     "del kmod failed, file="},
    {"del_kmod_by_name", &COrvexKmod::del_kmod_by_name, false, false,
     [](service_double& service, const std::string& text, int result) {
         EXPECT_CALL(service, orvex_scene_kmodctl_remove_by_name(text)).WillOnce(Return(result));
     },
     "模块[", "]未添加内核模块防卸载, 无需删除!\n", "删除内核模块[", "del kmod failed, name=%s, ret=%d",
     "del kmod failed, name="},
};

class kmod_change_test : public module_test, public testing::WithParamInterface<change_row> {
protected:
    void expect_check(const std::string& text, bool answer) {
        if (GetParam().is_by_file) {
            EXPECT_CALL(kmod, check_kmod_is_add_by_file(text)).WillOnce(Return(answer));
        } else {
            EXPECT_CALL(kmod, check_kmod_is_add_by_name(text)).WillOnce(Return(answer));
        }
    }

    call_result change(const std::string& text) {
        return capture([&] { return (kmod.*GetParam().operation)(text); });
    }

    testing::StrictMock<checked_kmod> kmod;
};

TEST_P(kmod_change_test, what_is_done_already_is_told_and_not_done_again) {
    expect_check("./a %s", GetParam().is_listed_when_done);
    EXPECT_EQ(change("./a %s"), (call_result{0, std::string(GetParam().done_head) + "./a %s" + GetParam().done_tail}));
}

TEST_P(kmod_change_test, success_is_silent) {
    expect_check("./a %s", !GetParam().is_listed_when_done);
    GetParam().expect_call(service, "./a %s", 0);
    EXPECT_EQ(change("./a %s"), (call_result{0, ""}));
}

TEST_P(kmod_change_test, any_other_result_is_a_failure_that_is_told_and_logged) {
    for (const int result : {-1, -4, -5, 1, 2147483647}) {
        expect_check("./a %s", !GetParam().is_listed_when_done);
        GetParam().expect_call(service, "./a %s", result);
        expect_log("kmod", GetParam().name, GetParam().log_format,
                   std::string(GetParam().log_head) + "./a %s, ret=" + std::to_string(result));
        EXPECT_EQ(change("./a %s"), (call_result{-1, std::string(GetParam().failure_head) + "./a %s]防卸载失败!\n"}))
            << result;
    }
}

INSTANTIATE_TEST_SUITE_P(operations, kmod_change_test, testing::ValuesIn(changes), name_row);

// A fault of the check does not stop the operation.

TEST_F(kmod_check_test, a_file_without_a_module_name_is_added_all_the_same) {
    expect_absolute_path("x.ko", "/x.ko");
    expect_module_name("/x.ko", std::nullopt);
    expect_log("kmod", "check_kmod_is_add_by_file", "get kmod name by kmod file failed, path: %s",
               "get kmod name by kmod file failed, path: x.ko");
    EXPECT_CALL(service, orvex_scene_kmodctl_add_by_path("x.ko")).WillOnce(Return(0));

    EXPECT_EQ(capture([&] { return kmod.add_kmod_by_file("x.ko"); }),
              (call_result{0, "通过内核模块文件[x.ko]获取模块名称失败!\n"}));
}

TEST_F(kmod_check_test, a_file_without_a_module_name_cannot_be_deleted) {
    expect_absolute_path("x.ko", "/x.ko");
    expect_module_name("/x.ko", std::nullopt);
    expect_log("kmod", "check_kmod_is_add_by_file", "get kmod name by kmod file failed, path: %s",
               "get kmod name by kmod file failed, path: x.ko");

    EXPECT_EQ(capture([&] { return kmod.del_kmod_by_file("x.ko"); }),
              (call_result{0,
                           "通过内核模块文件[x.ko]获取模块名称失败!\n"
                           "文件[x.ko]未添加内核模块防卸载, 无需删除!\n"}));
}

TEST_F(kmod_check_test, a_file_without_an_absolute_path_cannot_be_deleted) {
    expect_absolute_path("x.ko", std::nullopt);

    EXPECT_EQ(capture([&] { return kmod.del_kmod_by_file("x.ko"); }),
              (call_result{0,
                           "获取文件[x.ko]的绝对路径失败\n"
                           "文件[x.ko]未添加内核模块防卸载, 无需删除!\n"}));
}

}  // namespace
