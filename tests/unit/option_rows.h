// SPDX-License-Identifier: Apache-2.0
// Command lines of a module as rows: the words behind the module's own, and what comes of them.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/module_test.h"

/// Hears which operation a module's `run` calls, as `show_call` writes it.
class heard_operation {
public:
    MOCK_METHOD(int, call, (const std::string& operation));
};

inline std::string show_argument(const std::string& text) {
    return " [" + text + "]";
}
inline std::string show_argument(int number) {
    return " [" + std::to_string(number) + "]";
}

/// The name of an operation and its arguments, each in square brackets.
template <class... Arguments>
std::string show_call(std::string name, const Arguments&... arguments) {
    (name.append(show_argument(arguments)), ...);
    return name;
}

/// A command line that leads to one operation.
struct chosen_row {
    std::vector<std::string> words;
    std::string operation;
};

/// A command line that leads to none.
struct refused_row {
    std::vector<std::string> words;
    int value;
    std::string output;
};

/// Fixture of the tests of a module's options. The module is on and root may act.
class option_rows_test : public module_test {
protected:
    option_rows_test(const char* word, const ladder_shape& shape) : word_(word), shape_(shape) {}

    /// The module, whose operations are heard.
    virtual COrvexBase& module() = 0;

    /// Runs the module with its word and `words`.
    call_result run_open(const std::vector<std::string>& words);

    /// Expects the operation of each row to be called, and what it returned to be returned, with nothing printed.
    void expect_chosen(const std::vector<chosen_row>& rows);

    /// Expects each row to call no operation.
    void expect_refused(const std::vector<refused_row>& rows);

    testing::StrictMock<heard_operation> operation;

private:
    const char* word_;
    ladder_shape shape_;
};
