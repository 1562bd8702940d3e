// SPDX-License-Identifier: Apache-2.0
#include "core/json_text.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using local_service::is_utf8;
using local_service::json_text;

TEST(json_text, knows_utf8_from_its_first_byte_to_its_last) {
    for (const char* text : {"", "ascii", "\xc3\xa9", "\xe4\xb8\xad", "\xf0\x9f\x98\x80", "\xf4\x8f\xbf\xbf"}) {
        EXPECT_TRUE(is_utf8(text)) << text;
    }
    for (const char* text : {
             "\x80", "\xff", "a\xc3", "\xc3(", "\xe4\xb8", "\xf8\x88\x80\x80\x80",  // no character at all
             "\xc0\x80", "\xe0\x80\x80", "\xf0\x80\x80\x80",                        // one in more bytes than it needs
             "\xed\xa0\x80", "\xed\xbf\xbf",                                        // half of a pair
             "\xf4\x90\x80\x80"                                                     // behind the last one
         }) {
        EXPECT_FALSE(is_utf8(text)) << json_text(text);
    }
}

TEST(json_text, escapes_what_a_string_cannot_hold) {
    EXPECT_EQ(json_text("a\"b\\c\nd\re\tf\x01g\x1f 中"), R"("a\"b\\c\nd\re\tf\u0001g\u001f 中")");
}

TEST(json_text, shows_the_bytes_of_what_is_no_utf8) {
    EXPECT_EQ(json_text("a\xff"), R"({"hex": "61ff"})");
}

}  // namespace
