// SPDX-License-Identifier: Apache-2.0
// What becomes of the objects that `file` and `proc` accepted: the one call, and the end of their exceptions. Five
// operations differ in calls and words only: they are the rows of a table.
#include <algorithm>

#include "modules/file/file_module.h"
#include "modules/proc/proc_module.h"
#include "support/module_test.h"
#include "support/scratch_dir.h"

namespace {

using testing::Return;
using texts = std::vector<std::string>;

constexpr int add = 1;
constexpr int remove = 3;

/// Modules for which everything that is named passes: an object is listed where it is to be removed.
class lenient_file : public COrvexFile {
public:
    bool is_pkg_installed(const std::string& /*pkg*/) override { return true; }
    bool is_file_in_policy(const std::string& /*path*/) override { return is_listed; }
    bool is_dir_in_policy(const std::string& /*path*/) override { return is_listed; }
    bool is_pkg_in_policy(const std::string& /*package*/) override { return is_listed; }

    bool is_listed = false;
};

class lenient_proc : public COrvexProc {
public:
    std::string get_path_by_pid(std::uint32_t pid) override { return "/opt/" + std::to_string(pid); }
    bool is_proc_in_policy(const std::string& /*path*/) override { return is_listed; }

    bool is_listed = false;
};

struct change_row;

class protection_change_test : public module_test, public testing::WithParamInterface<change_row> {
public:
    using module_test::service;

    lenient_file file;
    lenient_proc proc;
    scratch_dir dir;

protected:
    protection_change_test();

    /// Runs the operation on all three objects.
    call_result set(int action);

    /// Expects the one call for all objects, behind the tests that they pass.
    void expect_change(int action, int result);

    /// Expects a clearing of one of the objects.
    void expect_clearing(std::size_t object, int result);

    /// Expects a failed clearing with its log record.
    void expect_failed_clearing(std::size_t object, int result);

    /// The line of a failed clearing.
    std::string clearing_line(std::size_t object) const;

    /// Three objects, as the user types them and as the library gets them.
    texts objects;
    /// The user's argument.
    std::string list;
};

/// What the objects are, for the questions that the library is asked about them.
enum class object_form { file, directory, program, name };

/// What differs between the operations.
struct change_row {
    const char* function;
    const char* tag;
    object_form form;
    /// Objects that are no paths.
    texts names;
    int (*set)(protection_change_test& test, const std::string& objects, int action);
    void (*expect_add)(protection_change_test& test, const texts& objects, int result);
    std::string add_line;
    std::string add_log;
    void (*expect_removal)(protection_change_test& test, const texts& objects, int result);
    std::string removal_line;
    std::string removal_log;
    void (*expect_clearing)(protection_change_test& test, const std::string& object, int result);
    std::string clearing_head;
    std::string clearing_log;
};

void PrintTo(const change_row& row, std::ostream* stream) {
    *stream << row.function;
}

void expect_file_add(protection_change_test& test, const texts& objects, int result) {
    EXPECT_CALL(test.service, orvex_scene_filectl_multi_add_by_path(objects)).WillOnce(Return(result));
}

void expect_file_removal(protection_change_test& test, const texts& objects, int result) {
    EXPECT_CALL(test.service, orvex_scene_filectl_multi_remove_by_path(objects)).WillOnce(Return(result));
}

template <std::int32_t kind>
void expect_file_clearing(protection_change_test& test, const std::string& object, int result) {
    EXPECT_CALL(test.service, orvex_scene_filectl_exception_clear_resource_policy(kind, object))
        .WillOnce(Return(result));
}

std::vector<std::int32_t> numbers(const texts& objects) {
    std::vector<std::int32_t> values(objects.size());
    std::transform(objects.begin(), objects.end(), values.begin(), [](const auto& text) { return std::stoi(text); });
    return values;
}

const change_row change_rows[] = {
    {"set_file_policy_by_file",
     "file",
     object_form::file,
     {},
     [](auto& test, const auto& objects, int action) { return test.file.set_file_policy_by_file(objects, action); },
     expect_file_add,
     "设置文件只读保护失败\n",
     "add file ctl failed, path: %s, ret: %d",
     expect_file_removal,
     "删除文件只读保护失败\n",
     "del file ctl failed, path: %s, ret: %d",
     expect_file_clearing<1>,
     "删除只读保护文件[",
     "del file ctl file to all except failed, path: %s, ret: %d"},
    {"set_file_policy_by_dir",
     "file",
     object_form::directory,
     {},
     [](auto& test, const auto& objects, int action) { return test.file.set_file_policy_by_dir(objects, action); },
     expect_file_add,
     "设置目录只读保护失败\n",
     "add file ctl failed, dir: %s, ret: %d",
     expect_file_removal,
     "删除目录只读保护失败\n",
     "del file ctl failed, dir: %s, ret: %d",
     expect_file_clearing<2>,
     "删除只读保护目录[",
     "del file ctl dir to all except failed, path: %s, ret: %d"},
    {"set_file_policy_by_pkg",
     "file",
     object_form::name,
     {"hesa-guard", "%s", "orvex-daemon"},
     [](auto& test, const auto& objects, int action) { return test.file.set_file_policy_by_pkg(objects, action); },
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_filectl_multi_add_by_pkg(objects)).WillOnce(Return(result));
     },
     "设置软件包只读保护失败!\n",
     "add file ctl failed, pkgName: %s, ret: %d",
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_filectl_multi_remove_by_pkg(objects)).WillOnce(Return(result));
     },
     "删除软件包只读保护失败!\n",
     "del file ctl failed, pkgName: %s, ret: %d",
     expect_file_clearing<3>,
     "删除只读保护软件包[",
     "del file ctl pkg to all except failed, path: %s, ret: %d"},
    {"set_proc_policy_by_file",
     "proc",
     object_form::program,
     {},
     [](auto& test, const auto& objects, int action) { return test.proc.set_proc_policy_by_file(objects, action); },
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_add_by_path(objects)).WillOnce(Return(result));
     },
     "设置进程防杀死失败\n",
     "add proc ctl failed, path: %s, ret: %d",
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_remove_by_path(objects)).WillOnce(Return(result));
     },
     "删除进程防杀死失败\n",
     "del proc ctl failed, path: %s, ret: %d",
     [](auto& test, const auto& object, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_exception_clear_resource_policy(object))
             .WillOnce(Return(result));
     },
     "删除防杀死进程[",
     "del proc ctl file to all except failed, path: %s, ret: %d"},
    {"set_proc_policy_by_pid",
     "proc",
     object_form::name,
     {"12", "345", "2147483647"},
     [](auto& test, const auto& objects, int action) { return test.proc.set_proc_policy_by_pid(objects, action); },
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_add_by_pid(numbers(objects))).WillOnce(Return(result));
     },
     "设置进程防杀死失败\n",
     "add proc ctl failed, pid: %s, ret: %d",
     [](auto& test, const auto& objects, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_multi_remove_by_pid(numbers(objects))).WillOnce(Return(result));
     },
     "删除进程防杀死失败\n",
     "del proc ctl failed, pid: %s, ret: %d",
     [](auto& test, const auto& object, int result) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_exception_clear_resource_policy_by_pid(std::stoi(object)))
             .WillOnce(Return(result));
     },
     "删除防杀死进程[",
     "del proc ctl pid to all except failed, pid: %s, ret: %d"},
};

/// The finished text of a log record: `text` for the first field of the format, `number` for the last.
std::string fill(std::string format, const std::string& text, int number) {
    format.replace(format.rfind("%d"), 2, std::to_string(number));
    return format.replace(format.find("%s"), 2, text);
}

protection_change_test::protection_change_test() : objects(GetParam().names) {
    if (GetParam().form != object_form::name) {
        objects = {dir.write("a", ""), dir.write("b %s", ""), dir.write("c", "")};
    }
    list = objects[0] + ":" + objects[1] + "::" + objects[2];
}

call_result protection_change_test::set(int action) {
    file.is_listed = proc.is_listed = action == remove;
    return capture([&] { return GetParam().set(*this, list, action); });
}

void protection_change_test::expect_change(int action, int result) {
    const object_form form = GetParam().form;
    for (const std::string& object : objects) {
        if (form != object_form::name) {
            EXPECT_CALL(service, path_is_exist(object)).WillOnce(Return(1));
            EXPECT_CALL(service, path_is_dir(object)).WillOnce(Return(form == object_form::directory ? 1 : 0));
        }
        if (form == object_form::program) {
            EXPECT_CALL(service, ppro_path_in_blacklist(object)).WillOnce(Return(0));
        }
    }
    (action == add ? GetParam().expect_add : GetParam().expect_removal)(*this, objects, result);
}

void protection_change_test::expect_clearing(std::size_t object, int result) {
    GetParam().expect_clearing(*this, objects[object], result);
}

void protection_change_test::expect_failed_clearing(std::size_t object, int result) {
    expect_clearing(object, result);
    const std::string& format = GetParam().clearing_log;
    // By process a number goes out where the format says %s: there the double shows the bare arguments.
    const bool is_number = std::string(GetParam().function) == "set_proc_policy_by_pid";
    expect_log(GetParam().tag, GetParam().function, format,
               is_number ? "[" + objects[object] + "][" + std::to_string(result) + "]"
                         : fill(format, objects[object], result));
}

std::string protection_change_test::clearing_line(std::size_t object) const {
    return GetParam().clearing_head + objects[object] + "]的所有例外程序失败!\n";
}

TEST_P(protection_change_test, a_good_add_is_one_silent_call) {
    expect_change(add, 0);
    EXPECT_EQ(set(add), (call_result{0, ""}));
}

TEST_P(protection_change_test, a_failed_add_is_told_and_logged_with_the_whole_argument) {
    for (const int result : {-1, -3, -4, 5, 1}) {
        expect_change(add, result);
        expect_log(GetParam().tag, GetParam().function, GetParam().add_log, fill(GetParam().add_log, list, result));
        EXPECT_EQ(set(add), (call_result{result, GetParam().add_line}));
    }
}

TEST_P(protection_change_test, a_failed_removal_is_told_and_logged_and_clears_nothing) {
    for (const int result : {-1, -3, -4, 5, 1}) {
        expect_change(remove, result);
        expect_log(GetParam().tag, GetParam().function, GetParam().removal_log,
                   fill(GetParam().removal_log, list, result));
        EXPECT_EQ(set(remove), (call_result{result, GetParam().removal_line}));
    }
}

TEST_P(protection_change_test, a_good_removal_clears_the_exceptions_of_each_object_silently) {
    expect_change(remove, 0);
    for (std::size_t object = 0; object < 3; ++object) {
        expect_clearing(object, 0);
    }
    EXPECT_EQ(set(remove), (call_result{0, ""}));
}

TEST_P(protection_change_test, nothing_to_clear_is_no_failure_but_the_result_where_it_comes_last) {
    expect_change(remove, 0);
    expect_clearing(0, -3);
    expect_clearing(1, 0);
    expect_clearing(2, -3);
    EXPECT_EQ(set(remove), (call_result{-3, ""}));

    expect_change(remove, 0);
    expect_clearing(0, -3);
    expect_clearing(1, -3);
    expect_clearing(2, 0);
    EXPECT_EQ(set(remove), (call_result{0, ""}));
}

TEST_P(protection_change_test, a_failed_clearing_is_told_and_logged_and_does_not_stop_the_others) {
    for (const int result : {-1, -2, -4, 3}) {
        expect_change(remove, 0);
        expect_failed_clearing(0, result);
        expect_failed_clearing(1, result);
        expect_clearing(2, 0);
        EXPECT_EQ(set(remove), (call_result{0, clearing_line(0) + clearing_line(1)}));
    }
}

TEST_P(protection_change_test, the_result_is_that_of_the_last_clearing) {
    expect_change(remove, 0);
    expect_clearing(0, 0);
    expect_failed_clearing(1, -5);
    expect_failed_clearing(2, 7);
    EXPECT_EQ(set(remove), (call_result{7, clearing_line(1) + clearing_line(2)}));

    expect_change(remove, 0);
    expect_failed_clearing(0, -5);
    expect_clearing(1, 0);
    expect_clearing(2, -3);
    EXPECT_EQ(set(remove), (call_result{-3, clearing_line(0)}));
}

INSTANTIATE_TEST_SUITE_P(operations, protection_change_test, testing::ValuesIn(change_rows),
                         [](const auto& row) { return row.param.function; });

}  // namespace
