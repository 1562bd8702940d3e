// SPDX-License-Identifier: Apache-2.0
#include "unit/option_rows.h"

#include "support/captured_stream.h"

using testing::Return;

namespace {

/// No number that `run` returns of itself.
constexpr int operation_result = 77;

std::string join(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += "[" + word + "] ";
    }
    return line;
}

}  // namespace

call_result option_rows_test::run_open(const std::vector<std::string>& words) {
    std::vector<std::string> line = {word_};
    line.insert(line.end(), words.begin(), words.end());
    return run(module(), line);
}

void option_rows_test::expect_chosen(const std::vector<chosen_row>& rows) {
    for (const chosen_row& row : rows) {
        expect_ladder(shape_);
        EXPECT_CALL(operation, call(row.operation)).WillOnce(Return(operation_result));
        EXPECT_EQ(run_open(row.words), (call_result{operation_result, ""})) << join(row.words);
    }
}

void option_rows_test::expect_refused(const std::vector<refused_row>& rows) {
    // What getopt itself says of a row is another test's affair.
    const captured_stream quiet(stderr);
    for (const refused_row& row : rows) {
        expect_ladder(shape_);
        EXPECT_EQ(run_open(row.words), (call_result{row.value, row.output})) << join(row.words);
    }
}
