// SPDX-License-Identifier: Apache-2.0
#include "framework/output.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "support/captured_stream.h"
#include "support/module_test.h"

namespace {

class output_test : public module_test {};

TEST_F(output_test, the_pieces_stand_side_by_side_with_one_newline) {
    const captured_stream output(stdout);
    print_line("文件[", std::string("a b"), "]", 7, '!');
    EXPECT_EQ(output.read_all(), "文件[a b]7!\n");
}

TEST_F(output_test, each_line_is_flushed) {
    const captured_stream output(stdout);
    print_line("first");
    EXPECT_EQ(output.read_flushed(), "first\n");
    print_line("second");
    EXPECT_EQ(output.read_flushed(), "first\nsecond\n");
}

TEST_F(output_test, bytes_go_out_as_they_are) {
    const captured_stream output(stdout);
    print_line(std::string("\xff\0%s\n", 5));
    EXPECT_EQ(output.read_all(), std::string("\xff\0%s\n\n", 6));
}

TEST_F(output_test, an_empty_line_is_a_newline) {
    const captured_stream output(stdout);
    print_line("");
    EXPECT_EQ(output.read_all(), "\n");
}

TEST_F(output_test, lines_keep_their_place_among_formatted_output) {
    const captured_stream output(stdout);
    print_line("first");
    std::printf("second\n");
    print_line("third");
    EXPECT_EQ(output.read_all(), "first\nsecond\nthird\n");
}

TEST_F(output_test, a_null_piece_silences_the_stream) {
    const captured_stream output(stdout);
    const char* const nothing = nullptr;
    print_line("a", nothing, "b");
    print_line("c");
    EXPECT_EQ(output.read_all(), "a");
    EXPECT_TRUE(std::cout.fail());
}

}  // namespace
