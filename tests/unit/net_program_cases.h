// SPDX-License-Identifier: Apache-2.0
// A notation for what an operation of `net` does with a program file: the situation that it meets, the calls that it
// makes behind the resolving of the path, in their order, and what comes out.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "unit/net_test.h"

enum class net_operation { add, update, remove };

/// Who owns the file, and which policies there are.
struct net_situation {
    bool has_owner;
    bool has_pkg_policy;
    bool has_program_policy;
};

inline constexpr net_situation no_owner_no_record = {false, false, false};
inline constexpr net_situation no_owner_record = {false, false, true};
inline constexpr net_situation owner_alone = {true, false, false};
inline constexpr net_situation owner_and_record = {true, false, true};
inline constexpr net_situation owner_and_policy = {true, true, false};
inline constexpr net_situation owner_policy_and_record = {true, true, true};

enum class net_call {
    read_program,
    find_owner,
    remove_program,
    read_pkg,
    /// The look-up of desktop entry and icon belongs to it.
    add_pkg,
    update_pkg,
    remove_pkg,
    add_program,
    update_program,
    write_log,
};

/// One call that is expected: what the library answers, or what goes to the log.
struct expected_net_call {
    expected_net_call(net_call wanted) : call(wanted) {}
    expected_net_call(net_call wanted, int answer) : call(wanted), result(answer) {}
    expected_net_call(const std::string& format, const std::string& message)
        : call(net_call::write_log), log_format(format), log_message(message) {}

    net_call call;
    int result = 0;
    std::string log_format;
    std::string log_message;
};

struct net_program_case {
    std::string name;
    net_operation operation;
    net_situation situation;
    std::vector<expected_net_call> calls;
    call_result expected;
};

void PrintTo(const net_program_case& row, std::ostream* stream);
std::string name_net_program_case(const testing::TestParamInfo<net_program_case>& info);

/// The file as the user types it, its absolute form, and the package that owns it. The names are no formats.
inline const std::string typed_path = "bin/tool %s";
inline const std::string absolute_path = "/home/u/bin/tool %s";
inline const std::string owner_name = "owner %s";

/// Fixture of the tests of the operations on program files.
class net_program_test : public net_test {
protected:
    /// Runs an operation.
    call_result change(net_operation operation, const std::string& path, std::int32_t status);

    /// Runs the operation of a case and holds it against the case. An update sets `status`.
    void check(const net_program_case& row, std::int32_t status);

    /// Does the same for a delete of a path that the user types in its absolute form: it is not tested.
    void check_untested(const net_program_case& row);

private:
    void expect_calls(const net_program_case& row, std::int32_t status);
    void expect_call(const net_program_case& row, const expected_net_call& call, std::int32_t status);
};
