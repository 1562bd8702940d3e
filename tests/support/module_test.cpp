// SPDX-License-Identifier: Apache-2.0
#include "support/module_test.h"

#include <getopt.h>

#include <clocale>
#include <cstdio>
#include <iostream>

#include "support/captured_stream.h"
#include "support/command_line.h"

using testing::Eq;
using testing::Return;

bool operator==(const call_result& left, const call_result& right) {
    return left.value == right.value && left.output == right.output;
}

void PrintTo(const call_result& result, std::ostream* stream) {
    *stream << "result " << result.value << " with the output\n" << result.output;
}

std::string lines(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += text + "\n";
    }
    return joined;
}

namespace {

/// Where the present call prints to, or null. There is one at a time.
const captured_stream* present_output = nullptr;

}  // namespace

module_test::module_test() = default;
module_test::~module_test() = default;

void module_test::TearDown() {
    std::cout.clear();
    EXPECT_EQ(service.memory().count_out(), 0U) << "memory of the library was not given back";
}

call_result module_test::capture(const std::function<int()>& call) {
    std::cout.clear();
    optind = 0;
    const captured_stream output(stdout);
    present_output = &output;
    const int value = call();
    present_output = nullptr;
    return {value, output.read_all()};
}

call_result module_test::run(COrvexBase& module, const std::vector<std::string>& words) {
    command_line line(words);
    return capture([&] { return module.run(line.argc(), line.argv()); });
}

void module_test::expect_ladder_start(const ladder_shape& shape, const ladder_answers& answers) {
    if (shape.has_secret_scene) {
        EXPECT_CALL(service, orvex_scene_get_sm_status()).WillOnce(Return(answers.secret_scene));
    }
    if (shape.reads_framework_first) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(answers.framework));
    }
}

void module_test::expect_permission_check(const ladder_answers& answers) {
    EXPECT_CALL(service, getuid()).WillOnce(Return(answers.user));
    EXPECT_CALL(service, orvex_scene_get_module_status(4)).WillOnce(Return(answers.role_separation));
    EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(answers.framework));
}

void module_test::expect_ladder_to_rights(const ladder_shape& shape, const ladder_answers& answers) {
    expect_ladder_start(shape, answers);
    expect_permission_check(answers);
}

void module_test::expect_ladder_to_states(const ladder_shape& shape, const ladder_answers& answers) {
    expect_ladder_to_rights(shape, answers);
    if (!shape.reads_framework_first) {
        EXPECT_CALL(service, orvex_scene_getstatus()).WillOnce(Return(answers.framework));
        EXPECT_CALL(service, orvex_scene_get_module_status(shape.type)).WillOnce(Return(answers.module));
    }
}

void module_test::expect_ladder(const ladder_shape& shape, const ladder_answers& answers) {
    expect_ladder_to_states(shape, answers);
    expect_locale();
}

void module_test::expect_locale() {
    EXPECT_CALL(service, setlocale(LC_ALL, Eq("")));
}

void module_test::expect_log(const std::string& tag, const std::string& function, const std::string& format,
                             const std::string& message, const std::string& line) {
    EXPECT_CALL(service, orvex_log(18, tag, function, format, message)).WillOnce([line] {
        if (present_output != nullptr) {
            EXPECT_THAT(present_output->read_all(), testing::EndsWith(line))
                << "the record was logged in front of its line";
        }
    });
}
