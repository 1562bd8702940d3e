// SPDX-License-Identifier: Apache-2.0
// Which paths `file` and `proc` accept for protection and for its end: three operations as rows of a table. What
// becomes of the accepted ones is in protection_change_test.cpp.
#include "modules/file/file_module.h"
#include "modules/proc/proc_module.h"
#include "support/given_variable.h"
#include "unit/real_path_test.h"

namespace {

using testing::Return;

/// Modules whose lists the test answers for.
class listing_file : public COrvexFile {
public:
    MOCK_METHOD(bool, is_file_in_policy, (const std::string& path), (override));
    MOCK_METHOD(bool, is_dir_in_policy, (const std::string& path), (override));
};

class listing_proc : public COrvexProc {
public:
    MOCK_METHOD(bool, is_proc_in_policy, (const std::string& path), (override));
};

struct path_row;

class protection_path_test : public real_path_test, public testing::WithParamInterface<path_row> {
public:
    using module_test::service;

    testing::StrictMock<listing_file> file;
    testing::StrictMock<listing_proc> proc;

protected:
    call_result set(const std::string& paths, int action);

    /// Expects the question for the blacklist where there is one.
    void expect_blacklisted(const std::string& path, int answer);

    void expect_listed(const std::string& path, bool answer);

    /// Expects all tests of a path that passes them; `real_path` is where it leads.
    void expect_pass(const std::string& path, const std::string& real_path, int action);

    /// Expects these paths to be added, or removed with their exceptions.
    void expect_done(const texts& paths, int action);
};

/// What differs between the operations.
struct path_row {
    const char* name;
    int (*set)(protection_path_test& test, const std::string& paths, int action);
    /// What `path_is_dir` may answer for the wanted kind, and for the other one.
    std::vector<int> right_answers;
    std::vector<int> wrong_answers;
    bool has_blacklist;
    void (*expect_listed)(protection_path_test& test, const std::string& path, bool answer);
    void (*expect_add)(protection_path_test& test, const std::vector<std::string>& paths);
    void (*expect_removal)(protection_path_test& test, const std::vector<std::string>& paths);
    void (*expect_clearing)(protection_path_test& test, const std::string& path);
    std::string missing_head;
    std::string no_real_path_head;
    std::string wrong_kind_tail;
    std::string object_head;
    std::string listed_tail;
    std::string not_listed_tail;
    /// Around the line for a relative path that is gone, at a removal; empty where what is gone cannot be removed.
    std::string gone_head;
    std::string gone_tail;
};

void PrintTo(const path_row& row, std::ostream* stream) {
    *stream << row.name;
}

void expect_file_add(protection_path_test& test, const std::vector<std::string>& paths) {
    EXPECT_CALL(test.service, orvex_scene_filectl_multi_add_by_path(paths)).WillOnce(Return(0));
}

void expect_file_removal(protection_path_test& test, const std::vector<std::string>& paths) {
    EXPECT_CALL(test.service, orvex_scene_filectl_multi_remove_by_path(paths)).WillOnce(Return(0));
}

template <std::int32_t kind>
void expect_file_clearing(protection_path_test& test, const std::string& path) {
    EXPECT_CALL(test.service, orvex_scene_filectl_exception_clear_resource_policy(kind, path)).WillOnce(Return(0));
}

const std::vector<path_row> path_rows = {
    {"set_file_policy_by_file",
     [](auto& test, const auto& paths, int action) { return test.file.set_file_policy_by_file(paths, action); },
     {0, 2, -1},
     {1},
     false,
     [](auto& test, const auto& path, bool answer) {
         EXPECT_CALL(test.file, is_file_in_policy(path)).WillOnce(Return(answer));
     },
     expect_file_add,
     expect_file_removal,
     expect_file_clearing<1>,
     "文件路径[",
     "获取文件[",
     "]是目录, 请输入文件路径\n",
     "文件[",
     "]已存在只读保护列表中, 无需重复添加!\n",
     "]不在只读保护列表中, 无需删除!\n",
     "输入文件[",
     "]的相对路径时, 请确保文件存在!\n支持不存在的文件删除只读保护, 需输入文件绝对路径!\n"},
    {"set_file_policy_by_dir",
     [](auto& test, const auto& paths, int action) { return test.file.set_file_policy_by_dir(paths, action); },
     {1},
     {0, 2, -1},
     false,
     [](auto& test, const auto& path, bool answer) {
         EXPECT_CALL(test.file, is_dir_in_policy(path)).WillOnce(Return(answer));
     },
     expect_file_add,
     expect_file_removal,
     expect_file_clearing<2>,
     "目录路径[",
     "获取目录[",
     "]非目录, 请输入目录路径\n",
     "目录[",
     "]已存在只读保护列表中, 无需重复添加!\n",
     "]不在只读保护列表中, 无需删除!\n",
     "输入目录[",
     "]的相对路径时, 请确保目录存在!\n支持不存在的目录删除只读保护, 需输入目录绝对路径!\n"},
    {"set_proc_policy_by_file",
     [](auto& test, const auto& paths, int action) { return test.proc.set_proc_policy_by_file(paths, action); },
     {0, 2, -1},
     {1},
     true,
     [](auto& test, const auto& path, bool answer) {
         EXPECT_CALL(test.proc, is_proc_in_policy(path)).WillOnce(Return(answer));
     },
     [](auto& test, const auto& paths) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_add_by_path(paths)).WillOnce(Return(0));
     },
     [](auto& test, const auto& paths) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_remove_by_path(paths)).WillOnce(Return(0));
     },
     [](auto& test, const auto& path) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_exception_clear_resource_policy(path)).WillOnce(Return(0));
     },
     "文件路径[",
     "获取文件[",
     "]是目录, 请输入文件路径\n",
     "文件[",
     "]已存在进程防杀死列表中, 无需重复添加!\n",
     "]不在进程防杀死列表中, 无需删除!\n",
     "",
     ""},
};

call_result protection_path_test::set(const std::string& paths, int action) {
    return capture([&] { return GetParam().set(*this, paths, action); });
}

void protection_path_test::expect_blacklisted(const std::string& path, int answer) {
    if (GetParam().has_blacklist) {
        EXPECT_CALL(service, ppro_path_in_blacklist(path)).WillOnce(Return(answer));
    }
}

void protection_path_test::expect_listed(const std::string& path, bool answer) {
    GetParam().expect_listed(*this, path, answer);
}

void protection_path_test::expect_pass(const std::string& path, const std::string& real_path, int action) {
    expect_exists(path);
    expect_dir(real_path, GetParam().right_answers.front());
    expect_blacklisted(real_path, 0);
    expect_listed(real_path, action == remove);
}

void protection_path_test::expect_done(const texts& paths, int action) {
    if (action == add) {
        GetParam().expect_add(*this, paths);
        return;
    }
    GetParam().expect_removal(*this, paths);
    for (const std::string& path : paths) {
        GetParam().expect_clearing(*this, path);
    }
}

TEST_P(protection_path_test, without_a_piece_nothing_is_done) {
    for (const char* paths : {"", ":", "::"}) {
        EXPECT_EQ(set(paths, add), (call_result{0, ""})) << paths;
        EXPECT_EQ(set(paths, remove), (call_result{0, ""})) << paths;
    }
}

TEST_P(protection_path_test, a_path_that_passes_goes_to_the_library) {
    for (const int action : {add, remove}) {
        for (const int answer : GetParam().right_answers) {
            expect_exists(a);
            expect_dir(a, answer);
            expect_blacklisted(a, 0);
            expect_listed(a, action == remove);
            expect_done({a}, action);
            EXPECT_EQ(set(a, action), (call_result{0, ""})) << action << answer;
        }
    }
}

TEST_P(protection_path_test, a_link_and_a_detour_go_to_the_library_as_the_real_path) {
    for (const std::string& path : {link, dir.path() + "/.//a"}) {
        for (const int action : {add, remove}) {
            expect_pass(path, a, action);
            expect_done({a}, action);
            EXPECT_EQ(set(path, action), (call_result{0, ""})) << path << action;
        }
    }
}

TEST_P(protection_path_test, a_path_that_does_not_exist_is_refused_at_an_add) {
    for (const int answer : {0, 2, -1}) {
        expect_exists("/gone %s", answer);
        EXPECT_EQ(set("/gone %s", add), (call_result{0, GetParam().missing_head + "/gone %s]不存在!\n"})) << answer;
    }
}

TEST_P(protection_path_test, a_path_without_a_real_path_is_refused) {
    for (const int action : {add, remove}) {
        expect_exists(gone);
        EXPECT_EQ(set(gone, action), (call_result{0, GetParam().no_real_path_head + gone + "]的实际路径失败!\n"}))
            << action;
    }
}

TEST_P(protection_path_test, the_wrong_kind_is_refused_with_the_real_path) {
    for (const int action : {add, remove}) {
        for (const int answer : GetParam().wrong_answers) {
            expect_exists(link);
            expect_dir(a, answer);
            EXPECT_EQ(set(link, action), (call_result{0, "路径[" + a + GetParam().wrong_kind_tail})) << answer;
        }
    }
}

TEST_P(protection_path_test, a_path_in_the_wanted_state_is_refused_with_the_real_path) {
    for (const int action : {add, remove}) {
        expect_exists(link);
        expect_dir(a, GetParam().right_answers.front());
        expect_blacklisted(a, 0);
        expect_listed(a, action == add);
        const std::string& tail = action == add ? GetParam().listed_tail : GetParam().not_listed_tail;
        EXPECT_EQ(set(link, action), (call_result{0, GetParam().object_head + a + tail})) << action;
    }
}

TEST_P(protection_path_test, the_home_directory_stands_for_the_tilde_in_lines_and_calls) {
    const given_variable home("HOME", dir.path().c_str());
    for (const int action : {add, remove}) {
        expect_pass(a, a, action);
        expect_done({a}, action);
        EXPECT_EQ(set("~/a", action), (call_result{0, ""})) << action;
    }
    expect_exists(gone, 0);
    EXPECT_EQ(set("~/gone", add), (call_result{0, GetParam().missing_head + gone + "]不存在!\n"}));
}

TEST_P(protection_path_test, without_a_home_directory_the_tilde_stays) {
    const given_variable home("HOME", nullptr);
    expect_exists("~/a", 0);
    EXPECT_EQ(set("~/a", add), (call_result{0, "错误: HOME环境变量未设置!\n错误: home无效, 无法扩展~字符!\n" +
                                                   GetParam().missing_head + "~/a]不存在!\n"}));
}

TEST_P(protection_path_test, a_refused_piece_does_not_stop_the_others) {
    for (const int action : {add, remove}) {
        expect_pass(a, a, action);
        expect_exists(gone);
        expect_pass(b, b, action);
        expect_done({a, b}, action);
        EXPECT_EQ(set(a + "::" + gone + ":" + b + ":", action),
                  (call_result{0, GetParam().no_real_path_head + gone + "]的实际路径失败!\n"}))
            << action;
    }
}

TEST_P(protection_path_test, with_every_piece_refused_the_library_is_not_called) {
    expect_exists("/gone", 0);
    expect_exists("/away", 0);
    EXPECT_EQ(set("/gone:/away", add), (call_result{0, GetParam().missing_head + "/gone]不存在!\n" +
                                                           GetParam().missing_head + "/away]不存在!\n"}));
}

TEST_P(protection_path_test, a_path_named_twice_is_accepted_twice) {
    for (const int action : {add, remove}) {
        expect_pass(a, a, action);
        expect_pass(link, a, action);
        expect_done({a, a}, action);
        EXPECT_EQ(set(a + ":" + link, action), (call_result{0, ""})) << action;
    }
}

/// The rows of the operations in which a path that is gone can be removed, or cannot.
std::vector<path_row> choose_rows(bool is_gone_removed) {
    std::vector<path_row> chosen;
    for (const path_row& row : path_rows) {
        if (row.gone_head.empty() != is_gone_removed) {
            chosen.push_back(row);
        }
    }
    return chosen;
}

std::string name_row(const testing::TestParamInfo<path_row>& row) {
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(operations, protection_path_test, testing::ValuesIn(path_rows), name_row);

// What is gone can be removed from the protection of files.

class gone_path_test : public protection_path_test {
protected:
    std::string gone_lines(const std::string& path) const { return GetParam().gone_head + path + GetParam().gone_tail; }
};

TEST_P(gone_path_test, a_relative_path_is_refused) {
    for (const std::string path : {"gone.txt", "./gone.txt", "~other/gone.txt"}) {
        for (const int answer : {0, 2, -1}) {
            expect_exists(path, answer);
            EXPECT_EQ(set(path, remove), (call_result{0, gone_lines(path)})) << path << answer;
        }
    }
}

TEST_P(gone_path_test, an_absolute_path_is_removed_under_its_text_as_it_stands) {
    for (const std::string path : {"/gone.txt", "/gone/", "/gone/../gone.txt", "//gone", "/gone/*"}) {
        expect_exists(path, 0);
        expect_listed(path, true);
        expect_done({path}, remove);
        EXPECT_EQ(set(path, remove), (call_result{0, ""})) << path;

        expect_exists(path, -1);
        expect_listed(path, false);
        EXPECT_EQ(set(path, remove), (call_result{0, GetParam().object_head + path + GetParam().not_listed_tail}))
            << path;
    }
}

TEST_P(gone_path_test, a_path_in_the_home_directory_is_absolute) {
    const given_variable home("HOME", dir.path().c_str());
    expect_exists(gone, 0);
    expect_listed(gone, true);
    expect_done({gone}, remove);
    EXPECT_EQ(set("~/gone", remove), (call_result{0, ""}));
}

TEST_P(gone_path_test, a_refused_piece_does_not_stop_the_others) {
    expect_exists("gone", 0);
    expect_exists("/gone", 0);
    expect_listed("/gone", true);
    expect_pass(b, b, remove);
    expect_done({"/gone", b}, remove);
    EXPECT_EQ(set("gone:/gone:" + b, remove), (call_result{0, gone_lines("gone")}));
}

INSTANTIATE_TEST_SUITE_P(operations, gone_path_test, testing::ValuesIn(choose_rows(true)), name_row);

class kept_gone_path_test : public protection_path_test {};

TEST_P(kept_gone_path_test, a_path_that_does_not_exist_is_refused_at_a_removal_too) {
    for (const std::string path : {"/gone %s", "gone"}) {
        for (const int answer : {0, 2, -1}) {
            expect_exists(path, answer);
            EXPECT_EQ(set(path, remove), (call_result{0, GetParam().missing_head + path + "]不存在!\n"})) << path;
        }
    }
}

TEST_P(kept_gone_path_test, a_blacklisted_program_is_refused_with_its_real_path_listed_or_not) {
    for (const int action : {add, remove}) {
        expect_exists(link);
        expect_dir(a, 0);
        expect_blacklisted(a, 1);
        expect_pass(b, b, action);
        expect_done({b}, action);
        EXPECT_EQ(set(link + ":" + b, action), (call_result{0, a + ": 该进程是黑名单进程, 不允许设置策略\n"}));
    }
}

TEST_P(kept_gone_path_test, any_other_answer_than_1_is_no_blacklisted_program) {
    for (const int action : {add, remove}) {
        for (const int answer : {2, -1}) {
            expect_exists(a);
            expect_dir(a, 0);
            expect_blacklisted(a, answer);
            expect_listed(a, action == remove);
            expect_done({a}, action);
            EXPECT_EQ(set(a, action), (call_result{0, ""})) << action << answer;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(operations, kept_gone_path_test, testing::ValuesIn(choose_rows(false)), name_row);

// Pieces, tilde and absoluteness are asked of the object.

class asked_object_test : public real_path_test {};

TEST_F(asked_object_test, file_asks_its_own_operations) {
    class answering_file : public COrvexFile {
    public:
        MOCK_METHOD(texts, split_string, (const std::string& text, char delimiter), (override));
        MOCK_METHOD(std::string, expand_tilde, (const std::string& path), (override));
        MOCK_METHOD(bool, is_absolute_path, (const std::string& path), (override));
        MOCK_METHOD(bool, is_file_in_policy, (const std::string& path), (override));
    };
    testing::StrictMock<answering_file> file;
    EXPECT_CALL(file, split_string("x/y", ':')).WillOnce(Return(texts{"x"}));
    EXPECT_CALL(file, expand_tilde("x")).WillOnce(Return("expanded"));
    expect_exists("expanded", 0);
    EXPECT_CALL(file, is_absolute_path("expanded")).WillOnce(Return(true));
    EXPECT_CALL(file, is_file_in_policy("expanded")).WillOnce(Return(false));
    EXPECT_EQ(capture([&] { return file.set_file_policy_by_file("x/y", remove); }),
              (call_result{0, "文件[expanded]不在只读保护列表中, 无需删除!\n"}));
}

TEST_F(asked_object_test, proc_asks_its_own_operations) {
    class answering_proc : public COrvexProc {
    public:
        MOCK_METHOD(texts, split_string, (const std::string& text, char delimiter), (override));
        MOCK_METHOD(std::string, expand_tilde, (const std::string& path), (override));
    };
    testing::StrictMock<answering_proc> proc;
    EXPECT_CALL(proc, split_string("x/y", ':')).WillOnce(Return(texts{"x"}));
    EXPECT_CALL(proc, expand_tilde("x")).WillOnce(Return("expanded"));
    expect_exists("expanded", 0);
    EXPECT_EQ(capture([&] { return proc.set_proc_policy_by_file("x/y", remove); }),
              (call_result{0, "文件路径[expanded]不存在!\n"}));
}

}  // namespace
