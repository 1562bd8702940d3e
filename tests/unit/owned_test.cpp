// SPDX-License-Identifier: Apache-2.0
#include "framework/owned.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "service/kmodctl.h"
#include "support/module_test.h"

namespace {

using testing::ElementsAre;
using testing::Return;
using testing::StrEq;

class owned_test : public module_test {
protected:
    /// The list that the library answers with.
    void expect_list(const given_list& list) {
        EXPECT_CALL(service, orvex_scene_kmodctl_get_policy()).WillOnce(Return(list));
    }

    std::size_t count_out() { return service.memory().count_out(); }
};

TEST_F(owned_test, a_text_is_given_back_at_its_end) {
    {
        const owned_text text(service.memory().hand_out_text("a", way_back::with_free));
        EXPECT_EQ(count_out(), 1U);
    }
    EXPECT_EQ(count_out(), 0U);
}

TEST_F(owned_test, a_null_text_is_nothing_to_give_back) {
    const owned_text text(nullptr);
    EXPECT_EQ(text, nullptr);
}

TEST_F(owned_test, a_copy_is_another_text_up_to_the_first_nul) {
    const std::string text("ab\0cd", 5);
    const owned_text copy = copy_text(text);
    EXPECT_STREQ(copy.get(), "ab");
    EXPECT_NE(copy.get(), text.c_str());
}

TEST_F(owned_test, a_list_gives_every_string_and_the_array_back) {
    expect_list(give_list({"a", "b", "c"}));
    {
        const owned_list list(orvex_scene_kmodctl_get_policy);
        EXPECT_EQ(count_out(), 4U);
    }
    EXPECT_EQ(count_out(), 0U);
}

TEST_F(owned_test, an_array_without_entries_is_given_back_too) {
    expect_list(give_list({}));
    {
        const owned_list list(orvex_scene_kmodctl_get_policy);
        EXPECT_EQ(count_out(), 1U);
        EXPECT_EQ(list.begin(), list.end());
    }
    EXPECT_EQ(count_out(), 0U);
}

TEST_F(owned_test, a_list_is_walked_in_order_with_its_null_entries) {
    expect_list(give_list({"b", nullptr, "a"}));
    const owned_list list(orvex_scene_kmodctl_get_policy);
    EXPECT_THAT(std::vector<const char*>(list.begin(), list.end()), ElementsAre(StrEq("b"), nullptr, StrEq("a")));
}

TEST_F(owned_test, a_null_list_is_empty_whatever_its_count) {
    for (const std::uint64_t count : {0U, 3U}) {
        expect_list(give_no_list(count));
        const owned_list list(orvex_scene_kmodctl_get_policy);
        EXPECT_EQ(list.begin(), list.end()) << count;
        EXPECT_FALSE(list.contains("")) << count;
    }
}

TEST_F(owned_test, a_list_contains_what_equals_an_entry_in_all_bytes_and_in_length) {
    expect_list(give_list({nullptr, "ab", "", "cd"}));
    const owned_list list(orvex_scene_kmodctl_get_policy);
    for (const char* text : {"ab", "", "cd"}) {
        EXPECT_TRUE(list.contains(text)) << text;
    }
    for (const char* text : {"a", "abc", "AB", "b", " ab", "cd "}) {
        EXPECT_FALSE(list.contains(text)) << text;
    }
    EXPECT_FALSE(list.contains(std::string("ab\0", 3)));
}

TEST_F(owned_test, a_list_is_fetched_once_with_a_count_of_0) {
    int calls = 0;
    const auto fetch = [&](std::uint64_t* count) -> char** {
        ++calls;
        EXPECT_EQ(*count, 0U);
        return nullptr;
    };
    const owned_list list(fetch);
    EXPECT_EQ(calls, 1);
}

TEST_F(owned_test, a_batch_takes_texts_over_and_gives_them_back) {
    {
        text_batch batch;
        batch.add(owned_text(service.memory().hand_out_text("a", way_back::with_free)));
        batch.add(owned_text(service.memory().hand_out_text("b", way_back::with_free)));
        EXPECT_EQ(count_out(), 2U);
    }
    EXPECT_EQ(count_out(), 0U);
}

TEST_F(owned_test, a_batch_lends_its_texts_in_order) {
    text_batch batch;
    for (int number = 0; number < 100; ++number) {
        batch.add(copy_text(std::to_string(number)));
    }
    ASSERT_EQ(batch.count(), 100);
    EXPECT_FALSE(batch.empty());
    EXPECT_STREQ(batch.data()[0], "0");
    EXPECT_STREQ(batch.data()[99], "99");
}

TEST_F(owned_test, a_batch_that_moves_gives_its_texts_back_once) {
    {
        text_batch batch;
        batch.add(owned_text(service.memory().hand_out_text("a", way_back::with_free)));
        text_batch next(std::move(batch));
        EXPECT_EQ(next.count(), 1);
        EXPECT_STREQ(next.data()[0], "a");
    }
    EXPECT_EQ(count_out(), 0U);
}

TEST_F(owned_test, a_new_batch_is_empty) {
    text_batch batch;
    EXPECT_TRUE(batch.empty());
    EXPECT_EQ(batch.count(), 0);
}

}  // namespace
