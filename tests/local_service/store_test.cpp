// SPDX-License-Identifier: Apache-2.0
// The database behind it all: many processes, processes that die, and places that cannot be written.
#include "core/store.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "core/log.h"
#include "core/states.h"
#include "core/store_file.h"
#include "local_store.h"
#include "service/kmodctl.h"
#include "service/log.h"
#include "service/status.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class store : public local_store {
protected:
    static std::vector<std::string> modules() { return fetch_list(orvex_scene_kmodctl_get_policy); }

    /// Adds modules named `prefix` and a number, each by a call of its own. Returns how many calls failed.
    static int add_modules(const std::string& prefix, int count) {
        int failures = 0;
        for (int number = 0; number < count; ++number) {
            failures += orvex_scene_kmodctl_add_by_name((prefix + std::to_string(number)).c_str()) == 0 ? 0 : 1;
        }
        return failures;
    }

    std::vector<std::string> names_in(const std::string& name) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path(name))) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    static std::string check_integrity() {
        local_service::query check("PRAGMA integrity_check");
        check.next();
        return check.text(0);
    }
};

TEST_F(store, makes_its_directory_and_those_above_it) {
    setenv("ORVEX_LOCAL_STATE", path("one/two/three").c_str(), 1);
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    EXPECT_TRUE(std::filesystem::exists(path("one/two/three/orvex.db")));
}

TEST_F(store, lies_in_the_state_home_without_a_directory_of_its_own) {
    become(1000);
    unsetenv("ORVEX_LOCAL_STATE");
    setenv("XDG_STATE_HOME", path("xdg").c_str(), 1);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_TRUE(std::filesystem::exists(path("xdg/orvex-local/orvex.db")));
    unsetenv("XDG_STATE_HOME");
    setenv("HOME", path("home").c_str(), 1);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_TRUE(std::filesystem::exists(path("home/.local/state/orvex-local/orvex.db")));
}

TEST_F(store, is_the_one_of_the_present_state_directory) {
    orvex_scene_kmodctl_add_by_name("first");
    setenv("ORVEX_LOCAL_STATE", path("other").c_str(), 1);
    EXPECT_THAT(modules(), IsEmpty());
    orvex_scene_kmodctl_add_by_name("second");
    setenv("ORVEX_LOCAL_STATE", path("state").c_str(), 1);
    EXPECT_THAT(modules(), ElementsAre("first"));
}

TEST_F(store, keeps_what_one_process_wrote_for_the_next) {
    EXPECT_EQ(run_in_child([] { return orvex_scene_kmodctl_add_by_name("ext4"); }), 0);
    EXPECT_THAT(modules(), ElementsAre("ext4"));
}

TEST_F(store, shows_a_change_of_another_process_at_once) {
    int pipe_ends[2];
    ASSERT_EQ(pipe(pipe_ends), 0);
    const pid_t child = start_child([&] {
        char go = 0;
        close(pipe_ends[1]);
        return read(pipe_ends[0], &go, 1) == 1 ? orvex_scene_kmodctl_add_by_name("ext4") : 1;
    });
    EXPECT_THAT(modules(), IsEmpty());
    ASSERT_EQ(::write(pipe_ends[1], "x", 1), 1);
    ASSERT_EQ(wait_for(child), 0);
    EXPECT_THAT(modules(), ElementsAre("ext4"));
    close(pipe_ends[0]);
    close(pipe_ends[1]);
}

TEST_F(store, is_made_once_by_many_first_processes) {
    std::vector<pid_t> children;
    for (int number = 0; number < 8; ++number) {
        children.push_back(start_child([=] { return add_modules("m" + std::to_string(number) + "_", 5); }));
    }
    for (const pid_t child : children) {
        EXPECT_EQ(wait_for(child), 0);
    }
    EXPECT_EQ(modules().size(), 40U);
}

TEST_F(store, leaves_nothing_behind_but_its_files) {
    orvex_scene_kmodctl_add_by_name("ext4");
    setenv("ORVEX_LOCAL_STATE", path("other").c_str(), 1);
    orvex_scene_getstatus();
    EXPECT_THAT(names_in("state"), testing::UnorderedElementsAre("orvex.db", "orvex.db-wal", "orvex.db-shm"));
    EXPECT_EQ(std::filesystem::file_size(path("state/orvex.db-wal")), 0U);
}

TEST_F(store, loses_nothing_to_processes_that_write_at_the_same_time) {
    const pid_t first = start_child([] { return add_modules("first", 500); });
    const pid_t second = start_child([] { return add_modules("second", 500); });
    EXPECT_EQ(wait_for(first), 0);
    EXPECT_EQ(wait_for(second), 0);
    EXPECT_EQ(modules().size(), 1000U);
}

TEST_F(store, lets_a_writer_wait_for_another_before_it_reads) {
    const pid_t holder = start_child([&] {
        local_service::transaction held;
        write("held", "");
        usleep(200000);
        local_service::change("INSERT INTO entry (list, text) VALUES ('list', 'text')");
        held.commit();
        return 0;
    });
    const pid_t waiter = start_child([&] {
        while (!std::filesystem::exists(path("held"))) {
            usleep(1000);
        }
        local_service::transaction waiting;
        local_service::query count("SELECT COUNT(*) FROM entry");
        count.next();
        return static_cast<int>(count.number(0));
    });
    EXPECT_EQ(wait_for(holder), 0);
    EXPECT_EQ(wait_for(waiter), 1);
}

TEST_F(store, stays_whole_when_a_process_is_killed) {
    for (int round = 0; round < 10; ++round) {
        const std::string prefix = "round" + std::to_string(round) + "_";
        const pid_t child = start_child([&] { return add_modules(prefix, 100000); });
        usleep(static_cast<useconds_t>(1000 + round * 7000));
        kill(child, SIGKILL);
        EXPECT_EQ(wait_for(child), -1);
        EXPECT_EQ(run_in_child([] { return check_integrity() == "ok" ? 0 : 1; }), 0);
        EXPECT_EQ(run_in_child([&] { return orvex_scene_kmodctl_add_by_name((prefix + "after").c_str()); }), 0);
    }
    EXPECT_THAT(modules(), Contains("round9_after"));
}

TEST_F(store, cannot_be_used_by_a_forked_child_of_its_user) {
    orvex_scene_kmodctl_add_by_name("ext4");
    EXPECT_EQ(run_in_child([] { return orvex_scene_kmodctl_add_by_name("xfs") == 0 ? 1 : 0; }), 0);
    EXPECT_THAT(modules(), ElementsAre("ext4"));
}

TEST_F(store, is_reset_to_what_a_fresh_one_holds) {
    enable_framework();
    orvex_scene_set_module_status(3, 1);
    orvex_scene_kmodctl_add_by_name("ext4");
    orvex_log(18, "tag", "function", "text");
    local_service::reset_store();
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_THAT(modules(), IsEmpty());
    EXPECT_THAT(log_messages(), IsEmpty());
    enable_framework();
    EXPECT_EQ(orvex_scene_get_module_status(3), 0);
}

TEST_F(store, that_cannot_be_made_fails_every_call_cleanly) {
    setenv("ORVEX_LOCAL_STATE", (write("file", "") + "/state").c_str(), 1);
    std::uint64_t count = 0;
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_LT(orvex_scene_get_module_status(3), 0);
    EXPECT_LT(orvex_scene_set_module_status(3, 1), 0);
    EXPECT_EQ(orvex_scene_kmodctl_get_policy(&count), nullptr);
    EXPECT_EQ(count, 0U);
    EXPECT_THAT(last_error(), testing::HasSubstr("Not a directory"));
}

TEST_F(store, of_another_version_is_refused) {
    local_service::change("PRAGMA user_version = 99");
    setenv("ORVEX_LOCAL_STATE", path("other").c_str(), 1);
    orvex_scene_getstatus();
    setenv("ORVEX_LOCAL_STATE", path("state").c_str(), 1);
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), path("state/orvex.db") + ": a store of version 99, where version 2 is needed");
}

TEST_F(store, that_is_no_database_is_refused) {
    make_directory("state");
    write("state/orvex.db", std::string(5000, 'x'));
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), path("state/orvex.db") + ": file is not a database");
    std::filesystem::remove(path("state/orvex.db"));
    make_directory("state/orvex.db");
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), path("state/orvex.db") + ": not a file");
}

TEST_F(store, has_an_absolute_path) {
    setenv("ORVEX_LOCAL_STATE", "state", 1);
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), "ORVEX_LOCAL_STATE is no absolute path: state");
}

TEST_F(store, is_not_looked_for_where_everybody_may_write) {
    make_directory("state");
    ASSERT_EQ(chmod(path("state").c_str(), 01777), 0);
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), path("state") + ": not trusted, as everybody may write to it");
}

TEST_F(store, is_not_looked_for_in_a_directory_of_somebody_else) {
    make_directory("state");
    // Root gives the directory away; everybody else passes for another user.
    const uid_t owner = geteuid() == 0 ? 1234 : geteuid();
    ASSERT_EQ(chown(path("state").c_str(), owner, static_cast<gid_t>(-1)), 0);
    pretend_files_of(owner + 1);
    EXPECT_LT(orvex_scene_getstatus(), 0);
    EXPECT_EQ(last_error(), path("state") + ": not trusted, as it belongs to user " + std::to_string(owner));
    pretend_files_of(owner);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
}

TEST_F(store, is_looked_for_in_a_directory_of_nobody_only_where_nobody_may_be_anybody) {
    constexpr uid_t nobody = 65534;
    make_directory("state");
    if (geteuid() != 0 || chown(path("state").c_str(), nobody, static_cast<gid_t>(-1)) != 0) {
        pretend_files_of(nobody);
    }
    std::ifstream users("/proc/self/uid_map");
    std::string map;
    std::getline(users, map);
    EXPECT_EQ(orvex_scene_getstatus() < 0, map.find("4294967295") != std::string::npos);
}

TEST_F(store, is_read_in_a_user_namespace_that_does_not_know_its_owner) {
    constexpr int no_namespace = 77;
    EXPECT_EQ(run_in_child([] { return orvex_scene_getstatus(); }), 0);
    if (chown(path("state").c_str(), 1234, static_cast<gid_t>(-1)) != 0) {
        GTEST_SKIP() << "only root gives a directory away";
    }
    EXPECT_LT(orvex_scene_getstatus(), 0);
    const int result = run_in_child([] {
        if (unshare(CLONE_NEWUSER) != 0) {
            return no_namespace;
        }
        std::ofstream("/proc/self/uid_map") << "0 0 1\n";
        return orvex_scene_getstatus();
    });
    if (result == no_namespace) {
        GTEST_SKIP() << "this machine allows no user namespaces";
    }
    EXPECT_EQ(result, 0);
}

TEST_F(store, clears_the_drafts_of_the_dead_and_no_others) {
    make_directory("state");
    write("state/.new-dead01", "half a database");
    write("state/.new-dead01-wal", "");
    write("state/.news", "of somebody else");
    const int held = open(write("state/.new-living", "").c_str(), O_RDONLY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    EXPECT_THAT(names_in("state"),
                testing::UnorderedElementsAre("orvex.db", "orvex.db-wal", "orvex.db-shm", ".new-living", ".news"));
    close(held);
    setenv("ORVEX_LOCAL_STATE", path("other").c_str(), 1);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    setenv("ORVEX_LOCAL_STATE", path("state").c_str(), 1);
    enable_framework();
    EXPECT_THAT(names_in("state"), testing::Not(Contains(".new-living")));
}

TEST_F(store, is_not_replaced_where_a_part_of_it_cannot_be_removed) {
    make_directory("state");
    make_directory("state/orvex.db-wal");
    write("state/orvex.db", "no database");
    EXPECT_THROW(local_service::replace_store(), local_service::store_failure);
    EXPECT_EQ(std::filesystem::file_size(path("state/orvex.db")), std::string("no database").size());
}

TEST_F(store, is_made_without_a_remnant_where_standard_input_is_closed) {
    make_directory("state");
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    EXPECT_EQ(orvex_scene_getstatus(), 0);
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_THAT(names_in("state"), testing::UnorderedElementsAre("orvex.db", "orvex.db-wal", "orvex.db-shm"));
}

TEST_F(store, without_its_rows_of_states_refuses_to_change_them) {
    enable_framework();
    local_service::change("DELETE FROM module WHERE number = 3");
    EXPECT_LT(orvex_scene_set_module_status(3, 1), 0);
    EXPECT_THROW(local_service::simulate_restart(), local_service::store_failure);
    local_service::change("DELETE FROM framework");
    EXPECT_LT(setModuleStatusReboot_dbus(1, orvex_state_permissive, 11, 0, 1, 0), 0);
    const std::string fault = path("state/orvex.db") + ": damaged, as rows of states are missing";
    EXPECT_EQ(last_error(), fault);
    const std::vector<local_service::log_record> log = local_service::read_log_after(0);
    EXPECT_EQ(log.back().message, fault);
    EXPECT_EQ(log.back().function, "setModuleStatusReboot_dbus");
    EXPECT_EQ(log.back().tag, "local_service");
    EXPECT_EQ(log.back().level, 18);
    EXPECT_THROW(local_service::set_secret_scene(true), local_service::store_failure);
    EXPECT_LT(orvex_scene_getstatus(), 0);
}

/// A store that this user may read and nobody may write. Root could write it all the same and becomes somebody else.
class read_only_store : public store {
protected:
    static int run_as_reader(const std::function<int()>& work) {
        return run_in_child([&] {
            if (geteuid() == 0 && (setresgid(1234, 1234, 1234) != 0 || setresuid(1234, 1234, 1234) != 0)) {
                return 99;
            }
            become(1234);
            return work();
        });
    }

    void SetUp() override {
        store::SetUp();
        ASSERT_EQ(run_in_child([] { return orvex_scene_kmodctl_add_by_name("ext4"); }), 0);
        for (const char* name : {"state/orvex.db", "state/orvex.db-wal", "state/orvex.db-shm"}) {
            ASSERT_EQ(chmod(path(name).c_str(), 0444), 0);
        }
        ASSERT_EQ(chmod(path("state").c_str(), 0555), 0);
        ASSERT_EQ(chmod(directory().c_str(), 0755), 0);
    }
    void TearDown() override {
        chmod(path("state").c_str(), 0755);
        store::TearDown();
    }
};

TEST_F(read_only_store, answers_reads) {
    EXPECT_EQ(run_as_reader([] { return modules() == std::vector<std::string>{"ext4"} ? 0 : 1; }), 0);
    EXPECT_EQ(run_as_reader([] { return orvex_scene_getstatus(); }), 0);
    EXPECT_EQ(run_as_reader([] { return orvex_scene_get_module_status(3); }), 0);
}

TEST_F(read_only_store, answers_reads_after_a_process_that_died_at_writing) {
    chmod(path("state").c_str(), 0755);
    for (const char* name : {"state/orvex.db", "state/orvex.db-wal", "state/orvex.db-shm"}) {
        chmod(path(name).c_str(), 0644);
    }
    // The child leaves without closing the database, so that what it wrote still lies in the log of writes.
    ASSERT_EQ(run_in_child([] { return orvex_scene_kmodctl_add_by_name("xfs"); }), 0);
    EXPECT_GT(std::filesystem::file_size(path("state/orvex.db-wal")), 0U);
    for (const char* name : {"state/orvex.db", "state/orvex.db-wal", "state/orvex.db-shm"}) {
        chmod(path(name).c_str(), 0444);
    }
    chmod(path("state").c_str(), 0555);
    EXPECT_EQ(run_as_reader([] { return modules() == std::vector<std::string>{"ext4", "xfs"} ? 0 : 1; }), 0);
}

TEST_F(read_only_store, refuses_writes_and_drops_log_records_without_a_crash) {
    EXPECT_EQ(run_as_reader([] {
                  become(600);
                  return orvex_scene_kmodctl_add_by_name("xfs") < 0 ? 0 : 1;
              }),
              0);
    EXPECT_EQ(run_as_reader([] {
                  orvex_log(18, "tag", "function", "text");
                  return log_messages().empty() ? 0 : 1;
              }),
              0);
}

}  // namespace
