// SPDX-License-Identifier: Apache-2.0
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

#include "framework/module_base.h"
#include "services/replaced_file.h"
#include "support/module_test.h"
#include "support/scratch_dir.h"

namespace {

using testing::Return;

/// A process that lives as long as the object.
class live_process {
public:
    live_process() {
        std::string program = "sleep";
        std::string seconds = "600";
        const std::array<char*, 3> words = {program.data(), seconds.data(), nullptr};
        if (posix_spawnp(&pid_, program.c_str(), nullptr, nullptr, words.data(), environ) != 0) {
            throw std::runtime_error("no process to look at");
        }
    }
    live_process(const live_process&) = delete;
    live_process& operator=(const live_process&) = delete;
    ~live_process() {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }

    std::uint32_t pid() const { return static_cast<std::uint32_t>(pid_); }
    std::string base_path() const { return "/proc/" + std::to_string(pid_); }
    std::string attribute_path() const { return base_path() + "/attr/vemu/path"; }

private:
    pid_t pid_ = 0;
};

/// The program path, or the text of the failure.
struct identity {
    std::string path;
    std::string failure;
};

bool operator==(const identity& left, const identity& right) {
    return left.path == right.path && left.failure == right.failure;
}

void PrintTo(const identity& one, std::ostream* stream) {
    *stream << "[" << one.path << "] " << one.failure;
}

class process_identity_test : public module_test {
protected:
    void expect_exists(const std::string& base_path, int answer) {
        EXPECT_CALL(service, path_is_exist(base_path + "/exe")).WillOnce(Return(answer));
    }

    /// Expects the result, with nothing on the screen.
    void expect_identity(std::uint32_t pid, const identity& expected) {
        COrvexBase base;
        identity got;
        EXPECT_EQ(capture([&] {
                      try {
                          got.path = base.get_path_by_pid(pid);
                      } catch (const std::runtime_error& error) {
                          got.failure = error.what();
                      }
                      return 0;
                  }),
                  (call_result{0, ""}));
        EXPECT_EQ(got, expected);
    }

    scratch_dir attributes;
};

const identity no_process = {"", "进程不存在!"};
const identity no_program = {"", "内核进程, 无法获取程序路径!"};
const identity no_attribute_file = {"", "打开attr/vemu/path文件失败!"};
const identity empty_attribute_file = {"", "读取attr/vemu/path文件失败内容失败!"};
const identity no_standard_form = {"", "获取系统标准路径失败!"};

/// Expects that the attribute file's `content` goes to the library, which answers with `standard_form`.
class attribute_file_test : public process_identity_test {
protected:
    void expect_normalised(const std::string& content, const std::string& passed, const maybe_text& standard_form,
                           const identity& expected) {
        const live_process process;
        const replaced_file file(process.attribute_path(), attributes.write("path", content));
        expect_exists(process.base_path(), 1);
        EXPECT_CALL(service, pathNormalize(passed)).WillOnce(Return(standard_form));
        expect_identity(process.pid(), expected);
    }
};

TEST_F(attribute_file_test, tells_the_path_and_the_link_does_not) {
    expect_normalised("/opt/named", "/opt/named", "/opt/standard", {"/opt/standard", ""});
}

TEST_F(attribute_file_test, is_not_trimmed) {
    expect_normalised("  /opt/named\n\n", "  /opt/named\n\n", "/opt/named", {"/opt/named", ""});
}

TEST_F(attribute_file_test, is_read_whole) {
    const std::string path = "/" + std::string(5000, 'x');
    expect_normalised(path, path, path, {path, ""});
}

TEST_F(attribute_file_test, ends_at_a_nul_for_the_library) {
    expect_normalised(std::string("/opt/named\0more", 15), "/opt/named", "/opt/named", {"/opt/named", ""});
}

TEST_F(attribute_file_test, without_standard_form_is_a_failure) {
    expect_normalised("/opt/named", "/opt/named", std::nullopt, no_standard_form);
}

TEST_F(attribute_file_test, with_an_empty_standard_form_gives_an_empty_path) {
    expect_normalised("/opt/named", "/opt/named", "", {"", ""});
}

TEST_F(attribute_file_test, empty_is_a_failure) {
    const live_process process;
    const replaced_file file(process.attribute_path(), attributes.write("path", ""));
    expect_exists(process.base_path(), 1);
    expect_identity(process.pid(), empty_attribute_file);
}

TEST_F(attribute_file_test, absent_is_a_failure) {
    const live_process process;
    const replaced_file file(process.attribute_path(), attributes.path() + "/missing");
    expect_exists(process.base_path(), 1);
    expect_identity(process.pid(), no_attribute_file);
}

TEST_F(process_identity_test, missing_process_is_a_failure) {
    expect_exists("/proc/4194305", 0);
    expect_identity(4194305, no_process);
}

TEST_F(process_identity_test, any_answer_but_1_means_no_process) {
    const live_process process;
    for (const int answer : {0, 2, -1}) {
        expect_exists(process.base_path(), answer);
        expect_identity(process.pid(), no_process);
    }
}

TEST_F(process_identity_test, number_is_written_without_sign) {
    expect_exists("/proc/4294967295", 0);
    expect_identity(4294967295U, no_process);
    expect_exists("/proc/0", 0);
    expect_identity(0, no_process);
}

TEST_F(process_identity_test, link_that_cannot_be_read_means_no_program) {
    expect_exists("/proc/4194305", 1);
    expect_identity(4194305, no_program);
}

/// A process that has ended and that nobody has waited for: like a kernel thread it is there and runs no program.
class ended_process {
public:
    ended_process() : pid_(fork()) {
        if (pid_ == 0) {
            _exit(0);
        }
        siginfo_t end{};
        if (pid_ < 0 || waitid(P_PID, static_cast<id_t>(pid_), &end, WEXITED | WNOWAIT) != 0) {
            throw std::runtime_error("no process that has ended");
        }
    }
    ended_process(const ended_process&) = delete;
    ended_process& operator=(const ended_process&) = delete;
    ~ended_process() { waitpid(pid_, nullptr, 0); }

    std::uint32_t pid() const { return static_cast<std::uint32_t>(pid_); }

private:
    pid_t pid_;
};

TEST_F(process_identity_test, process_without_a_program_has_no_path) {
    const ended_process process;
    expect_exists("/proc/" + std::to_string(process.pid()), 1);
    expect_identity(process.pid(), no_program);
}

}  // namespace
