// SPDX-License-Identifier: Apache-2.0
// A policy as a document: written, read, and refused with the place of the fault.
#include "state/document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace state;
using testing::ElementsAre;
using testing::Eq;
using testing::Key;
using testing::Pair;

namespace {

using enum list_id;

/// What the reader says to `document`; nothing where it takes it.
std::string refusal_of(const std::string& document) {
    try {
        read_document(document);
    } catch (const failure& fault) {
        return fault.what();
    }
    return {};
}

std::string refusal_beside_version(const std::string& fields) {
    return refusal_of(R"({"version": 1, )" + fields + "}");
}

TEST(state_document, is_written_in_one_order_with_one_name_a_line) {
    policy content;
    content.framework = framework_permissive;
    content.modules = {{"3adm", "off"}, {"exec", "on"}, {"exec script", "warning"}};
    content.list(exec_whitelist) = {{"/b", {whitelist_intact, {}, true}}, {"/a", {whitelist_tampered, {}, true}}};
    content.list(file_directories) = {
        {"/opt", {{}, {{{"/x", "/\xff"}, {}, {"vim"}}}, true}},
        {"/not listed", {{}, {{{"/x"}, {}, {}}}, false}},
        {"/srv", {}},
    };
    content.list(kmod_modules) = {{"ext4", {}}, {"a\\b", {}}};
    content.open_sections = {"kmod", "net"};
    EXPECT_EQ(write_document(content), R"({
  "version": 1,
  "framework": "permissive",
  "modules": {
    "exec": "on",
    "exec script": "warning",
    "3adm": "off"
  },
  "exec": {
    "whitelist": {
      "/a": "tampered",
      "/b": "intact"
    }
  },
  "net": {
    "exclusive": false
  },
  "file": {
    "directories": {
      "/opt": {
        "excepted_files": [
          "/x",
          "/\\xff"
        ],
        "excepted_packages": [
          "vim"
        ]
      },
      "/srv": {}
    }
  },
  "kmod": {
    "exclusive": false,
    "modules": [
      "a\\\\b",
      "ext4"
    ]
  }
}
)");
}

TEST(state_document, that_was_read_is_written_as_it_stood_there) {
    const std::string text = R"({
  "version": 1,
  "net": {
    "exclusive": false,
    "packages": {
      "bash": "allow"
    },
    "programs": {}
  }
}
)";
    EXPECT_EQ(write_document(read_document(text)), text);
}

TEST(state_document, holds_only_what_it_says) {
    const policy content = read_document(R"({"version": 1, "proc": {"programs": {"/a": {}}}})");
    EXPECT_EQ(content.framework, std::nullopt);
    EXPECT_TRUE(content.modules.empty());
    for (const list_spec& list : all_lists()) {
        EXPECT_EQ(content.list(list.id).has_value(), list.id == proc_programs);
    }
    EXPECT_THAT(*content.list(proc_programs), ElementsAre(Key("/a")));
    EXPECT_TRUE(content.open_sections.empty());
}

TEST(state_document, says_whether_other_objects_may_stay) {
    EXPECT_THAT(
        read_document(R"({"version": 1, "exec": {"exclusive": false}, "net": {"exclusive": true}})").open_sections,
        ElementsAre("exec"));
}

TEST(state_document, may_spell_a_name_in_more_ways_than_it_is_written) {
    const policy content = read_document(R"({"version": 1, "kmod": {"modules": ["\\x61\\xFF\\\\\u0062"]}})");
    EXPECT_THAT(*content.list(kmod_modules), ElementsAre(Key("a\xff\\b")));
}

struct refusal {
    std::string fields;
    std::string text;
};

TEST(state_document, that_cannot_be_read_is_refused_with_the_place) {
    const std::vector<refusal> refusals{
        {R"("framework": "on")", "/framework: one of these is needed here: disabled, enabled, permissive"},
        {R"("framework": null)", "/framework: one of these is needed here: disabled, enabled, permissive"},
        {R"("files": {})", "/files: unknown field"},
        {R"("exec": [])", "/exec: an object is needed here"},
        {R"("exec": {"whitelist": []})", "/exec/whitelist: an object is needed here"},
        {R"("exec": {"whitelist": {"/a": "good"}})",
         "/exec/whitelist/~1a: one of these is needed here: intact, tampered, unknown"},
        {R"("exec": {"packages": []})", "/exec/packages: unknown field"},
        {R"("exec": {"exclusive": 0})", "/exec/exclusive: true or false is needed here"},
        {R"("net": {"programs": {"/a": "intact"}})",
         "/net/programs/~1a: one of these is needed here: allow, deny, unknown"},
        {R"("file": {"files": {"/a": []}})", "/file/files/~1a: an object is needed here"},
        {R"("file": {"files": {"/a": {"excepted": []}}})", "/file/files/~1a/excepted: unknown field"},
        {R"("file": {"files": {"/a": {"excepted_files": {}}}})",
         "/file/files/~1a/excepted_files: a list is needed here"},
        {R"("kmod": {"modules": {}})", "/kmod/modules: a list is needed here"},
        {R"("kmod": {"modules": ["a", 1]})", "/kmod/modules/1: a text is needed here"},
        {R"("kmod": {"modules": [""]})", "/kmod/modules/0: an empty name"},
        {R"("kmod": {"modules": ["a\u0000"]})", "/kmod/modules/0: a name cannot hold a byte 0"},
        {R"("kmod": {"modules": ["a\\x00"]})", "/kmod/modules/0: a name cannot hold a byte 0"},
        {R"("kmod": {"modules": ["a\\b"]})", R"(/kmod/modules/0: in a name a backslash begins \\ or \xHH)"},
        {R"("modules": {"web": "on"})", "/modules/web: unknown module"},
        {R"("modules": {"net": true})", "/modules/net: one of these is needed here: off, on, warning"},
    };
    for (const refusal& refused : refusals) {
        EXPECT_EQ(refusal_beside_version(refused.fields), refused.text);
    }
}

TEST(state_document, with_entries_that_contradict_each_other_is_refused) {
    const std::vector<refusal> refusals{
        {R"("kmod": {"modules": ["a", "b", "a"]})", "/kmod/modules/2: stands there twice"},
        {R"("net": {"packages": {"bash": "allow", "bash": "deny"}})", "/net/packages/bash: stands there twice"},
        {R"("net": {}, "net": {})", "/net: stands there twice"},
        {R"("net": {"packages": {"bash": "allow", "b\\x61sh": "deny"}})",
         "/net/packages/bash: stands there twice, in two spellings"},
        {R"("framework": "disabled", "modules": {"net": "off", "kmod": "on"})",
         "/modules/kmod: a module cannot be on while the framework is disabled"},
        {R"("modules": {"exec": "off", "exec script": "on"})",
         "/modules/exec script: script control cannot be on while execution control is off"},
    };
    for (const refusal& refused : refusals) {
        EXPECT_EQ(refusal_beside_version(refused.fields), refused.text);
    }
}

TEST(state_document, of_another_version_or_none_is_refused) {
    EXPECT_EQ(refusal_of(R"({"version": 2})"), "/version: only version 1 can be read");
    EXPECT_EQ(refusal_of(R"({"version": "1"})"), "/version: only version 1 can be read");
    EXPECT_EQ(refusal_of("{}"), "the document: the field 'version' is missing");
    EXPECT_EQ(refusal_of("[]"), "the document: an object is needed here");
}

TEST(state_document, that_is_no_json_is_refused_with_line_and_column) {
    EXPECT_EQ(refusal_of("{\n  nothing"),
              "line 2, column 4: syntax error while parsing object key - invalid literal; last read: '{<U+000A>  no'; "
              "expected string literal");
    EXPECT_EQ(refusal_beside_version(R"("exec": 1e400)"), "number overflow parsing '1e400'");
    EXPECT_NE(refusal_of(""), "");
    EXPECT_NE(refusal_of("{\"version\": 1, \"kmod\": {\"modules\": [\"\xff\"]}}"), "");
}

TEST(state_document, may_be_deep_without_harm) {
    const std::string depth(100000, '[');
    EXPECT_NE(refusal_of(depth), "");
    EXPECT_EQ(refusal_beside_version(R"("exec": )" + depth + std::string(depth.size(), ']')),
              "/exec: an object is needed here");
}

}  // namespace
