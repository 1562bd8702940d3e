// SPDX-License-Identifier: Apache-2.0
// The service library, rpm and GIO as a fuzz target sees them: what they answer stands in the input, one answer a line,
// in the order of the calls. An empty line, and the end of the input, are the answer that leads furthest.
//
// A number is a number, a text is a text. `null` is a null pointer. The entries of a list are separated by '|'; an
// entry `null` is a null pointer, and `*N` repeats the entry in front of it N times. What a record holds is told at its
// reader.
#pragma once

#include <gmock/gmock.h>

#include <optional>
#include <string>

#include "services/replaced_file.h"
#include "support/scratch_dir.h"
#include "support/service_double.h"

/// A text that is taken line by line.
class line_reader {
public:
    explicit line_reader(std::string text) : rest_(std::move(text)) {}

    /// Returns the next line, or nothing for an empty line and at the end.
    std::optional<std::string> take();

private:
    std::string rest_;
};

/// The double in use. It lives as long as the target.
class fuzzed_service {
public:
    fuzzed_service();

    /// From now on the answers stand in `answers`.
    void begin(const std::string& answers);

    /// The number of pieces of memory that the program has not given back.
    std::size_t count_out() { return service_.memory().count_out(); }

    /// The next answer as a text, without the meaning that it has elsewhere.
    static std::string take_text();

private:
    void let_calls_lead_on();

    testing::NiceMock<service_double> service_;
    scratch_dir scratch_;
    replaced_file attributes_{"/proc/1/attr/vemu/path", scratch_.write("path", "/usr/bin/program\n")};
};
