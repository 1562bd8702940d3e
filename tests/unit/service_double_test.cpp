// SPDX-License-Identifier: Apache-2.0
// The double itself: what the tests of the modules rely on.
#include "support/service_double.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>

#include "service/admctl.h"
#include "service/exectl.h"
#include "service/filectl.h"
#include "service/kmodctl.h"
#include "service/log.h"
#include "service/netctl.h"
#include "service/paths.h"
#include "service/status.h"
#include "service/taskctl.h"
#include "support/captured_stream.h"
#include "support/module_test.h"

namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Return;

using service_double_test = module_test;

TEST(no_double_test, a_service_function_without_a_double_ends_with_a_clear_word) {
    EXPECT_DEATH(orvex_scene_getstatus(), "no double of the service library in use");
}

TEST(no_double_test, the_c_library_answers_for_itself) {
    EXPECT_EQ(getuid(), geteuid());
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    std::free(std::malloc(1));
}

TEST_F(service_double_test, two_doubles_at_a_time_end_with_a_clear_word) {
    EXPECT_DEATH(service_double(), "in use already");
}

TEST_F(service_double_test, memory_that_is_not_given_back_is_counted) {
    EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(give_list({"a", nullptr, "b"})));
    std::uint64_t count = 0;
    char** const list = orvex_scene_kmodctl_get_policy(&count);
    EXPECT_EQ(count, 3U);
    EXPECT_EQ(list[1], nullptr);
    EXPECT_EQ(service.memory().count_out(), 3U);
    std::free(list[0]);
    EXPECT_EQ(service.memory().count_out(), 2U);
    std::free(list[2]);
    std::free(list);
    EXPECT_EQ(service.memory().count_out(), 0U);
}

TEST_F(service_double_test, a_count_that_was_not_set_to_0_fails_the_test) {
    EXPECT_CALL(service, orvex_scene_admctl_get_user_policy(1)).WillOnce(Return(give_no_list()));
    static std::uint64_t count;
    count = 5;
    EXPECT_NONFATAL_FAILURE(orvex_scene_admctl_get_user_policy(1, &count), "the count was not set to 0");
}

TEST_F(service_double_test, a_null_text_fails_the_test) {
    EXPECT_CALL(service, path_is_dir("(null)")).WillOnce(Return(0));
    EXPECT_NONFATAL_FAILURE(path_is_dir(nullptr), "the library got null for a text");
}

TEST_F(service_double_test, texts_that_may_be_null_are_told_apart_from_empty_ones) {
    EXPECT_CALL(service, orvex_netctl_ext_add(0, "/x", 1, "label", Eq(std::nullopt), Eq(""), 7)).WillOnce(Return(3));
    EXPECT_EQ(orvex_netctl_ext_add(0, "/x", 1, "label", nullptr, "", 7), 3);
}

TEST_F(service_double_test, arrays_come_in_as_vectors) {
    char first[] = "a";
    char second[] = "";
    char* texts[] = {first, second};
    EXPECT_CALL(service, orvex_scene_exectl_wlist_multi_add(ElementsAre("a", ""))).WillOnce(Return(0));
    orvex_scene_exectl_wlist_multi_add(texts, 2);
    EXPECT_CALL(service, orvex_scene_filectl_exception_multi_add(1, "/r", 3, ElementsAre("a"))).WillOnce(Return(0));
    orvex_scene_filectl_exception_multi_add(1, "/r", 3, texts, 1);
    std::int32_t pids[] = {7, 8};
    EXPECT_CALL(service, orvex_scene_taskctl_multi_remove_by_pid(ElementsAre(7, 8))).WillOnce(Return(0));
    orvex_scene_taskctl_multi_remove_by_pid(pids, 2);
}

TEST_F(service_double_test, a_whitelist_record_is_given_back_by_its_own_call) {
    orvex_exectl_obj record = {};
    EXPECT_CALL(service, orvex_scene_exectl_wlist_load_by_path("/x"))
        .WillOnce(Return(given_exectl_lookup{0, {"/x", 1}}));
    EXPECT_CALL(service, orvex_scene_exectl_obj_free(Eq("/x")));
    EXPECT_EQ(orvex_scene_exectl_wlist_load_by_path("/x", &record), 0);
    EXPECT_STREQ(record.path, "/x");
    EXPECT_EQ(record.status, 1);
    EXPECT_EQ(service.memory().count_out(), 1U);
    orvex_scene_exectl_obj_free(&record);
}

TEST_F(service_double_test, a_whitelist_is_given_back_by_its_own_call) {
    orvex_exectl_list_obj* head = nullptr;
    EXPECT_CALL(service, orvex_scene_exectl_wlist_load_all())
        .WillOnce(Return(given_exectl_chain{0, {{"/a", 0}, {std::nullopt, 1}}}));
    EXPECT_CALL(service, orvex_scene_exectl_objs_free(2));
    EXPECT_EQ(orvex_scene_exectl_wlist_load_all(&head), 0);
    EXPECT_STREQ(head->obj.path, "/a");
    EXPECT_EQ(head->next->obj.path, nullptr);
    EXPECT_EQ(head->next->obj.status, 1);
    EXPECT_EQ(head->next->next, nullptr);
    EXPECT_EQ(service.memory().count_out(), 3U);
    orvex_scene_exectl_objs_free(&head);
}

TEST_F(service_double_test, free_for_memory_with_a_call_of_its_own_fails_the_test) {
    static orvex_exectl_obj record;
    record = {};
    EXPECT_CALL(service, orvex_scene_exectl_wlist_load_by_path("/x"))
        .WillOnce(Return(given_exectl_lookup{0, {"/x", 1}}));
    orvex_scene_exectl_wlist_load_by_path("/x", &record);
    EXPECT_NONFATAL_FAILURE(std::free(record.path), "was given back with free");
}

TEST_F(service_double_test, the_own_call_for_memory_of_others_fails_the_test) {
    static char text[] = "mine";
    static orvex_exectl_obj record;
    record = {};
    record.path = text;
    EXPECT_CALL(service, orvex_scene_exectl_obj_free(Eq("mine")));
    EXPECT_NONFATAL_FAILURE(orvex_scene_exectl_obj_free(&record), "memory that was not handed out for it");
}

template <class Record>
void expect_exceptions(const Record* records) {
    EXPECT_STREQ(records[0].resource, "/r");
    EXPECT_EQ(records[0].exception_count, 2U);
    EXPECT_STREQ(records[0].exceptions[0], "/e");
    EXPECT_EQ(records[0].exceptions[1], nullptr);
    EXPECT_EQ(records[1].resource, nullptr);
    EXPECT_EQ(records[1].exceptions, nullptr);
}

TEST_F(service_double_test, exception_records_are_given_back_by_their_own_call) {
    const given_exceptions values =
        give_items<given_exceptions_of>({{"/r", give_list({"/e", nullptr})}, {std::nullopt, give_no_list()}});
    std::uint64_t count = 0;
    EXPECT_CALL(service, orvex_scene_filectl_exception_get_policy()).WillOnce(Return(values));
    EXPECT_CALL(service, orvex_scene_filectl_exception_policy_free(true, 2));
    filectl_exception_record* const files = orvex_scene_filectl_exception_get_policy(&count);
    expect_exceptions(files);
    orvex_scene_filectl_exception_policy_free(files, count);

    count = 0;
    EXPECT_CALL(service, orvex_scene_taskctl_exception_get_policy()).WillOnce(Return(values));
    EXPECT_CALL(service, orvex_scene_taskctl_exception_policy_free(true, 2));
    taskctl_exception_record* const programs = orvex_scene_taskctl_exception_get_policy(&count);
    expect_exceptions(programs);
    orvex_scene_taskctl_exception_policy_free(programs, count);

    EXPECT_CALL(service, orvex_scene_taskctl_exception_policy_free(false, 0));
    orvex_scene_taskctl_exception_policy_free(nullptr, 0);
}

TEST_F(service_double_test, network_records_are_handed_out_in_one_block) {
    std::int32_t count = 0;
    EXPECT_CALL(service, orvex_netctl_pkg_read_all_data_with_uid(0))
        .WillOnce(Return(give_items<netctl_pkg_record>(
            {give_netctl_pkg("a", 1, "icon", "a.desktop", 0), give_netctl_pkg("b", 2, "", "", 9)})));
    netctl_pkg_record* const packages = orvex_netctl_pkg_read_all_data_with_uid(0, &count);
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(packages[0].desktop, "a.desktop");
    EXPECT_STREQ(packages[1].name, "b");
    EXPECT_EQ(packages[1].tag, 9);
    EXPECT_EQ(service.memory().count_out(), 1U);
    std::free(packages);

    EXPECT_CALL(service, orvex_netctl_ext_read_node_with_uid(0, "/x"))
        .WillOnce(Return(give_netctl_ext("/x", 2, "label", "1", "2", 3)));
    netctl_ext_record* const program = orvex_netctl_ext_read_node_with_uid(0, "/x");
    EXPECT_STREQ(program->text2, "2");
    std::free(program);

    EXPECT_CALL(service, orvex_netctl_pkg_read_node_with_uid(0, "a")).WillOnce(Return(std::nullopt));
    EXPECT_EQ(orvex_netctl_pkg_read_node_with_uid(0, "a"), nullptr);
}

TEST_F(service_double_test, a_log_record_is_rendered_whole) {
    const std::string path(3000, 'p');
    EXPECT_CALL(service, orvex_log(18, "exec", "run", "path: %s, ret: %d", "path: " + path + ", ret: -5"));
    orvex_log(18, "exec", "run", "path: %s, ret: %d", path.c_str(), -5);
}

TEST_F(service_double_test, arguments_that_do_not_fit_their_format_are_told_one_by_one) {
    constexpr const char* clear_format = "del proc ctl pid to all except failed, pid: %s, ret: %d";
    EXPECT_CALL(service, orvex_log(18, "proc", "f", clear_format, "[4711][-5]"));
    orvex_log(18, "proc", "f", clear_format, 4711, -5);
    for (const char* format : {"add proc except failed, file = %s, except = &s, ret = %d",
                               "add proc except failed, pid = %s, except = &s, ret = %d",
                               "del proc except failed, file = %s, except = &s, ret = %d",
                               "del proc except failed, pid = %s, except = &s, ret = %d"}) {
        EXPECT_CALL(service, orvex_log(18, "proc", "f", format, "[/a][/b:/c][-5]"));
        orvex_log(18, "proc", "f", format, "/a", "/b:/c", -5);
    }
}

TEST_F(service_double_test, the_error_record_has_its_text_in_its_place) {
    EXPECT_CALL(service, orvex_get_error()).WillOnce(Return("bus")).WillOnce(Return(std::nullopt));
    EXPECT_STREQ(&orvex_get_error()->text[0], "bus");
    EXPECT_EQ(orvex_get_error(), nullptr);
}

TEST_F(service_double_test, a_captured_stream_shows_what_reached_the_descriptor) {
    const captured_stream output(stdout);
    std::printf("held back");
    EXPECT_EQ(output.read_flushed(), "");
    EXPECT_EQ(output.read_all(), "held back");
}

}  // namespace
