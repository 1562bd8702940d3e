// SPDX-License-Identifier: Apache-2.0
// The policies of program files where the library fails: an add by a negative result, an update or a removal by any
// result but 0.
#include <limits>
#include <string>
#include <vector>

#include "unit/net_program_cases.h"

namespace {

using call = net_call;
using calls = std::vector<expected_net_call>;
using operation = net_operation;

const std::string remove_program_line = "删除程序[/home/u/bin/tool %s]联网管控失败!\n";
const std::string pkg_added_before_line = "软件包[owner %s]的联网管控策略已存在, 无需重复添加!\n";
const std::string add_pkg_line = "软件包[owner %s]添加网络管控失败!\n";
const std::string move_line = "添加文件[/home/u/bin/tool %s]对应软件包[owner %s]的网络管控策略失败!\n";
const std::string update_pkg_line = "更新文件[/home/u/bin/tool %s]对应软件包[owner %s]的网络管控策略失败!\n";
const std::string remove_pkg_line = "删除软件包[owner %s]联网管控失败!\n";

expected_net_call remove_program_log(int result) {
    return {"del netctl failed, path: %s, ret: %d",
            "del netctl failed, path: /home/u/bin/tool %s, ret: " + std::to_string(result)};
}

expected_net_call add_pkg_log(int result) {
    return {"add netctl failed, pkgName: %s, ret: %d",
            "add netctl failed, pkgName: owner %s, ret: " + std::to_string(result)};
}

expected_net_call move_log(int result) {
    return {"add netctl failed, file: %s, pkgName: %s, ret: %d",
            "add netctl failed, file: /home/u/bin/tool %s, pkgName: owner %s, ret: " + std::to_string(result)};
}

expected_net_call update_pkg_log(int result) {
    return {"update netctl failed, file: %s, pkgName: %s, ret: %d",
            "update netctl failed, file: /home/u/bin/tool %s, pkgName: owner %s, ret: " + std::to_string(result)};
}

expected_net_call remove_pkg_log(int result) {
    return {"del netctl failed, pkgName: %s, ret: %d",
            "del netctl failed, pkgName: owner %s, ret: " + std::to_string(result)};
}

/// The calls behind the two look-ups, which come in front of everything else.
calls after_look_ups(const calls& rest) {
    calls all = {call::read_program, call::find_owner};
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}

/// The calls behind a removal of the program's record that failed with `result`.
calls after_failed_removal(int result, const calls& rest) {
    calls all = after_look_ups({{call::remove_program, result}, remove_program_log(result)});
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}

/// The cases in which an add ends with `bad`, which is negative.
std::vector<net_program_case> add_failures(int bad) {
    const expected_net_call add_pkg = {call::add_pkg, bad};
    const expected_net_call add_program = {call::add_program, bad};
    const expected_net_call add_program_log = {"add netctl failed, path: %s, ret: %d",
                                               "add netctl failed, path: bin/tool %s, ret: " + std::to_string(bad)};
    return {
        {"program_not_added",
         operation::add,
         no_owner_no_record,
         after_look_ups({add_program, add_program_log}),
         {-1, "程序[bin/tool %s]添加网络管控失败!\n"}},
        {"owner_not_added",
         operation::add,
         owner_alone,
         after_look_ups({call::read_pkg, add_pkg, add_pkg_log(bad)}),
         {-1, add_pkg_line}},
        {"record_not_removed_and_owner_not_added",
         operation::add,
         owner_and_record,
         after_failed_removal(-7, {call::read_pkg, add_pkg, add_pkg_log(bad)}),
         {-1, remove_program_line + add_pkg_line}},
        {"record_removed_and_owner_not_added_by_update",
         operation::update,
         owner_and_record,
         after_look_ups({call::remove_program, call::read_pkg, add_pkg, move_log(bad)}),
         {-1, move_line}},
        {"record_not_removed_and_owner_not_added_by_update",
         operation::update,
         owner_and_record,
         after_failed_removal(7, {call::read_pkg, add_pkg, move_log(bad)}),
         {-1, remove_program_line + move_line}},
    };
}

/// The cases in which the removal of a record that moves to its package ends with `bad`: it goes on.
std::vector<net_program_case> move_failures(int bad) {
    return {
        {"record_not_removed_by_add",
         operation::add,
         owner_and_record,
         after_failed_removal(bad, {call::read_pkg, call::add_pkg}),
         {0, remove_program_line}},
        {"record_not_removed_beside_policy_by_add",
         operation::add,
         owner_policy_and_record,
         after_failed_removal(bad, {call::read_pkg}),
         {0, remove_program_line + pkg_added_before_line}},
        {"record_not_removed_by_update",
         operation::update,
         owner_and_record,
         after_failed_removal(bad, {call::read_pkg, call::add_pkg}),
         {0, remove_program_line}},
        {"record_not_removed_beside_policy_by_update",
         operation::update,
         owner_policy_and_record,
         after_failed_removal(bad, {call::read_pkg, call::update_pkg}),
         {0, remove_program_line}},
    };
}

/// The cases in which an update ends with `bad`.
std::vector<net_program_case> update_failures(int bad) {
    const expected_net_call update_pkg = {call::update_pkg, bad};
    const expected_net_call update_program = {call::update_program, bad};
    const expected_net_call update_program_log = {
        "update netctl failed, file: %s, ret: %d",
        "update netctl failed, file: bin/tool %s, ret: " + std::to_string(bad)};
    return {
        {"program_not_updated",
         operation::update,
         no_owner_record,
         after_look_ups({update_program, update_program_log}),
         {-1, "更新程序[bin/tool %s]的联网管控状态失败!\n"}},
        {"owner_not_updated",
         operation::update,
         owner_and_policy,
         after_look_ups({call::read_pkg, update_pkg, update_pkg_log(bad)}),
         {-1, update_pkg_line}},
        {"record_removed_and_owner_not_updated",
         operation::update,
         owner_policy_and_record,
         after_look_ups({call::remove_program, call::read_pkg, update_pkg, update_pkg_log(bad)}),
         {-1, update_pkg_line}},
        {"record_not_removed_and_owner_not_updated",
         operation::update,
         owner_policy_and_record,
         after_failed_removal(7, {call::read_pkg, update_pkg, update_pkg_log(bad)}),
         {-1, remove_program_line + update_pkg_line}},
    };
}

/// The cases in which a delete ends with `bad`, which is what the operation returns.
std::vector<net_program_case> delete_failures(int bad) {
    const expected_net_call remove_pkg = {call::remove_pkg, bad};
    const expected_net_call remove_program = {call::remove_program, bad};
    return {
        {"program_not_deleted",
         operation::remove,
         no_owner_record,
         after_look_ups({remove_program, remove_program_log(bad)}),
         {bad, remove_program_line}},
        {"program_with_owner_not_deleted",
         operation::remove,
         owner_and_record,
         after_look_ups({call::read_pkg, remove_program, remove_program_log(bad)}),
         {bad, remove_program_line}},
        {"owner_not_deleted",
         operation::remove,
         owner_and_policy,
         after_look_ups({call::read_pkg, remove_pkg, remove_pkg_log(bad)}),
         {bad, remove_pkg_line}},
        {"owner_not_deleted_is_forgotten_behind_the_program",
         operation::remove,
         owner_policy_and_record,
         after_look_ups({call::read_pkg, remove_pkg, remove_pkg_log(bad), call::remove_program}),
         {0, remove_pkg_line}},
        {"owner_deleted_and_program_not",
         operation::remove,
         owner_policy_and_record,
         after_look_ups({call::read_pkg, call::remove_pkg, remove_program, remove_program_log(bad)}),
         {bad, remove_program_line}},
        {"neither_deleted",
         operation::remove,
         owner_policy_and_record,
         after_look_ups(
             {call::read_pkg, {call::remove_pkg, 13}, remove_pkg_log(13), remove_program, remove_program_log(bad)}),
         {bad, remove_pkg_line + remove_program_line}},
    };
}

std::vector<net_program_case> all_failures() {
    std::vector<net_program_case> all;
    const auto append = [&all](std::vector<net_program_case> cases, int bad) {
        const std::string number = bad < 0 ? "minus_" + std::to_string(-static_cast<long>(bad)) : std::to_string(bad);
        for (net_program_case& row : cases) {
            row.name += "_by_" + number;
            all.push_back(row);
        }
    };
    for (const int bad : {-1, -4, std::numeric_limits<int>::min()}) {
        append(add_failures(bad), bad);
    }
    for (const int bad : {-1, -4, 1, 5, std::numeric_limits<int>::max()}) {
        append(move_failures(bad), bad);
        append(update_failures(bad), bad);
        append(delete_failures(bad), bad);
    }
    return all;
}

class net_program_failures_test : public net_program_test, public testing::WithParamInterface<net_program_case> {};

TEST_P(net_program_failures_test, is_told_and_logged) {
    check(GetParam(), 1);
}

INSTANTIATE_TEST_SUITE_P(failures, net_program_failures_test, testing::ValuesIn(all_failures()), name_net_program_case);

}  // namespace
