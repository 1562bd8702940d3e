// SPDX-License-Identifier: Apache-2.0
#include "unit/net_program_cases.h"

#include <ostream>

using testing::Eq;
using testing::Return;

void PrintTo(const net_program_case& row, std::ostream* stream) {
    *stream << row.name;
}

std::string name_net_program_case(const testing::TestParamInfo<net_program_case>& info) {
    return info.param.name;
}

namespace {

const char* get_function(net_operation operation) {
    switch (operation) {
        case net_operation::add:
            return "add_net_policy_by_file";
        case net_operation::update:
            return "update_net_policy_by_file";
        default:
            return "del_net_policy_by_file";
    }
}

}  // namespace

call_result net_program_test::change(net_operation operation, const std::string& path, std::int32_t status) {
    return capture([&] {
        switch (operation) {
            case net_operation::add:
                return net.add_net_policy_by_file(path);
            case net_operation::update:
                return net.update_net_policy_by_file(path, status);
            default:
                return net.del_net_policy_by_file(path);
        }
    });
}

void net_program_test::check(const net_program_case& row, std::int32_t status) {
    expect_good_file(typed_path, absolute_path);
    expect_calls(row, status);
    EXPECT_EQ(change(row.operation, typed_path, status), row.expected);
}

void net_program_test::check_untested(const net_program_case& row) {
    expect_calls(row, 0);
    EXPECT_EQ(change(net_operation::remove, absolute_path, 0), row.expected);
}

void net_program_test::expect_calls(const net_program_case& row, std::int32_t status) {
    for (const expected_net_call& call : row.calls) {
        expect_call(row, call, status);
    }
}

void net_program_test::expect_call(const net_program_case& row, const expected_net_call& call, std::int32_t status) {
    const net_situation& situation = row.situation;
    switch (call.call) {
        case net_call::read_program:
            expect_ext_read(absolute_path,
                            situation.has_program_policy ? std::optional(stored_ext_record()) : std::nullopt);
            break;
        case net_call::find_owner:
            EXPECT_CALL(net, get_pkg_by_file(absolute_path)).WillOnce(Return(situation.has_owner ? owner_name : ""));
            break;
        case net_call::remove_program:
            EXPECT_CALL(service, orvex_netctl_remove(0, absolute_path)).WillOnce(Return(call.result));
            break;
        case net_call::read_pkg:
            expect_pkg_read(owner_name, situation.has_pkg_policy ? std::optional(stored_pkg_record()) : std::nullopt);
            break;
        case net_call::add_pkg:
            expect_pkg_add(owner_name, row.operation == net_operation::add ? 2 : status, call.result);
            break;
        case net_call::update_pkg:
            expect_pkg_update(status, call.result);
            break;
        case net_call::remove_pkg:
            EXPECT_CALL(service, orvex_netctl_pkg_remove(0, owner_name)).WillOnce(Return(call.result));
            break;
        case net_call::add_program:
            EXPECT_CALL(service,
                        orvex_netctl_ext_add(0, absolute_path, 2, absolute_path, Eq(std::nullopt), Eq(std::nullopt), 2))
                .WillOnce(Return(call.result));
            break;
        case net_call::update_program:
            expect_ext_update(status, call.result);
            break;
        case net_call::write_log:
            expect_log("netctl", get_function(row.operation), call.log_format, call.log_message);
            break;
    }
}
