// SPDX-License-Identifier: Apache-2.0
// The options of `kmod`, and which operation gets what. What the operations do is in kmod_operations_test.cpp.
#include <gmock/gmock.h>

#include <iostream>

#include "modules/kmod/kmod_module.h"
#include "support/captured_stream.h"
#include "support/module_test.h"
#include "unit/help_texts.h"

namespace {

using testing::Return;

/// A module whose operations are watched.
class watched_kmod : public COrvexKmod {
public:
    MOCK_METHOD(int, add_kmod_by_file, (const std::string& path), (override));
    MOCK_METHOD(int, add_kmod_by_name, (const std::string& name), (override));
    MOCK_METHOD(int, del_kmod_by_file, (const std::string& path), (override));
    MOCK_METHOD(int, del_kmod_by_name, (const std::string& name), (override));
};

class kmod_run_test : public module_test {
protected:
    /// Runs the module where it is on and root may act.
    call_result run_open(std::vector<std::string> words) {
        words.insert(words.begin(), "kmod");
        return run(kmod, words);
    }

    /// Expects the tests of a file's path and lets it pass.
    void expect_good_file(const std::string& path) {
        EXPECT_CALL(service, path_is_exist(path)).WillOnce(Return(1));
        EXPECT_CALL(service, path_is_dir(path)).WillOnce(Return(0));
    }

    testing::StrictMock<watched_kmod> kmod;
};

TEST_F(kmod_run_test, usage_prints_the_help) {
    EXPECT_EQ(capture([&] {
                  kmod.usage();
                  return 0;
              }),
              (call_result{0, kmod_help()}));
}

// Which operation runs.

TEST_F(kmod_run_test, each_command_hands_its_text_to_its_operation_and_returns_the_result) {
    for (const int result : {0, -1, 5}) {
        for (const char* letter : {"-A", "--add", "--ad"}) {
            expect_ladder(kmod_ladder);
            expect_good_file("/a b.ko");
            EXPECT_CALL(kmod, add_kmod_by_file("/a b.ko")).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-f", "/a b.ko"}), (call_result{result, ""})) << letter;

            expect_ladder(kmod_ladder);
            EXPECT_CALL(kmod, add_kmod_by_name("ext4")).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-n", "ext4"}), (call_result{result, ""})) << letter;
        }
        for (const char* letter : {"-D", "--delete", "--del"}) {
            expect_ladder(kmod_ladder);
            expect_good_file("/a b.ko");
            EXPECT_CALL(kmod, del_kmod_by_file("/a b.ko")).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-f", "/a b.ko"}), (call_result{result, ""})) << letter;

            expect_ladder(kmod_ladder);
            EXPECT_CALL(kmod, del_kmod_by_name("ext4")).WillOnce(Return(result));
            EXPECT_EQ(run_open({letter, "-n", "ext4"}), (call_result{result, ""})) << letter;
        }
    }
}

TEST_F(kmod_run_test, a_value_may_be_written_in_every_way_of_getopt) {
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"-A", "-f", "x.ko"}, {"-A", "-fx.ko"}, {"-Afx.ko"}, {"--file=x.ko", "-A"}, {"--file", "x.ko", "--add"}}) {
        expect_ladder(kmod_ladder);
        expect_good_file("x.ko");
        EXPECT_CALL(kmod, add_kmod_by_file("x.ko")).WillOnce(Return(0));
        EXPECT_EQ(run_open(words), (call_result{0, ""})) << words[0];
    }
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"-D", "-n", "x"}, {"-nx", "-D"}, {"-Dnx"}, {"--name=x", "-D"}, {"word", "--name", "x", "--delete"}}) {
        expect_ladder(kmod_ladder);
        EXPECT_CALL(kmod, del_kmod_by_name("x")).WillOnce(Return(0));
        EXPECT_EQ(run_open(words), (call_result{0, ""})) << words[0];
    }
}

TEST_F(kmod_run_test, strange_names_reach_the_operation_as_they_are) {
    for (const char* name : {"%s%n", "a'b\"c", "-x", "--", "a\nb", "\xff\xfe", "模块", " "}) {
        expect_ladder(kmod_ladder);
        EXPECT_CALL(kmod, add_kmod_by_name(name)).WillOnce(Return(0));
        EXPECT_EQ(run_open({"-A", "-n", name}), (call_result{0, ""})) << name;
    }
}

TEST_F(kmod_run_test, the_file_wins_over_the_name) {
    expect_ladder(kmod_ladder);
    expect_good_file("/x.ko");
    EXPECT_CALL(kmod, add_kmod_by_file("/x.ko")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-A", "-n", "x", "-f", "/x.ko"}), (call_result{0, ""}));

    expect_ladder(kmod_ladder);
    expect_good_file("/x.ko");
    EXPECT_CALL(kmod, del_kmod_by_file("/x.ko")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-f", "/x.ko", "-n", "x", "-D"}), (call_result{0, ""}));
}

TEST_F(kmod_run_test, a_repeated_option_replaces_the_earlier_value) {
    expect_ladder(kmod_ladder);
    expect_good_file("/1.ko");
    expect_good_file("/2.ko");
    EXPECT_CALL(kmod, add_kmod_by_file("/2.ko")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-f", "/1.ko", "-A", "-f", "/2.ko"}), (call_result{0, ""}));

    expect_ladder(kmod_ladder);
    EXPECT_CALL(kmod, del_kmod_by_name("2")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-n", "1", "-D", "-n", "2"}), (call_result{0, ""}));
}

TEST_F(kmod_run_test, an_empty_value_counts_as_none) {
    expect_ladder(kmod_ladder);
    expect_good_file("");
    EXPECT_CALL(kmod, add_kmod_by_name("x")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-A", "-f", "", "-n", "x"}), (call_result{0, ""}));

    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-A", "-n", ""}),
              (call_result{-1, "请输入需要添加防卸载的内核模块文件路径或者内核模块名称!\n" + kmod_help()}));
}

TEST_F(kmod_run_test, words_behind_a_double_dash_are_no_options) {
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-D", "--", "-n", "x"}),
              (call_result{-1, "请输入需要删除防卸载的内核模块文件路径或者内核模块名称!\n" + kmod_help()}));
}

// Bad use.

TEST_F(kmod_run_test, add_without_a_target_is_told_with_the_help) {
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-A"}),
              (call_result{-1, "请输入需要添加防卸载的内核模块文件路径或者内核模块名称!\n" + kmod_help()}));
}

TEST_F(kmod_run_test, delete_without_a_target_is_told_with_the_help) {
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-D"}),
              (call_result{-1, "请输入需要删除防卸载的内核模块文件路径或者内核模块名称!\n" + kmod_help()}));
}

TEST_F(kmod_run_test, a_target_without_a_command_gives_the_help) {
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-n", "x"}), (call_result{0, kmod_help()}));

    expect_ladder(kmod_ladder);
    expect_good_file("/x.ko");
    EXPECT_EQ(run_open({"-f", "/x.ko"}), (call_result{0, kmod_help()}));
}

TEST_F(kmod_run_test, an_option_without_its_value_is_invalid) {
    const captured_stream errors(stderr);
    for (const char* word : {"-f", "-n", "--file", "--name"}) {
        expect_ladder(kmod_ladder);
        EXPECT_EQ(run_open({"-A", word}), (call_result{-1, "无效的参数\n" + kmod_help()})) << word;
    }
    EXPECT_EQ(errors.read_all(),
              "orvex_policy: option requires an argument -- 'f'\n"
              "orvex_policy: option requires an argument -- 'n'\n"
              "orvex_policy: option '--file' requires an argument\n"
              "orvex_policy: option '--name' requires an argument\n");
}

TEST_F(kmod_run_test, the_update_letter_of_other_modules_is_invalid) {
    const captured_stream quiet(stderr);
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-U"}), (call_result{-1, "无效的参数\n" + kmod_help()}));
}

// The tests of a file, made when its option is met.

TEST_F(kmod_run_test, a_missing_file_ends_the_run_at_its_option) {
    for (const int answer : {0, 2, -1}) {
        expect_ladder(kmod_ladder);
        EXPECT_CALL(service, path_is_exist("/missing %s")).WillOnce(Return(answer));
        EXPECT_EQ(run_open({"-A", "-f", "/missing %s", "-n", "x"}), (call_result{-1, "文件路径[/missing %s]不存在!\n"}))
            << answer;
    }
}

TEST_F(kmod_run_test, a_directory_ends_the_run_at_its_option) {
    expect_ladder(kmod_ladder);
    EXPECT_CALL(service, path_is_exist("/lib")).WillOnce(Return(1));
    EXPECT_CALL(service, path_is_dir("/lib")).WillOnce(Return(1));
    EXPECT_EQ(run_open({"-D", "-f", "/lib", "-n", "x"}), (call_result{-1, "路径[/lib]是目录, 请输入文件路径\n"}));
}

TEST_F(kmod_run_test, any_other_answer_than_1_is_no_directory) {
    for (const int answer : {2, -1}) {
        expect_ladder(kmod_ladder);
        EXPECT_CALL(service, path_is_exist("/x.ko")).WillOnce(Return(1));
        EXPECT_CALL(service, path_is_dir("/x.ko")).WillOnce(Return(answer));
        EXPECT_CALL(kmod, add_kmod_by_file("/x.ko")).WillOnce(Return(0));
        EXPECT_EQ(run_open({"-A", "-f", "/x.ko"}), (call_result{0, ""})) << answer;
    }
}

TEST_F(kmod_run_test, a_bad_file_comes_before_the_faults_behind_it) {
    expect_ladder(kmod_ladder);
    EXPECT_CALL(service, path_is_exist("/missing")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-f", "/missing", "-A", "-D", "-x", "-h"}), (call_result{-1, "文件路径[/missing]不存在!\n"}));
}

TEST_F(kmod_run_test, a_fault_comes_before_the_bad_file_behind_it) {
    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-A", "-D", "-f", "/missing"}), (call_result{-1, kmod_help()}));

    expect_ladder(kmod_ladder);
    EXPECT_EQ(run_open({"-h", "-f", "/missing"}), (call_result{0, kmod_help()}));
}

TEST_F(kmod_run_test, the_second_of_two_files_is_tested_too) {
    expect_ladder(kmod_ladder);
    expect_good_file("/1.ko");
    EXPECT_CALL(service, path_is_exist("/2.ko")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-A", "-f", "/1.ko", "-f", "/2.ko"}), (call_result{-1, "文件路径[/2.ko]不存在!\n"}));
}

// The listing.

class kmod_list_test : public kmod_run_test {
protected:
    void expect_list(const given_list& list) {
        EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(list));
    }
};

TEST_F(kmod_list_test, each_name_is_a_row_in_the_library_s_order) {
    for (const char* word : {"-L", "--list", "--li"}) {
        expect_ladder(kmod_ladder);
        expect_list(give_list({"ext4", "a b", "%s", "", "模块", "\xff"}));
        EXPECT_EQ(run_open({word}), (call_result{0,
                                                 "模块名称: ext4, 防卸载保护: 开\n"
                                                 "模块名称: a b, 防卸载保护: 开\n"
                                                 "模块名称: %s, 防卸载保护: 开\n"
                                                 "模块名称: , 防卸载保护: 开\n"
                                                 "模块名称: 模块, 防卸载保护: 开\n"
                                                 "模块名称: \xff, 防卸载保护: 开\n"}))
            << word;
    }
}

TEST_F(kmod_list_test, an_empty_list_prints_nothing) {
    expect_ladder(kmod_ladder);
    expect_list(give_list({}));
    EXPECT_EQ(run_open({"-L"}), (call_result{0, ""}));
}

TEST_F(kmod_list_test, no_list_prints_nothing_whatever_its_count) {
    for (const std::uint64_t count : {0U, 3U}) {
        expect_ladder(kmod_ladder);
        expect_list(give_no_list(count));
        EXPECT_EQ(run_open({"-L"}), (call_result{0, ""})) << count;
    }
}

TEST_F(kmod_list_test, a_null_name_silences_what_follows) {
    expect_ladder(kmod_ladder);
    expect_list(give_list({"a", nullptr, "b"}));
    EXPECT_EQ(run_open({"-L"}), (call_result{0, "模块名称: a, 防卸载保护: 开\n模块名称: "}));
    EXPECT_TRUE(std::cout.fail());
}

TEST_F(kmod_list_test, file_and_name_are_ignored_but_the_file_is_tested) {
    expect_ladder(kmod_ladder);
    expect_good_file("/x.ko");
    expect_list(give_list({"ext4"}));
    EXPECT_EQ(run_open({"-L", "-f", "/x.ko", "-n", "x"}), (call_result{0, "模块名称: ext4, 防卸载保护: 开\n"}));

    expect_ladder(kmod_ladder);
    EXPECT_CALL(service, path_is_exist("/missing")).WillOnce(Return(0));
    EXPECT_EQ(run_open({"-L", "-f", "/missing"}), (call_result{-1, "文件路径[/missing]不存在!\n"}));
}

TEST_F(kmod_list_test, a_caller_without_rights_may_list) {
    for (const char* word : {"-L", "--list"}) {
        expect_ladder(kmod_ladder, {0, 1000, 0, 2, 1});
        expect_list(give_list({"ext4"}));
        EXPECT_EQ(run_open({word}), (call_result{0, "模块名称: ext4, 防卸载保护: 开\n"})) << word;
    }
}

// The switch, end to end.

TEST_F(kmod_run_test, on_with_the_framework_disabled_starts_it_with_the_module_alone) {
    expect_ladder_to_states(kmod_ladder, {0, 0, 0, 0, 0});
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(0));
    EXPECT_CALL(service, setModuleStatusReboot_dbus(1, 3, 11, 0, 1, 0)).WillOnce(Return(0));
    for (const int module : {0, 7, 1, 2, 5, 4, 11}) {
        EXPECT_CALL(service, orvex_scene_set_multi_module_status(module, 0, 0)).WillOnce(Return(0));
    }
    EXPECT_CALL(service, orvex_scene_set_multi_module_status(3, 1, 1)).WillOnce(Return(0));

    EXPECT_EQ(run_open({"on"}),
              (call_result{0, "正在开启orvex......\norvex开启成功, 安全模块[kmod]开启成功, 重启后生效!\n"}));
}

TEST_F(kmod_run_test, off_with_the_framework_enabled_switches_the_module) {
    expect_ladder_to_states(kmod_ladder);
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(2));
    EXPECT_CALL(service, orvex_scene_set_module_status(3, 0)).WillOnce(Return(0));

    EXPECT_EQ(run_open({"off"}), (call_result{0, ""}));
}

}  // namespace
