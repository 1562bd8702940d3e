// SPDX-License-Identifier: Apache-2.0
// Which processes `proc` accepts for the protection of their programs and for its end. What becomes of the accepted
// ones is in protection_change_test.cpp.
#include <stdexcept>

#include "modules/proc/proc_module.h"
#include "support/module_test.h"

namespace {

using testing::Return;
using testing::Throw;

constexpr int add = 1;
constexpr int remove = 3;

/// A module for which the test knows the list and the running processes.
class known_proc : public COrvexProc {
public:
    MOCK_METHOD(std::string, get_path_by_pid, (std::uint32_t pid), (override));
    MOCK_METHOD(bool, is_proc_in_policy, (const std::string& path), (override));
};

class protection_pid_test : public module_test {
protected:
    void expect_listed(const std::string& path, bool answer) {
        EXPECT_CALL(proc, is_proc_in_policy(path)).WillOnce(Return(answer));
    }

    call_result set(const std::string& pids, int action) {
        return capture([&] { return proc.set_proc_policy_by_pid(pids, action); });
    }

    void expect_program(std::uint32_t pid, const std::string& path) {
        EXPECT_CALL(proc, get_path_by_pid(pid)).WillOnce(Return(path));
    }

    void expect_done(const std::vector<std::int32_t>& pids, int action) {
        if (action == add) {
            EXPECT_CALL(service, orvex_scene_taskctl_multi_add_by_pid(pids)).WillOnce(Return(0));
            return;
        }
        EXPECT_CALL(service, orvex_scene_taskctl_multi_remove_by_pid(pids)).WillOnce(Return(0));
        for (const std::int32_t pid : pids) {
            EXPECT_CALL(service, orvex_scene_taskctl_exception_clear_resource_policy_by_pid(pid)).WillOnce(Return(0));
        }
    }

    testing::StrictMock<known_proc> proc;
};

TEST_F(protection_pid_test, without_a_piece_nothing_is_done) {
    for (const char* pids : {"", ":", "::"}) {
        EXPECT_EQ(set(pids, add), (call_result{0, ""})) << pids;
        EXPECT_EQ(set(pids, remove), (call_result{0, ""})) << pids;
    }
}

TEST_F(protection_pid_test, a_process_that_passes_goes_to_the_library_and_no_blacklist_is_asked) {
    for (const int action : {add, remove}) {
        for (const auto& [text, pid] :
             {std::pair("12", 12), std::pair("0012", 12), std::pair("2147483647", 2147483647), std::pair("0", 0)}) {
            expect_program(static_cast<std::uint32_t>(pid), "/opt/program");
            expect_listed("/opt/program", action == remove);
            expect_done({pid}, action);
            EXPECT_EQ(set(text, action), (call_result{0, ""})) << text << action;
        }
    }
}

TEST_F(protection_pid_test, what_is_not_all_digits_is_wrong) {
    for (const int action : {add, remove}) {
        for (const std::string text : {"12a", "-1", "+1", " 1", "1 ", "0x1", "%s", "~", "１"}) {
            EXPECT_EQ(set(text, action), (call_result{0, "pid[" + text + "]错误\n"})) << text;
        }
    }
}

TEST_F(protection_pid_test, a_number_out_of_range_is_invalid) {
    for (const int action : {add, remove}) {
        for (const std::string text : {"2147483648", "4294967296", "99999999999999999999999"}) {
            EXPECT_EQ(set(text, action), (call_result{0, "无效的pid[" + text + "], 输入无效或超出pid范围!\n"})) << text;
        }
    }
}

TEST_F(protection_pid_test, a_process_whose_program_is_not_found_is_refused_at_a_removal_too) {
    for (const int action : {add, remove}) {
        EXPECT_CALL(proc, get_path_by_pid(12)).WillOnce(Throw(std::runtime_error("进程不存在!")));
        EXPECT_EQ(set("0012", action), (call_result{0, "获取进程[12]的执行程序路径错误: 进程不存在!\n"})) << action;

        // Any exception of the standard family.
        EXPECT_CALL(proc, get_path_by_pid(0)).WillOnce(Throw(std::out_of_range("other %s")));
        EXPECT_EQ(set("0", action), (call_result{0, "获取进程[0]的执行程序路径错误: other %s\n"})) << action;
    }
}

TEST_F(protection_pid_test, only_an_invalid_argument_is_caught_from_the_number) {
    class counting_proc : public COrvexProc {
    public:
        MOCK_METHOD(int, parse_pid, (const std::string& text), (override));
    };
    testing::StrictMock<counting_proc> counting;
    EXPECT_CALL(counting, parse_pid("1")).WillOnce(Throw(std::invalid_argument("the text")));
    EXPECT_EQ(capture([&] { return counting.set_proc_policy_by_pid("1", add); }),
              (call_result{0, "无效的pid[1], the text\n"}));

    EXPECT_CALL(counting, parse_pid("1")).WillOnce(Throw(std::out_of_range("passes")));
    EXPECT_THROW(counting.set_proc_policy_by_pid("1", add), std::out_of_range);
}

TEST_F(protection_pid_test, pieces_and_digits_are_asked_of_the_object) {
    class answering_proc : public COrvexProc {
    public:
        MOCK_METHOD(std::vector<std::string>, split_string, (const std::string& text, char delimiter), (override));
        MOCK_METHOD(bool, is_all_digits, (const std::string& text), (override));
    };
    testing::StrictMock<answering_proc> answering;
    EXPECT_CALL(answering, split_string("1/2", ':')).WillOnce(Return(std::vector<std::string>{"2"}));
    EXPECT_CALL(answering, is_all_digits("2")).WillOnce(Return(false));
    EXPECT_EQ(capture([&] { return answering.set_proc_policy_by_pid("1/2", add); }), (call_result{0, "pid[2]错误\n"}));
}

TEST_F(protection_pid_test, what_is_no_standard_exception_passes) {
    EXPECT_CALL(proc, get_path_by_pid(1)).WillOnce(Throw(7));
    EXPECT_THROW(proc.set_proc_policy_by_pid("1", add), int);
}

TEST_F(protection_pid_test, a_program_in_the_wanted_state_is_refused_with_the_number_and_the_path) {
    expect_program(12, "/opt/pro gram");
    expect_listed("/opt/pro gram", true);
    EXPECT_EQ(set("012", add),
              (call_result{0, "进程[12]对应路径[/opt/pro gram]已存在进程防杀死列表中, 无需重复添加!\n"}));

    expect_program(12, "/opt/pro gram");
    expect_listed("/opt/pro gram", false);
    EXPECT_EQ(set("012", remove), (call_result{0, "进程[12]对应路径[/opt/pro gram]不在进程防杀死列表中, 无需删除!\n"}));
}

TEST_F(protection_pid_test, a_refused_process_does_not_stop_the_others) {
    for (const int action : {add, remove}) {
        expect_program(1, "/opt/one");
        expect_listed("/opt/one", action == remove);
        EXPECT_CALL(proc, get_path_by_pid(3)).WillOnce(Throw(std::runtime_error("内核进程, 无法获取程序路径!")));
        expect_program(2, "/opt/two");
        expect_listed("/opt/two", action == remove);
        expect_done({1, 2}, action);
        EXPECT_EQ(set("1:x:2147483648:3:2:", action),
                  (call_result{0,
                               "pid[x]错误\n"
                               "无效的pid[2147483648], 输入无效或超出pid范围!\n"
                               "获取进程[3]的执行程序路径错误: 内核进程, 无法获取程序路径!\n"}))
            << action;
    }
}

TEST_F(protection_pid_test, two_processes_of_one_program_are_both_accepted) {
    for (const int action : {add, remove}) {
        for (const std::uint32_t pid : {1U, 2U}) {
            expect_program(pid, "/opt/program");
            expect_listed("/opt/program", action == remove);
        }
        expect_done({1, 2}, action);
        EXPECT_EQ(set("1:2", action), (call_result{0, ""})) << action;
    }
}

}  // namespace
