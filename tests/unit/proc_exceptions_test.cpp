// SPDX-License-Identifier: Apache-2.0
// How `proc` resolves a protected program and its exceptions. What is done with them is in exception_change_test.cpp.
#include <stdexcept>

#include "modules/proc/proc_module.h"
#include "support/given_variable.h"
#include "unit/real_path_test.h"

namespace {

using testing::Return;
using testing::Throw;

/// A module for which the test knows the packages, the running processes and the exceptions.
class known_proc : public COrvexProc {
public:
    MOCK_METHOD(bool, is_pkg_installed, (const std::string& pkg), (override));
    MOCK_METHOD(std::string, get_path_by_pid, (std::uint32_t pid), (override));
    MOCK_METHOD(bool, is_proc_except_in_policy, (const std::string& path, const std::string& except_object),
                (override));
};

class proc_exceptions_test : public real_path_test {
protected:
    call_result set_by_path(std::int32_t first_kind, const std::string& first_object, std::int32_t except_kind,
                            const std::string& except_object, int action) {
        return capture(
            [&] { return proc.set_proc_except_policy(first_kind, first_object, except_kind, except_object, action); });
    }

    call_result set_by_pid(const std::string& pid, std::int32_t except_kind, const std::string& except_object,
                           int action) {
        return capture([&] { return proc.set_proc_except_policy_by_pid(pid, except_kind, except_object, action); });
    }

    void expect_installed(const std::string& pkg, bool answer) {
        EXPECT_CALL(proc, is_pkg_installed(pkg)).WillOnce(Return(answer));
    }

    /// Expects that these exceptions are looked for and need the change.
    void expect_asked(const std::string& path, const texts& exceptions, int action) {
        for (const std::string& exception : exceptions) {
            EXPECT_CALL(proc, is_proc_except_in_policy(path, exception)).WillOnce(Return(action == remove));
        }
    }

    void expect_done_by_path(const std::string& path, std::int32_t except_kind, const texts& exceptions, int action) {
        expect_asked(path, exceptions, action);
        if (action == add) {
            EXPECT_CALL(service, orvex_scene_taskctl_exception_multi_add(1, path, except_kind, exceptions))
                .WillOnce(Return(0));
        } else {
            EXPECT_CALL(service, orvex_scene_taskctl_exception_multi_remove(1, path, except_kind, exceptions))
                .WillOnce(Return(0));
        }
    }

    void expect_done_by_pid(std::int32_t pid, const std::string& path, std::int32_t except_kind,
                            const texts& exceptions, int action) {
        expect_asked(path, exceptions, action);
        if (action == add) {
            EXPECT_CALL(service, orvex_scene_taskctl_exception_multi_add_by_pid(pid, except_kind, exceptions))
                .WillOnce(Return(0));
        } else {
            EXPECT_CALL(service, orvex_scene_taskctl_exception_multi_remove_by_pid(pid, except_kind, exceptions))
                .WillOnce(Return(0));
        }
    }

    testing::StrictMock<known_proc> proc;
};

// The protected program by its path. The exception is a package, which passes.

TEST_F(proc_exceptions_test, any_first_kind_but_a_file_is_refused_before_the_path_is_looked_at) {
    for (const int action : {add, remove}) {
        for (const std::int32_t kind : {0, 2, 3, 4, -1}) {
            EXPECT_EQ(set_by_path(kind, a, 3, "p", action),
                      (call_result{-1, "添加例外程序时,防杀死进程只允许是文件路径或者pid!\n"}))
                << kind;
        }
    }
}

TEST_F(proc_exceptions_test, a_path_that_exists_stands_for_its_real_path_and_no_blacklist_is_asked) {
    for (const int action : {add, remove}) {
        for (const int answer : {0, 2, -1}) {
            expect_exists(link);
            expect_dir(a, answer);
            expect_installed("p", true);
            expect_done_by_path(a, 3, {"p"}, action);
            EXPECT_EQ(set_by_path(1, link, 3, "p", action), (call_result{0, ""})) << action << answer;
        }
    }
}

TEST_F(proc_exceptions_test, a_path_that_does_not_exist_is_refused_at_a_removal_too) {
    for (const int action : {add, remove}) {
        for (const int answer : {0, 2, -1}) {
            expect_exists("/gone %s", answer);
            EXPECT_EQ(set_by_path(1, "/gone %s", 3, "p", action), (call_result{-1, "文件路径[/gone %s]不存在!\n"}));
        }
    }
}

TEST_F(proc_exceptions_test, a_path_without_a_real_path_is_refused) {
    for (const int action : {add, remove}) {
        expect_exists(gone);
        EXPECT_EQ(set_by_path(1, gone, 3, "p", action), (call_result{-1, "获取文件[" + gone + "]的实际路径失败!\n"}));
    }
}

TEST_F(proc_exceptions_test, a_directory_is_refused_with_its_real_path) {
    for (const int action : {add, remove}) {
        expect_exists(link);
        expect_dir(a, 1);
        EXPECT_EQ(set_by_path(1, link, 3, "p", action), (call_result{-1, "路径[" + a + "]是目录, 请输入文件路径\n"}));
    }
}

TEST_F(proc_exceptions_test, the_path_is_one_object_with_its_colons_and_its_tilde) {
    const given_variable home("HOME", dir.path().c_str());
    for (const int action : {add, remove}) {
        for (const std::string& path : {a + ":" + b, std::string("~/a"), std::string()}) {
            expect_exists(path, 0);
            EXPECT_EQ(set_by_path(1, path, 3, "p", action), (call_result{-1, "文件路径[" + path + "]不存在!\n"}));
        }
    }
}

// The protected program by its process.

TEST_F(proc_exceptions_test, a_process_stands_for_its_program_and_no_blacklist_is_asked) {
    for (const int action : {add, remove}) {
        for (const auto& [text, pid] :
             {std::pair("12", 12), std::pair("0012", 12), std::pair("2147483647", 2147483647), std::pair("0", 0)}) {
            EXPECT_CALL(proc, get_path_by_pid(static_cast<std::uint32_t>(pid))).WillOnce(Return("/opt/program"));
            expect_installed("p", true);
            expect_done_by_pid(pid, "/opt/program", 3, {"p"}, action);
            EXPECT_EQ(set_by_pid(text, 3, "p", action), (call_result{0, ""})) << text << action;
        }
    }
}

TEST_F(proc_exceptions_test, the_process_is_one_value_of_digits) {
    for (const int action : {add, remove}) {
        for (const std::string text : {"1:2", "12a", "", " 1", "-1", "+1", "%s"}) {
            EXPECT_EQ(set_by_pid(text, 3, "p", action), (call_result{-1, "pid[" + text + "]错误\n"}));
        }
    }
}

TEST_F(proc_exceptions_test, a_number_out_of_range_is_invalid) {
    for (const int action : {add, remove}) {
        for (const std::string text : {"2147483648", "99999999999999999999999"}) {
            EXPECT_EQ(set_by_pid(text, 3, "p", action),
                      (call_result{-1, "无效的pid[" + text + "], 输入无效或超出pid范围!\n"}));
        }
    }
}

TEST_F(proc_exceptions_test, a_process_whose_program_is_not_found_is_refused) {
    for (const int action : {add, remove}) {
        EXPECT_CALL(proc, get_path_by_pid(12)).WillOnce(Throw(std::runtime_error("进程不存在!")));
        EXPECT_EQ(set_by_pid("0012", 3, "p", action),
                  (call_result{-1, "获取进程[12]的执行程序路径错误: 进程不存在!\n"}));

        // Any exception of the standard family.
        EXPECT_CALL(proc, get_path_by_pid(0)).WillOnce(Throw(std::out_of_range("other %s")));
        EXPECT_EQ(set_by_pid("0", 3, "p", action), (call_result{-1, "获取进程[0]的执行程序路径错误: other %s\n"}));
    }
}

TEST_F(proc_exceptions_test, what_is_no_standard_exception_passes) {
    EXPECT_CALL(proc, get_path_by_pid(1)).WillOnce(Throw(7));
    EXPECT_THROW(proc.set_proc_except_policy_by_pid("1", 3, "p", add), int);
}

// The exceptions: the same in both operations, at an add and at a removal.

struct exception_case {
    const char* name;
    bool is_by_pid;
    bool is_add;
};

void PrintTo(const exception_case& one, std::ostream* stream) {
    *stream << one.name;
}

class proc_exception_objects_test : public proc_exceptions_test, public testing::WithParamInterface<exception_case> {
protected:
    /// Sets the exceptions of the program, which is found.
    call_result set_exceptions(std::int32_t kind, const std::string& exceptions) {
        return GetParam().is_by_pid ? set_by_pid("12", kind, exceptions, action())
                                    : set_by_path(1, program, kind, exceptions, action());
    }

    void expect_program() {
        if (GetParam().is_by_pid) {
            EXPECT_CALL(proc, get_path_by_pid(12)).WillOnce(Return(program));
        } else {
            expect_exists(program);
            expect_dir(program, 0);
        }
    }

    void expect_done(std::int32_t kind, const texts& exceptions) {
        if (GetParam().is_by_pid) {
            expect_done_by_pid(12, program, kind, exceptions, action());
        } else {
            expect_done_by_path(program, kind, exceptions, action());
        }
    }

    static int action() { return GetParam().is_add ? add : remove; }

    const std::string program = dir.write("program", "");
};

TEST_P(proc_exception_objects_test, without_a_piece_nothing_is_done) {
    for (const std::int32_t kind : {1, 2, 3}) {
        for (const char* exceptions : {"", ":", "::"}) {
            expect_program();
            EXPECT_EQ(set_exceptions(kind, exceptions), (call_result{0, ""})) << kind << exceptions;
        }
    }
}

TEST_P(proc_exception_objects_test, a_file_stands_for_its_real_path) {
    for (const int answer : {0, 2, -1}) {
        expect_program();
        expect_exists(link);
        expect_dir(a, answer);
        expect_done(1, {a});
        EXPECT_EQ(set_exceptions(1, link), (call_result{0, ""})) << answer;
    }
}

TEST_P(proc_exception_objects_test, a_directory_stands_for_its_real_path_without_a_pattern) {
    expect_program();
    expect_exists(link);
    expect_dir(a, 1);
    expect_done(2, {a});
    EXPECT_EQ(set_exceptions(2, link), (call_result{0, ""}));
}

TEST_P(proc_exception_objects_test, what_does_not_exist_is_dropped) {
    for (const int answer : {0, 2, -1}) {
        expect_program();
        expect_exists("/gone %s", answer);
        EXPECT_EQ(set_exceptions(1, "/gone %s"), (call_result{0, "文件路径[/gone %s]不存在!\n"})) << answer;

        expect_program();
        expect_exists("12", answer);
        EXPECT_EQ(set_exceptions(2, "12"), (call_result{0, "目录路径[12]不存在!\n"})) << answer;
    }
}

TEST_P(proc_exception_objects_test, what_has_no_real_path_is_dropped) {
    expect_program();
    expect_exists(gone);
    EXPECT_EQ(set_exceptions(1, gone), (call_result{0, "获取文件[" + gone + "]的实际路径失败!\n"}));

    expect_program();
    expect_exists(gone);
    EXPECT_EQ(set_exceptions(2, gone), (call_result{0, "获取目录[" + gone + "]的实际路径失败!\n"}));
}

TEST_P(proc_exception_objects_test, the_wrong_kind_is_dropped_with_the_real_path) {
    expect_program();
    expect_exists(link);
    expect_dir(a, 1);
    EXPECT_EQ(set_exceptions(1, link), (call_result{0, "路径[" + a + "]是目录, 请输入文件路径\n"}));

    for (const int answer : {0, 2, -1}) {
        expect_program();
        expect_exists(link);
        expect_dir(a, answer);
        EXPECT_EQ(set_exceptions(2, link), (call_result{0, "路径[" + a + "]非目录, 请输入目录路径\n"})) << answer;
    }
}

TEST_P(proc_exception_objects_test, the_home_directory_stands_for_the_tilde_in_lines_and_calls) {
    const given_variable home("HOME", dir.path().c_str());
    expect_program();
    expect_exists(gone, 0);
    expect_exists(a);
    expect_dir(a, 0);
    expect_done(1, {a});
    EXPECT_EQ(set_exceptions(1, "~/gone:~/a"), (call_result{0, "文件路径[" + gone + "]不存在!\n"}));

    expect_program();
    expect_exists(gone, 0);
    expect_exists(dir.path());
    expect_dir(dir.path(), 1);
    expect_done(2, {dir.path()});
    EXPECT_EQ(set_exceptions(2, "~/gone:~"), (call_result{0, "目录路径[" + gone + "]不存在!\n"}));
}

TEST_P(proc_exception_objects_test, a_dropped_piece_does_not_stop_the_others) {
    expect_program();
    expect_exists("/gone", 0);
    expect_exists(a);
    expect_dir(a, 1);
    for (int i = 0; i < 2; ++i) {
        expect_exists(b);
        expect_dir(b, 0);
    }
    expect_done(1, {b, b});
    EXPECT_EQ(set_exceptions(1, "/gone:" + a + "::" + b + ":" + b),
              (call_result{0, "文件路径[/gone]不存在!\n路径[" + a + "]是目录, 请输入文件路径\n"}));
}

TEST_P(proc_exception_objects_test, installed_packages_go_on) {
    expect_program();
    expect_installed("hesa-guard", true);
    expect_installed("~", true);
    expect_done(3, {"hesa-guard", "~"});
    EXPECT_EQ(set_exceptions(3, "hesa-guard:~"), (call_result{0, ""}));
}

TEST_P(proc_exception_objects_test, one_package_that_is_not_installed_ends_the_call_at_a_removal_too) {
    expect_program();
    expect_installed("hesa-guard", true);
    expect_installed("no%s", false);
    EXPECT_EQ(set_exceptions(3, "hesa-guard:no%s:other"), (call_result{-1, "软件包[no%s]未安装, 不支持设置\n"}));
}

TEST_P(proc_exception_objects_test, any_other_kind_is_refused_without_pieces_too) {
    for (const std::int32_t kind : {0, 4, -1}) {
        for (const char* exceptions : {"/x", ""}) {
            expect_program();
            EXPECT_EQ(set_exceptions(kind, exceptions),
                      (call_result{-1, "添加例外程序时, 例外程序只允许是文件路径、目录或者软件包!\n"}))
                << kind;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(operations, proc_exception_objects_test,
                         testing::Values(exception_case{"add_by_path", false, true},
                                         exception_case{"remove_by_path", false, false},
                                         exception_case{"add_by_pid", true, true},
                                         exception_case{"remove_by_pid", true, false}),
                         [](const auto& one) { return one.param.name; });

}  // namespace
