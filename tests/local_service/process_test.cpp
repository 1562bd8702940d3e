// SPDX-License-Identifier: Apache-2.0
// Process kill protection.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "local_store.h"
#include "service/taskctl.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class process_protection : public local_store {
protected:
    void SetUp() override {
        local_store::SetUp();
        const std::string program = path("sleep");
        std::filesystem::copy_file(std::filesystem::canonical("/bin/sleep"), program);
        process_ = fork();
        if (process_ == 0) {
            execl(program.c_str(), "sleep", "100", nullptr);
            _exit(127);
        }
        while (std::filesystem::read_symlink("/proc/" + std::to_string(process_) + "/exe") != program) {
            usleep(1000);
        }
    }
    void TearDown() override {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        local_store::TearDown();
    }

    static std::vector<std::string> programs() { return fetch_list(orvex_scene_taskctl_get_policy); }
    static int protect(std::initializer_list<std::string> paths) {
        batch texts(paths);
        return orvex_scene_taskctl_multi_add_by_path(texts.data(), texts.count());
    }

    /// Returns the objects with exceptions, each followed by its exceptions.
    static std::vector<std::string> exceptions() {
        std::uint64_t count = 0;
        taskctl_exception_record* array = orvex_scene_taskctl_exception_get_policy(&count);
        std::vector<std::string> texts;
        for (std::uint64_t index = 0; index < count; ++index) {
            texts.emplace_back(array[index].resource);
            texts.insert(texts.end(), array[index].exceptions, array[index].exceptions + array[index].exception_count);
        }
        orvex_scene_taskctl_exception_policy_free(array, count);
        return texts;
    }

    pid_t process() const { return process_; }

private:
    pid_t process_ = 0;
};

TEST_F(process_protection, lists_programs_in_the_order_of_their_adding) {
    EXPECT_EQ(protect({"/b", "/a"}), 0);
    EXPECT_THAT(programs(), ElementsAre("/b", "/a"));
    batch removed{"/b"};
    EXPECT_EQ(orvex_scene_taskctl_multi_remove_by_path(removed.data(), 1), 0);
    EXPECT_NE(orvex_scene_taskctl_multi_remove_by_path(removed.data(), 1), 0);
    EXPECT_THAT(programs(), ElementsAre("/a"));
}

TEST_F(process_protection, finds_the_program_of_a_process) {
    std::int32_t pids[] = {process(), process()};
    EXPECT_EQ(orvex_scene_taskctl_multi_add_by_pid(pids, 2), 0);
    EXPECT_THAT(programs(), ElementsAre(path("sleep")));
    EXPECT_EQ(orvex_scene_taskctl_multi_remove_by_pid(pids, 2), 0);
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(process_protection, takes_all_processes_of_a_batch_or_none) {
    std::int32_t pids[] = {process(), 0};
    EXPECT_NE(orvex_scene_taskctl_multi_add_by_pid(pids, 2), 0);
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_NE(orvex_scene_taskctl_multi_add_by_pid(nullptr, 1), 0);
    EXPECT_NE(orvex_scene_taskctl_multi_add_by_pid(pids, -1), 0);
}

TEST_F(process_protection, excepts_files_directories_and_packages) {
    protect({"/a"});
    batch file{"/usr/bin/kill"};
    batch dir{"/usr/sbin"};
    batch package{"procps"};
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/a", orvex_kind_file, file.data(), 1), 0);
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/a", orvex_kind_dir, dir.data(), 1), 0);
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/a", orvex_kind_pkg, package.data(), 1), 0);
    EXPECT_THAT(exceptions(), ElementsAre("/a", "/usr/bin/kill", "/usr/sbin/*", "procps"));
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_remove(orvex_kind_file, "/a", orvex_kind_dir, dir.data(), 1), 0);
    EXPECT_THAT(exceptions(), ElementsAre("/a", "/usr/bin/kill", "procps"));
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy("/a"), 0);
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy("/a"), -3);
}

TEST_F(process_protection, excepts_nothing_from_an_unprotected_program) {
    batch file{"/usr/bin/kill"};
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add(orvex_kind_file, "/a", orvex_kind_file, file.data(), 1), -3);
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_remove(orvex_kind_file, "/a", orvex_kind_file, file.data(), 1), -3);
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add_by_pid(process(), orvex_kind_file, file.data(), 1), -3);
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_remove_by_pid(process(), orvex_kind_file, file.data(), 1), -3);
}

TEST_F(process_protection, keeps_exceptions_by_process_under_its_program) {
    protect({path("sleep")});
    batch file{"/usr/bin/kill", "/usr/bin/pkill"};
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add_by_pid(process(), orvex_kind_file, file.data(), 2), 0);
    EXPECT_THAT(exceptions(), ElementsAre(path("sleep"), "/usr/bin/kill", "/usr/bin/pkill"));
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_remove_by_pid(process(), orvex_kind_file, file.data(), 1), 0);
    EXPECT_THAT(exceptions(), ElementsAre(path("sleep"), "/usr/bin/pkill"));
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy_by_pid(process()), 0);
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy_by_pid(process()), -3);
}

TEST_F(process_protection, fails_for_a_process_that_does_not_exist) {
    batch file{"/usr/bin/kill"};
    EXPECT_EQ(orvex_scene_taskctl_exception_multi_add_by_pid(-1, orvex_kind_file, file.data(), 1), -1);
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy_by_pid(-1), -1);
    EXPECT_EQ(last_error(), "process -1 runs no program that can be named: No such file or directory");
}

TEST_F(process_protection, is_changed_by_root_and_the_security_administrator_alone) {
    std::int32_t pids[] = {process()};
    become(1000);
    EXPECT_EQ(protect({"/a"}), -4);
    EXPECT_EQ(orvex_scene_taskctl_multi_add_by_pid(pids, 1), -4);
    EXPECT_EQ(orvex_scene_taskctl_exception_clear_resource_policy_by_pid(process()), -4);
    become(600);
    EXPECT_EQ(orvex_scene_taskctl_multi_add_by_pid(pids, 1), 0);
}

}  // namespace
