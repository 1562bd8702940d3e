// SPDX-License-Identifier: Apache-2.0
// Names in a document, in a shell and on a terminal.
#include "state/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

using namespace state;
using testing::Eq;

namespace {

/// Names that a careless program would trip over. The last ones are no UTF-8: a lone byte, an overlong form, a half of
/// a surrogate pair and a character that breaks off.
const std::vector<std::string> odd_names{
    "plain",
    "two words",
    "it's",
    R"("double")",
    "%s%n",
    "-dash",
    "~",
    "$HOME `id`",
    "执行",
    "new\nline",
    "\t\a\x1b[31m",
    "\\",
    R"(\x41)",
    R"(\\xff)",
    "a\\",
    "\x7f",
    "\xc2\x85",
    "\xe2\x80\xae",
    "\xff\xfe",
    "\xc0\xaf",
    "\xed\xa0\x80",
    "broken\xe5\x86",
    "1\x80"
    "1",
    "*",
    "{a,b}",
    "#",
};

/// What a shell makes of `word`.
std::string read_by_shell(const std::string& word) {
    const std::string path = testing::TempDir() + "orvex_state_words";
    std::ofstream(path, std::ios::binary) << "printf %s " << word;
    FILE* shell = popen(("bash '" + path + "'").c_str(), "r");
    std::string text;
    std::array<char, 256> buffer{};
    for (std::size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), shell)) > 0;) {
        text.append(buffer.data(), got);
    }
    EXPECT_EQ(pclose(shell), 0);
    return text;
}

TEST(escaped_name, is_the_name_where_it_is_plain_text) {
    EXPECT_EQ(escape_name("/opt/two words"), "/opt/two words");
    EXPECT_EQ(escape_name("/执行\n"), "/执行\n");
}

TEST(escaped_name, spells_bytes_that_are_no_character_and_doubles_the_backslash) {
    EXPECT_EQ(escape_name("/\xff"
                          "a"),
              R"(/\xffa)");
    EXPECT_EQ(escape_name(R"(/a\b)"), R"(/a\\b)");
    EXPECT_EQ(escape_name("\xc0\xaf"), R"(\xc0\xaf)");
}

TEST(escaped_name, stands_for_the_name_that_it_came_from) {
    for (const std::string& name : odd_names) {
        EXPECT_THAT(unescape_name(escape_name(name)), Eq(name));
    }
}

TEST(escaped_name, is_refused_where_a_backslash_begins_no_form) {
    for (const char* text : {"\\", "a\\b", R"(\x)", R"(\xf)", R"(\xg0)", R"(\x0g)", R"(\x-1)", R"(\\\)", R"(\X41)"}) {
        EXPECT_EQ(unescape_name(text), std::nullopt) << text;
    }
}

TEST(quoted_word, is_as_it_stands_where_no_shell_would_change_it) {
    EXPECT_EQ(quote_word("/opt/a-b_c.d:/e"), "/opt/a-b_c.d:/e");
    EXPECT_EQ(quote_word(""), "''");
    EXPECT_EQ(quote_word("two words"), "'two words'");
    EXPECT_EQ(quote_word("it's"), R"('it'\''s')");
    EXPECT_EQ(quote_word("执行"), "'执行'");
}

TEST(quoted_word, shows_no_byte_that_a_terminal_would_act_on) {
    EXPECT_EQ(quote_word("\x1b[31m'\\"), R"($'\033[31m\'\\')");
    EXPECT_EQ(quote_word("1\x80"
                         "1"),
              R"($'1\2001')");
    EXPECT_EQ(quote_word("\xc2\x9b"), R"($'\302\233')");
    EXPECT_EQ(quote_word("\xe2\x80\xae"), R"($'\342\200\256')");
}

TEST(quoted_word, is_read_by_a_shell_as_the_word_that_it_came_from) {
    for (const std::string& name : odd_names) {
        EXPECT_EQ(read_by_shell(quote_word(name)), name);
    }
}

TEST(visible_text, keeps_tabs_and_spells_the_rest_of_what_is_not_printed) {
    EXPECT_EQ(make_visible("行\t1\n2\x1b[2J\xff\x9b\\"), "行\t1\\x0a2\\x1b[2J\\xff\\x9b\\");
}

}  // namespace
