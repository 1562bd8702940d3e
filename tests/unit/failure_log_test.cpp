// SPDX-License-Identifier: Apache-2.0
#include "framework/failure_log.h"

#include <gmock/gmock.h>

#include "support/module_test.h"

namespace {

using text_and_number = log_format<const char*, int>;

static_assert(text_and_number::fits("path: %s, ret: %d"));
static_assert(log_format<>::fits("no argument"));
static_assert(!text_and_number::fits("path: %d, ret: %s"));
static_assert(!text_and_number::fits("path: %s"));
static_assert(!text_and_number::fits("path: %s, ret: %d, %d"));
static_assert(!text_and_number::fits("path: %s, ret: &d"));
static_assert(!text_and_number::fits("path: %s, ret: %"));
static_assert(!log_format<>::fits("100%"));

using failure_log_test = module_test;

TEST_F(failure_log_test, a_record_carries_its_source_its_format_and_its_arguments) {
    expect_log("tag", "member", "path: %s, ret: %d", "path: /a %s, ret: -7");
    log_failure({.tag = "tag", .function = "member"}, "path: %s, ret: %d", "/a %s", -7);
}

TEST_F(failure_log_test, a_format_that_is_meant_not_to_fit_goes_out_as_it_is) {
    constexpr auto format = log_format<int, int>::unchecked("add proc except failed, file = %s");
    EXPECT_STREQ(format.text(), "add proc except failed, file = %s");
}

}  // namespace
