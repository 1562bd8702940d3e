// SPDX-License-Identifier: Apache-2.0
// The policies of program files, by `-f`: each situation and each operation where every call succeeds. What happens
// where one fails is in net_program_failures_test.cpp, the resolving of the path in net_paths_test.cpp.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <vector>

#include "unit/net_program_cases.h"

namespace {

using call = net_call;
using operation = net_operation;
using testing::Eq;
using testing::Return;

const call_result silence = {0, ""};
const call_result program_added_before = {0, "程序[bin/tool %s]的联网管控策略已添加, 无需重复添加!\n"};
const call_result pkg_added_before = {0, "软件包[owner %s]的联网管控策略已存在, 无需重复添加!\n"};
const call_result nothing_to_update = {0, "程序[bin/tool %s]的联网管控策略不存在, 请先添加!\n"};
const call_result nothing_to_delete = {0, "程序[/home/u/bin/tool %s]的联网管控策略不存在, 无需删除!\n"};

const net_program_case cases[] = {
    {"add_for_no_owner_without_record",
     operation::add,
     no_owner_no_record,
     {call::read_program, call::find_owner, call::add_program},
     silence},
    {"update_for_no_owner_without_record",
     operation::update,
     no_owner_no_record,
     {call::read_program, call::find_owner},
     nothing_to_update},
    {"delete_for_no_owner_without_record",
     operation::remove,
     no_owner_no_record,
     {call::read_program, call::find_owner},
     nothing_to_delete},

    {"add_for_no_owner_with_record",
     operation::add,
     no_owner_record,
     {call::read_program, call::find_owner},
     program_added_before},
    {"update_for_no_owner_with_record",
     operation::update,
     no_owner_record,
     {call::read_program, call::find_owner, call::update_program},
     silence},
    {"delete_for_no_owner_with_record",
     operation::remove,
     no_owner_record,
     {call::read_program, call::find_owner, call::remove_program},
     silence},

    {"add_for_owner_alone",
     operation::add,
     owner_alone,
     {call::read_program, call::find_owner, call::read_pkg, call::add_pkg},
     silence},
    {"update_for_owner_alone",
     operation::update,
     owner_alone,
     {call::read_program, call::find_owner, call::read_pkg},
     nothing_to_update},
    {"delete_for_owner_alone",
     operation::remove,
     owner_alone,
     {call::read_program, call::find_owner, call::read_pkg},
     nothing_to_delete},

    {"add_for_owner_with_record",
     operation::add,
     owner_and_record,
     {call::read_program, call::find_owner, call::remove_program, call::read_pkg, call::add_pkg},
     silence},
    {"update_for_owner_with_record",
     operation::update,
     owner_and_record,
     {call::read_program, call::find_owner, call::remove_program, call::read_pkg, call::add_pkg},
     silence},
    {"delete_for_owner_with_record",
     operation::remove,
     owner_and_record,
     {call::read_program, call::find_owner, call::read_pkg, call::remove_program},
     silence},

    {"add_for_owner_with_policy",
     operation::add,
     owner_and_policy,
     {call::read_program, call::find_owner, call::read_pkg},
     pkg_added_before},
    {"update_for_owner_with_policy",
     operation::update,
     owner_and_policy,
     {call::read_program, call::find_owner, call::read_pkg, call::update_pkg},
     silence},
    {"delete_for_owner_with_policy",
     operation::remove,
     owner_and_policy,
     {call::read_program, call::find_owner, call::read_pkg, call::remove_pkg},
     silence},

    {"add_for_owner_with_policy_and_record",
     operation::add,
     owner_policy_and_record,
     {call::read_program, call::find_owner, call::remove_program, call::read_pkg},
     pkg_added_before},
    {"update_for_owner_with_policy_and_record",
     operation::update,
     owner_policy_and_record,
     {call::read_program, call::find_owner, call::remove_program, call::read_pkg, call::update_pkg},
     silence},
    {"delete_for_owner_with_policy_and_record",
     operation::remove,
     owner_policy_and_record,
     {call::read_program, call::find_owner, call::read_pkg, call::remove_pkg, call::remove_program},
     silence},
};

class net_programs_test : public net_program_test, public testing::WithParamInterface<net_program_case> {};

TEST_P(net_programs_test, makes_its_calls_in_order_and_says_what_came_of_it) {
    for (const std::int32_t status : {1, 2, 7}) {
        check(GetParam(), status);
    }
}

INSTANTIATE_TEST_SUITE_P(situations, net_programs_test, testing::ValuesIn(cases), name_net_program_case);

std::vector<net_program_case> delete_cases() {
    std::vector<net_program_case> wanted;
    std::copy_if(std::begin(cases), std::end(cases), std::back_inserter(wanted),
                 [](const net_program_case& row) { return row.operation == operation::remove; });
    return wanted;
}

class net_untested_path_test : public net_programs_test {};

TEST_P(net_untested_path_test, is_deleted_with_the_same_calls) {
    check_untested(GetParam());
}

INSTANTIATE_TEST_SUITE_P(situations, net_untested_path_test, testing::ValuesIn(delete_cases()), name_net_program_case);

// Ownership on the way.

TEST_F(net_program_test, a_record_that_only_had_to_be_there_is_given_back_before_the_owner_is_asked_for) {
    for (const operation wanted : {operation::add, operation::remove}) {
        expect_good_file(typed_path, absolute_path);
        expect_ext_read(absolute_path, stored_ext_record());
        EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce([this](const std::string& /*path*/) {
            EXPECT_EQ(service.memory().count_out(), 0U);
            return "";
        });
        if (wanted == operation::remove) {
            EXPECT_CALL(service, orvex_netctl_remove(0, absolute_path)).WillOnce(Return(0));
        }
        EXPECT_EQ(change(wanted, typed_path, 0), wanted == operation::add ? program_added_before : silence);
    }
}

// Results of adds above 0.

TEST_F(net_program_test, an_add_with_a_result_above_0_is_a_success) {
    for (const int result : {1, 3, 2147483647}) {
        check({"",
               operation::add,
               no_owner_no_record,
               {call::read_program, call::find_owner, {call::add_program, result}},
               silence},
              2);
        check({"",
               operation::add,
               owner_alone,
               {call::read_program, call::find_owner, call::read_pkg, {call::add_pkg, result}},
               silence},
              2);
        check({"",
               operation::update,
               owner_and_record,
               {call::read_program, call::find_owner, call::remove_program, call::read_pkg, {call::add_pkg, result}},
               silence},
              1);
    }
}

// What the look-up of the owner says stands in front.

TEST_F(net_program_test, lines_of_the_look_up_of_the_owner_come_before_the_module_s_own) {
    expect_good_file(typed_path, absolute_path);
    expect_ext_read(absolute_path, std::nullopt);
    EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce([](const std::string& /*path*/) {
        std::cout << "the look-up says something\n";
        return "";
    });
    EXPECT_EQ(change(operation::update, typed_path, 1),
              (call_result{0, "the look-up says something\n" + nothing_to_update.output}));
}

TEST_F(net_program_test, whether_the_owner_is_installed_is_not_asked) {
    // The strict module would refuse the question.
    expect_good_file(typed_path, absolute_path);
    expect_ext_read(absolute_path, std::nullopt);
    EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce(Return("first-1-1.noarch\nsecond"));
    expect_pkg_read("first-1-1.noarch\nsecond", std::nullopt);
    expect_pkg_add("first-1-1.noarch\nsecond", 2, 0);
    EXPECT_EQ(change(operation::add, typed_path, 0), silence);
}

// Records at the limits.

TEST_F(net_program_test, full_fields_go_back_whole_at_an_update) {
    const std::string path(4163, 'p');
    const std::string label(255, 'l');
    const std::string text1(4095, '1');
    const std::string text2(4095, '2');
    expect_good_file(typed_path, absolute_path);
    expect_ext_read(absolute_path, give_netctl_ext(path, 2, label, text1, text2, -2147483647 - 1));
    EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce(Return(""));
    EXPECT_CALL(service, orvex_netctl_ext_update(0, path, 1, label, Eq(text1), Eq(text2), -2147483647 - 1))
        .WillOnce(Return(0));
    EXPECT_EQ(change(operation::update, typed_path, 1), silence);
}

TEST_F(net_program_test, empty_fields_go_back_as_empty_texts_and_not_as_null) {
    expect_good_file(typed_path, absolute_path);
    expect_ext_read(absolute_path, give_netctl_ext("/x", 2, "", "", "", 0));
    EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce(Return(""));
    EXPECT_CALL(service, orvex_netctl_ext_update(0, "/x", 1, "", Eq(""), Eq(""), 0)).WillOnce(Return(0));
    EXPECT_EQ(change(operation::update, typed_path, 1), silence);
}

TEST_F(net_program_test, a_path_that_is_longer_than_any_field_reaches_the_library_whole) {
    const std::string path = "/" + std::string(9000, 'p');
    expect_good_file(typed_path, path);
    expect_ext_read(path, std::nullopt);
    EXPECT_CALL(net, get_pkg_by_file(path)).WillOnce(Return(""));
    EXPECT_CALL(service, orvex_netctl_ext_add(0, path, 2, path, Eq(std::nullopt), Eq(std::nullopt), 2))
        .WillOnce(Return(0));
    EXPECT_EQ(change(operation::add, typed_path, 0), silence);
}

}  // namespace
