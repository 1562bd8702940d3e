// SPDX-License-Identifier: Apache-2.0
#include "front/global_usage.h"

#include <cstdio>

#include "support/captured_stream.h"
#include "support/module_test.h"
#include "unit/help_texts.h"

namespace {

class global_usage_test : public module_test {};

TEST_F(global_usage_test, prints_the_whole_help_and_calls_nothing) {
    EXPECT_EQ(capture([] {
                  print_global_usage();
                  return 0;
              }),
              (call_result{0, global_help()}));
}

TEST_F(global_usage_test, leaves_nothing_unflushed) {
    const captured_stream output(stdout);
    print_global_usage();
    EXPECT_EQ(output.read_flushed(), global_help());
}

}  // namespace
