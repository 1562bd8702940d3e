// SPDX-License-Identifier: Apache-2.0
// Calls that fail on request.
#include "core/wished_failure.h"

#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>

#include "core/store.h"
#include "service/exectl.h"
#include "service/kmodctl.h"
#include "service/log.h"
#include "service/netctl.h"
#include "service/paths.h"
#include "service/status.h"
#include "tool/service_calls.h"
#include "tool_run.h"

using local_service::add_failure_wish;
using local_service::call_result;
using local_service::clear_failure_wishes;
using local_service::read_failure_wishes;
using local_service::service_call;
using local_service::service_calls;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class wished_failure : public tool {
protected:
    static constexpr const char* add_module = "orvex_scene_kmodctl_add_by_name";

    static std::vector<int> add_modules(int count) {
        std::vector<int> results;
        for (int number = 0; number < count; ++number) {
            results.push_back(orvex_scene_kmodctl_add_by_name(("m" + std::to_string(number)).c_str()));
        }
        return results;
    }
};

TEST_F(wished_failure, gives_the_result_and_changes_nothing) {
    add_failure_wish({add_module, -4, 1, 0, "no such luck"});
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), -4);
    EXPECT_EQ(last_error(), "no such luck");
    EXPECT_THAT(fetch_list(orvex_scene_kmodctl_get_policy), IsEmpty());
    EXPECT_THAT(log_messages(), IsEmpty());
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), 0);
}

TEST_F(wished_failure, says_by_itself_that_it_was_wanted) {
    add_failure_wish({add_module, -1, 1, 0, ""});
    orvex_scene_kmodctl_add_by_name("ext4");
    EXPECT_EQ(last_error(), "orvex_scene_kmodctl_add_by_name fails on request");
}

TEST_F(wished_failure, may_be_a_success_in_which_nothing_is_done) {
    add_failure_wish({add_module, 0, 1, 0, ""});
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("ext4"), 0);
    EXPECT_THAT(fetch_list(orvex_scene_kmodctl_get_policy), IsEmpty());
}

TEST_F(wished_failure, holds_for_as_many_calls_as_wanted) {
    add_failure_wish({add_module, -5, 2, 1, ""});
    EXPECT_THAT(add_modules(5), ElementsAre(0, -5, -5, 0, 0));
}

TEST_F(wished_failure, without_a_number_holds_until_it_is_cleared) {
    add_failure_wish({add_module, -5, std::nullopt, 2, ""});
    EXPECT_THAT(add_modules(5), ElementsAre(0, 0, -5, -5, -5));
    clear_failure_wishes();
    EXPECT_EQ(orvex_scene_kmodctl_add_by_name("later"), 0);
}

TEST_F(wished_failure, comes_after_those_that_were_there_before) {
    add_failure_wish({add_module, -5, 1, 1, ""});
    add_failure_wish({add_module, -6, 1, 1, ""});
    EXPECT_THAT(add_modules(5), ElementsAre(0, -5, 0, -6, 0));
}

TEST_F(wished_failure, of_a_pointer_is_null_with_the_count_left_alone) {
    add_failure_wish({"orvex_scene_kmodctl_get_policy", 0, 1, 0, ""});
    add_failure_wish({"orvex_netctl_pkg_read_all_data_with_uid", 0, 1, 0, ""});
    add_failure_wish({"get_absolute_path", 0, 1, 0, ""});
    add_failure_wish({"get_file_list_from_dir", 0, 1, 0, ""});
    add_failure_wish({"orvex_get_error", 0, 1, 0, ""});
    std::uint64_t count = 0;
    std::int32_t net_count = 0;
    int file_count = 0;
    EXPECT_EQ(orvex_scene_kmodctl_get_policy(&count), nullptr);
    EXPECT_EQ(orvex_netctl_pkg_read_all_data_with_uid(0, &net_count), nullptr);
    EXPECT_EQ(get_absolute_path("/etc"), nullptr);
    EXPECT_EQ(get_file_list_from_dir("/etc", &file_count), nullptr);
    EXPECT_EQ(orvex_get_error(), nullptr);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(net_count, 0);
    EXPECT_EQ(file_count, 0);
    EXPECT_THAT(read_failure_wishes(), IsEmpty());
}

TEST_F(wished_failure, leaves_a_record_of_the_caller_as_it_was) {
    add_failure_wish({"orvex_scene_exectl_wlist_load_by_path", 9, 1, 0, ""});
    orvex_exectl_obj record{};
    EXPECT_EQ(orvex_scene_exectl_wlist_load_by_path("/bin/ls", &record), 9);
    EXPECT_EQ(record.path, nullptr);
}

TEST_F(wished_failure, is_seen_by_a_process_that_is_running) {
    EXPECT_EQ(path_is_exist("/"), 1);
    EXPECT_EQ(run("fail path_is_exist 0 --times 1"), 0);
    usleep(20000);
    EXPECT_EQ(path_is_exist("/"), 0);
    EXPECT_EQ(path_is_exist("/"), 1);
}

TEST_F(wished_failure, is_counted_once_over_all_processes) {
    EXPECT_EQ(run("fail path_is_exist 0 --times 50"), 0);
    std::vector<pid_t> children;
    for (int number = 0; number < 4; ++number) {
        children.push_back(start_child([] {
            int failed = 0;
            for (int call = 0; call < 20; ++call) {
                failed += path_is_exist("/") == 0 ? 1 : 0;
            }
            return failed;
        }));
    }
    int failed = 0;
    for (const pid_t child : children) {
        failed += wait_for(child);
    }
    EXPECT_EQ(failed, 50);
}

TEST_F(wished_failure, cannot_be_wished_where_its_marker_cannot_be_made) {
    orvex_scene_getstatus();
    make_directory("state/failing");
    EXPECT_EQ(run(std::string("fail ") + add_module + " -1"), 1);
    EXPECT_EQ(errors(), "orvex_local: " + path("state/failing") + ": cannot be made: Is a directory\n");
    EXPECT_THAT(read_failure_wishes(), IsEmpty());
}

TEST_F(wished_failure, leaves_nothing_in_the_state_directory_when_it_is_over) {
    add_failure_wish({add_module, -5, 1, 0, ""});
    EXPECT_TRUE(std::filesystem::exists(path("state/failing")));
    add_modules(1);
    EXPECT_FALSE(std::filesystem::exists(path("state/failing")));
    add_failure_wish({add_module, -5, std::nullopt, 0, ""});
    clear_failure_wishes();
    EXPECT_FALSE(std::filesystem::exists(path("state/failing")));
}

TEST_F(wished_failure, is_listed_as_it_could_be_typed) {
    EXPECT_EQ(run("fail path_is_exist 0"), 0);
    EXPECT_EQ(run("fail orvex_scene_kmodctl_get_policy null --times 3"), 0);
    EXPECT_EQ(run("fail orvex_netctl_remove -7 --times 1 --after 2 --error 'with \"quotes\"'"), 0);
    EXPECT_EQ(run("fail --list"), 0);
    EXPECT_EQ(output(),
              "path_is_exist 0\n"
              "orvex_scene_kmodctl_get_policy null --times 3\n"
              "orvex_netctl_remove -7 --times 1 --after 2 --error \"with \\\"quotes\\\"\"\n");
    EXPECT_EQ(run("fail --clear"), 0);
    EXPECT_EQ(run("fail --list"), 0);
    EXPECT_EQ(output(), "");
}

TEST_F(wished_failure, can_be_had_of_every_function_that_returns_something) {
    for (const service_call& call : service_calls) {
        EXPECT_NE(dlsym(RTLD_DEFAULT, call.name), nullptr) << call.name;
        const char* result = call.result == call_result::pointer ? " null" : " -1";
        EXPECT_EQ(run("fail " + std::string(call.name) + result), call.result == call_result::nothing ? 2 : 0);
    }
}

}  // namespace
