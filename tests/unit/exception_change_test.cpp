// SPDX-License-Identifier: Apache-2.0
// What becomes of the resolved exceptions of a protected object: those in the wanted state already are told, the others
// go to the library in one call. Three operations differ in calls and words only: they are the rows of a table.
#include <filesystem>
#include <set>

#include "modules/file/file_module.h"
#include "modules/proc/proc_module.h"
#include "support/module_test.h"
#include "support/scratch_dir.h"

namespace {

using testing::Return;
using texts = std::vector<std::string>;

constexpr int add = 1;
constexpr int remove = 3;

/// Modules that hold some exceptions, and for which every package is installed and every process runs one program.
class excepting_file : public COrvexFile {
public:
    bool is_pkg_installed(const std::string& /*pkg*/) override { return true; }
    MOCK_METHOD(bool, is_except_in_policy, (const std::string& object, const std::string& except_object), (override));
};

class excepting_proc : public COrvexProc {
public:
    bool is_pkg_installed(const std::string& /*pkg*/) override { return true; }
    MOCK_METHOD(std::string, get_path_by_pid, (std::uint32_t pid), (override));
    MOCK_METHOD(bool, is_proc_except_in_policy, (const std::string& path, const std::string& except_object),
                (override));
};

struct change_row;

class exception_change_test : public module_test, public testing::WithParamInterface<change_row> {
public:
    using module_test::service;

    /// Expects what is asked about a path of the protected object on the way to its real path.
    void expect_resolved() {
        EXPECT_CALL(service, path_is_exist(link)).WillOnce(Return(1));
        EXPECT_CALL(service, path_is_dir(object)).WillOnce(Return(0));
    }

    testing::StrictMock<excepting_file> file;
    testing::StrictMock<excepting_proc> proc;
    scratch_dir dir;
    /// The protected object's real path, and a link to it, which the user types.
    const std::string object = dir.write("object %s", "");
    const std::string link = dir.path() + "/link %d";

protected:
    exception_change_test() { std::filesystem::create_symlink(object, link); }

    /// Runs the operation with packages as exceptions.
    call_result set(const std::string& packages, int action);

    /// Expects the protected object to be resolved and each of `packages` to be looked for; `present` are its
    /// exceptions.
    void expect_asked(const texts& packages, const std::set<std::string>& present);

    void expect_change(const texts& packages, int action, int result);

    /// The words of the row with `link` and `object` in their places, in a log record the list and the result too.
    std::string fill_in(std::string words, const std::string& list = "", int result = 0) const;
};

/// What differs between the operations. In the words LINK stands for the object as typed, OBJECT for its real path.
struct change_row {
    const char* function;
    const char* tag;
    int (*set)(exception_change_test& test, const std::string& packages, int action);
    void (*expect_resolved)(exception_change_test& test);
    void (*expect_asked)(exception_change_test& test, const std::string& package, bool answer);
    void (*expect_add)(exception_change_test& test, const texts& packages, int result);
    void (*expect_removal)(exception_change_test& test, const texts& packages, int result);
    std::string present_head;
    std::string absent_head;
    std::string not_protected_line;
    std::string add_failure_head;
    std::string removal_failure_head;
    std::string add_log;
    std::string removal_log;
    /// The finished texts: LIST stands for the exceptions as typed, RESULT for the library's number.
    std::string add_record;
    std::string removal_record;
};

void PrintTo(const change_row& row, std::ostream* stream) {
    *stream << row.function;
}

void expect_asked_proc(exception_change_test& test, const std::string& package, bool answer) {
    EXPECT_CALL(test.proc, is_proc_except_in_policy(test.object, package)).WillOnce(Return(answer));
}

const change_row change_rows[] = {
    {
        "set_file_except_policy",
        "file",
        [](auto& test, const auto& packages, int action) {
            return test.file.set_file_except_policy(1, test.link, 3, packages, action);
        },
        [](auto& test) { test.expect_resolved(); },
        [](auto& test, const auto& package, bool answer) {
            EXPECT_CALL(test.file, is_except_in_policy(test.object, package)).WillOnce(Return(answer));
        },
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_filectl_exception_multi_add(1, test.object, 3, packages))
                .WillOnce(Return(result));
        },
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_filectl_exception_multi_remove(1, test.object, 3, packages))
                .WillOnce(Return(result));
        },
        "只读保护文件[OBJECT]已添加了例外程序[",
        "只读保护文件[OBJECT]未添加例外程序[",
        "[OBJECT]不在只读保护列表中, 请先添加只读保护!\n",
        "添加只读保护文件[OBJECT]的例外程序[",
        "删除只读保护文件[OBJECT]的例外程序[",
        "add file except failed, readonly file = %s, except = %s, ret = %d",
        "del file except failed, readonly file = %s, except = %s, ret = %d",
        "add file except failed, readonly file = LINK, except = LIST, ret = RESULT",
        "del file except failed, readonly file = LINK, except = LIST, ret = RESULT",
    },
    {
        "set_proc_except_policy",
        "proc",
        [](auto& test, const auto& packages, int action) {
            return test.proc.set_proc_except_policy(1, test.link, 3, packages, action);
        },
        [](auto& test) { test.expect_resolved(); },
        expect_asked_proc,
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_taskctl_exception_multi_add(1, test.object, 3, packages))
                .WillOnce(Return(result));
        },
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_taskctl_exception_multi_remove(1, test.object, 3, packages))
                .WillOnce(Return(result));
        },
        "进程[OBJECT]已添加了例外程序[",
        "进程[OBJECT]未添加例外程序[",
        "[LINK]不在防杀死保护列表中, 请先添加进程防杀死!\n",
        "添加防杀死进程[OBJECT]的例外程序[",
        "删除防杀死进程[OBJECT]的例外程序[",
        "add proc except failed, file = %s, except = &s, ret = %d",
        "del proc except failed, file = %s, except = &s, ret = %d",
        // The second field of these formats is no conversion: here the double shows the bare arguments.
        "[LINK][LIST][RESULT]",
        "[LINK][LIST][RESULT]",
    },
    {
        "set_proc_except_policy_by_pid",
        "proc",
        [](auto& test, const auto& packages, int action) {
            return test.proc.set_proc_except_policy_by_pid("0012", 3, packages, action);
        },
        [](auto& test) { EXPECT_CALL(test.proc, get_path_by_pid(12)).WillOnce(Return(test.object)); },
        expect_asked_proc,
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_taskctl_exception_multi_add_by_pid(12, 3, packages))
                .WillOnce(Return(result));
        },
        [](auto& test, const auto& packages, int result) {
            EXPECT_CALL(test.service, orvex_scene_taskctl_exception_multi_remove_by_pid(12, 3, packages))
                .WillOnce(Return(result));
        },
        "进程[12]已添加了例外程序[",
        "进程[12]未添加了例外程序[",
        "[0012]不在防杀死保护列表中, 请先添加进程防杀死!\n",
        "添加防杀死进程[0012]的例外程序[",
        "删除防杀死进程[0012]的例外程序[",
        "add proc except failed, pid = %s, except = &s, ret = %d",
        "del proc except failed, pid = %s, except = &s, ret = %d",
        "[0012][LIST][RESULT]",
        "[0012][LIST][RESULT]",
    },
};

/// Puts `value` in the place of `word`, where it stands.
std::string replace(std::string text, const std::string& word, const std::string& value) {
    const std::size_t start = text.find(word);
    return start == std::string::npos ? text : text.replace(start, word.size(), value);
}

call_result exception_change_test::set(const std::string& packages, int action) {
    return capture([&] { return GetParam().set(*this, packages, action); });
}

void exception_change_test::expect_asked(const texts& packages, const std::set<std::string>& present) {
    GetParam().expect_resolved(*this);
    for (const std::string& package : packages) {
        GetParam().expect_asked(*this, package, present.count(package) != 0);
    }
}

void exception_change_test::expect_change(const texts& packages, int action, int result) {
    (action == add ? GetParam().expect_add : GetParam().expect_removal)(*this, packages, result);
}

std::string exception_change_test::fill_in(std::string words, const std::string& list, int result) const {
    words = replace(replace(std::move(words), "OBJECT", object), "LINK", link);
    return replace(replace(std::move(words), "LIST", list), "RESULT", std::to_string(result));
}

TEST_P(exception_change_test, what_needs_the_change_goes_to_the_library_in_one_silent_call) {
    expect_asked({"p", "q", "p"}, {});
    expect_change({"p", "q", "p"}, add, 0);
    EXPECT_EQ(set("p:q::p", add), (call_result{0, ""}));

    expect_asked({"p", "q", "p"}, {"p", "q"});
    expect_change({"p", "q", "p"}, remove, 0);
    EXPECT_EQ(set("p:q::p", remove), (call_result{0, ""}));
}

TEST_P(exception_change_test, what_is_present_is_told_at_an_add_and_left_out) {
    expect_asked({"p", "%s", "q"}, {"%s"});
    expect_change({"p", "q"}, add, 0);
    EXPECT_EQ(set("p:%s:q", add), (call_result{0, fill_in(GetParam().present_head) + "%s], 无需重复添加!\n"}));
}

TEST_P(exception_change_test, what_is_absent_is_told_at_a_removal_and_left_out) {
    expect_asked({"p", "%s", "q"}, {"p", "q"});
    expect_change({"p", "q"}, remove, 0);
    EXPECT_EQ(set("p:%s:q", remove), (call_result{0, fill_in(GetParam().absent_head) + "%s], 无需删除!\n"}));
}

TEST_P(exception_change_test, with_nothing_to_change_the_library_is_not_called) {
    const std::string present = fill_in(GetParam().present_head);
    expect_asked({"p", "q"}, {"p", "q"});
    EXPECT_EQ(set("p:q", add), (call_result{0, present + "p], 无需重复添加!\n" + present + "q], 无需重复添加!\n"}));

    const std::string absent = fill_in(GetParam().absent_head);
    expect_asked({"p", "q"}, {});
    EXPECT_EQ(set("p:q", remove), (call_result{0, absent + "p], 无需删除!\n" + absent + "q], 无需删除!\n"}));
}

TEST_P(exception_change_test, an_object_that_is_not_protected_is_told_at_an_add_and_not_logged) {
    expect_asked({"p"}, {});
    expect_change({"p"}, add, -3);
    EXPECT_EQ(set("p", add), (call_result{-3, fill_in(GetParam().not_protected_line)}));
}

TEST_P(exception_change_test, a_failed_add_is_told_and_logged_with_the_whole_list_as_typed) {
    for (const int result : {-1, -2, -4, 3, 1}) {
        expect_asked({"p", "q"}, {"q"});
        expect_change({"p"}, add, result);
        expect_log(GetParam().tag, GetParam().function, GetParam().add_log,
                   fill_in(GetParam().add_record, "p::q:", result));
        EXPECT_EQ(set("p::q:", add), (call_result{result, fill_in(GetParam().present_head) + "q], 无需重复添加!\n" +
                                                              fill_in(GetParam().add_failure_head) + "p::q:]失败\n"}));
    }
}

TEST_P(exception_change_test, a_failed_removal_is_told_and_logged_whatever_its_number) {
    for (const int result : {-3, -1, -4, 3}) {
        expect_asked({"p"}, {"p"});
        expect_change({"p"}, remove, result);
        expect_log(GetParam().tag, GetParam().function, GetParam().removal_log,
                   fill_in(GetParam().removal_record, "p:", result));
        EXPECT_EQ(set("p:", remove), (call_result{result, fill_in(GetParam().removal_failure_head) + "p:]失败\n"}));
    }
}

INSTANTIATE_TEST_SUITE_P(operations, exception_change_test, testing::ValuesIn(change_rows),
                         [](const auto& row) { return row.param.function; });

}  // namespace
