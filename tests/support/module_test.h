// SPDX-License-Identifier: Apache-2.0
// The fixture of the tests that run parts of the program against the double of the service library.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "framework/module_base.h"
#include "support/service_double.h"

/// What a call returned and wrote to standard output.
struct call_result {
    int value;
    std::string output;
};

bool operator==(const call_result& left, const call_result& right);
void PrintTo(const call_result& result, std::ostream* stream);

/// The lines one below the other, each with its newline.
std::string lines(const std::vector<std::string>& texts);

/// Which calls a module's ladder makes in front of its work, and where it makes them.
struct ladder_shape {
    /// The module whose state is read behind the rights.
    int type;
    bool has_secret_scene;
    /// The framework's state is read first of all, and the module's own never.
    bool reads_framework_first;
};

inline constexpr ladder_shape exec_ladder = {0, false, false};
inline constexpr ladder_shape net_ladder = {1, false, false};
inline constexpr ladder_shape file_ladder = {2, true, false};
inline constexpr ladder_shape proc_ladder = {5, true, false};
inline constexpr ladder_shape kmod_ladder = {3, true, false};
inline constexpr ladder_shape userid_ladder = {4, false, false};
inline constexpr ladder_shape box_ladder = {11, false, true};

/// What these calls answer: by default root may act and all is on.
struct ladder_answers {
    int secret_scene = 0;
    uid_t user = 0;
    int role_separation = 0;
    int framework = 2;
    int module = 1;
};

/// Has a strict double in use: every call that the test does not expect is a failure, and the expectations hold in the
/// order in which they are written. At the end the program has given back all memory that it got.
class module_test : public testing::Test {
protected:
    module_test();
    ~module_test() override;

    void TearDown() override;

    /// Runs `call` with standard output caught; the stream starts in a good state and the option scan at the start.
    call_result capture(const std::function<int()>& call);

    /// Runs `module` with a command line: the program's name and `words`, of which the first is the module's.
    call_result run(COrvexBase& module, const std::vector<std::string>& words);

    /// Expects the ladder's calls in front of the test for the number of words.
    void expect_ladder_start(const ladder_shape& shape, const ladder_answers& answers = {});

    /// Expects the calls of the permission check.
    void expect_permission_check(const ladder_answers& answers = {});

    /// Expects the ladder's calls up to the permission check.
    void expect_ladder_to_rights(const ladder_shape& shape, const ladder_answers& answers = {});

    /// Expects the ladder's calls up to the states.
    void expect_ladder_to_states(const ladder_shape& shape, const ladder_answers& answers = {});

    /// Expects the ladder's calls up to the option loop.
    void expect_ladder(const ladder_shape& shape, const ladder_answers& answers = {});

    /// Expects the `setlocale` in front of the option loop.
    void expect_locale();

    /// Expects one log record at the level of failures, behind a line that ends with `line`.
    void expect_log(const std::string& tag, const std::string& function, const std::string& format,
                    const std::string& message, const std::string& line = "\n");

    testing::StrictMock<service_double> service;

private:
    testing::InSequence in_order_;
};
