// SPDX-License-Identifier: Apache-2.0
// What a trace says of the calls of a whole test program: this one.
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "service/paths.h"
#include "tool/service_calls.h"
#include "tool_run.h"

using nlohmann::json;

namespace {

class traced : public tool {
protected:
    /// Runs the tests whose names fit `filter` under a trace and returns its lines.
    std::vector<std::string> trace(const std::string& filter, const std::string& options) {
        const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
        EXPECT_EQ(
            run("trace " + options + " -o '" + path("calls") + "' '" + self + "' --gtest_filter='" + filter + "'"), 0);
        std::vector<std::string> lines;
        std::ifstream file(path("calls"));
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }
};

/// All tests but those of the tool, among them this one.
const char* const widely_used = "-tool.*:document.*:traced.*:wished_failure.*:store.*";

TEST_F(traced, calls_are_objects_of_json_with_all_arguments) {
    std::set<std::string> seen;
    for (const std::string& line : trace(widely_used, "--json")) {
        const json call = json::parse(line, nullptr, false);
        ASSERT_FALSE(call.is_discarded()) << line;
        EXPECT_TRUE(call["arguments"].is_object()) << line;
        seen.insert(call["call"].get<std::string>());
    }
    for (const auto& call : local_service::service_calls) {
        EXPECT_EQ(seen.count(call.name), 1U) << call.name;
    }
}

TEST_F(traced, calls_are_lines_with_their_results) {
    using local_service::call_result;
    const std::vector<std::string> lines = trace(widely_used, "");
    EXPECT_GT(lines.size(), 500U);
    for (const std::string& line : lines) {
        const std::string name = line.substr(0, line.find('('));
        const bool has_result = line.find(") = ") != std::string::npos;
        for (const auto& call : local_service::service_calls) {
            if (call.name == name) {
                EXPECT_EQ(has_result, call.result != call_result::nothing) << line;
            }
        }
    }
}

}  // namespace
