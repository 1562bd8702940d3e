// SPDX-License-Identifier: Apache-2.0
// What differs between a host and a document, and how it is told.
#include "state/differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sample_policy.h"
#include "state/document.h"

using namespace state;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using enum list_id;

class policy_comparison : public testing::Test {
protected:
    /// The lines that tell what differs between the host and the document with these fields beside its version.
    std::vector<std::string> compare(const std::string& fields, bool keeps_others = false) {
        const policy wanted = read_document(R"({"version": 1, )" + fields + "}");
        return tell_differences(find_differences(host, wanted, keeps_others), false);
    }

    policy host = sample_host();
};

TEST_F(policy_comparison, finds_nothing_where_nothing_differs) {
    EXPECT_TRUE(find_differences(host, host, false).empty());
    EXPECT_TRUE(find_differences(host, read_document(R"({"version": 1})"), false).empty());
}

TEST_F(policy_comparison, tells_states_that_are_others) {
    EXPECT_THAT(compare(R"("framework": "permissive", "modules": {"kmod": "on", "exec": "on", "exec script": "on"})"),
                ElementsAre("~ framework is enabled, to be permissive", "~ modules: 'exec script' is off, to be on",
                            "~ modules: kmod is off, to be on"));
}

TEST_F(policy_comparison, tells_objects_that_are_missing_or_too_many_or_others) {
    EXPECT_THAT(compare(R"("exec": {"whitelist": {"/a b": "intact", "/bin/b": "intact"}})"),
                ElementsAre("+ exec whitelist: '/a b' intact", "~ exec whitelist: /bin/b is tampered, to be intact",
                            "- exec whitelist: /bin/a intact"));
    EXPECT_THAT(compare(R"("kmod": {"modules": ["\u001b"]})"),
                ElementsAre(R"(+ kmod modules: $'\033')", "- kmod modules: ext4"));
}

TEST_F(policy_comparison, tells_exceptions_below_their_objects) {
    EXPECT_THAT(
        compare(
            R"("file": {"files": {"/notes": {"excepted_files": ["/vi"]}, "/new": {"excepted_packages": ["vim"]}}})"),
        ElementsAre("+ file files: /new", "+ file files /new excepted_packages: vim",
                    "- file files /notes excepted_files: /editor", "+ file files /notes excepted_files: /vi"));
    EXPECT_THAT(compare(R"("file": {"files": {}})"), ElementsAre("- file files: /notes"));
}

TEST_F(policy_comparison, looks_at_lists_of_the_document_alone) {
    EXPECT_THAT(compare(R"("file": {"packages": {}}, "exec": {"excepted_files": []})"), IsEmpty());
}

TEST_F(policy_comparison, lets_others_stay_where_that_is_wanted) {
    const std::string objects = R"("modules": ["a"])";
    EXPECT_THAT(compare(R"("kmod": {)" + objects + "}", true), ElementsAre("+ kmod modules: a"));
    EXPECT_THAT(compare(R"("kmod": {"exclusive": false, )" + objects + "}"), ElementsAre("+ kmod modules: a"));
    EXPECT_THAT(compare(R"("file": {"exclusive": false, "files": {"/notes": {"excepted_files": ["/vi"]}}})"),
                ElementsAre("+ file files /notes excepted_files: /vi"));
    EXPECT_THAT(compare(R"("net": {"exclusive": false, "packages": {"bash": "allow"}})"),
                ElementsAre("~ net packages: bash is deny, to be allow"));
}

TEST_F(policy_comparison, knows_exceptions_of_what_is_not_protected_yet) {
    (*host.list(proc_programs))["/server"] = {{}, {{{"/old", "/kept"}, {}, {}}}, false};
    EXPECT_THAT(compare(R"("proc": {"programs": {"/server": {"excepted_files": ["/kept"]}}})"),
                ElementsAre("+ proc programs: /server", "- proc programs /server excepted_files: /old"));
    EXPECT_THAT(compare(R"("proc": {"programs": {}})"), IsEmpty());
}

TEST_F(policy_comparison, is_coloured_on_a_terminal) {
    const policy wanted = read_document(R"({"version": 1, "framework": "permissive", "kmod": {"modules": ["a"]}})");
    EXPECT_THAT(tell_differences(find_differences(host, wanted, false), true),
                ElementsAre("\033[33m~ framework is enabled, to be permissive\033[0m",
                            "\033[32m+ kmod modules: a\033[0m", "\033[31m- kmod modules: ext4\033[0m"));
}

TEST_F(policy_comparison, is_told_as_json) {
    const policy wanted = read_document(
        R"({"version": 1, "framework": "permissive", "file": {"files": {"/notes": {"excepted_files": ["/\\xff"]}}},
            "net": {"packages": {}}})");
    EXPECT_EQ(nlohmann::json::parse(write_differences(find_differences(host, wanted, false))),
              nlohmann::json::parse(R"([
        {"change": "update", "place": "", "name": "framework", "host": "enabled", "document": "permissive"},
        {"change": "remove", "place": "/net/packages", "name": "bash", "host": "deny"},
        {"change": "remove", "place": "/file/files/~1notes/excepted_files", "name": "/editor"},
        {"change": "add", "place": "/file/files/~1notes/excepted_files", "name": "/\\xff"}])"));
}

}  // namespace
