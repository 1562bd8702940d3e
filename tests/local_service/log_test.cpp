// SPDX-License-Identifier: Apache-2.0
#include "core/log.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/store.h"
#include "local_store.h"
#include "service/log.h"

using testing::ElementsAre;

namespace {

class log_records : public local_store {
protected:
    template <class... Arguments>
    static std::string logged(const char* format, Arguments... arguments) {
        orvex_log(18, "tag", "function", format, arguments...);
        return log_messages().back();
    }
};

TEST_F(log_records, keep_level_tag_function_and_message) {
    orvex_log(18, "kmod", "add_kmod_by_name", "add kmod failed, name=%s, ret=%d", "dummy", -3);
    const std::vector<local_service::log_record> records = local_service::read_log_after(0);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, 18);
    EXPECT_EQ(records[0].tag, "kmod");
    EXPECT_EQ(records[0].function, "add_kmod_by_name");
    EXPECT_EQ(records[0].message, "add kmod failed, name=dummy, ret=-3");
    EXPECT_GT(records[0].time_ms, 1600000000000);
}

TEST_F(log_records, may_be_written_by_any_user) {
    become(1000);
    EXPECT_EQ(logged("text"), "text");
}

TEST_F(log_records, show_a_number_passed_for_a_text) {
    EXPECT_EQ(logged("pid: %s, ret: %d", 4242, -5), "pid: 4242, ret: -5");
    EXPECT_EQ(logged("pid: %s", -1), "pid: -1");
    EXPECT_EQ(logged("pid: %s", 1), "pid: 1");
}

TEST_F(log_records, show_a_broken_conversion_as_it_stands) {
    EXPECT_EQ(logged("file = %s, except = &s, ret = %d", "/a", 7), "file = /a, except = &s, ret = 7");
    EXPECT_EQ(logged("100%! %y %n %"), "100%! %y %n %");
}

TEST_F(log_records, show_a_null_text) {
    EXPECT_EQ(logged("<%s>", static_cast<const char*>(nullptr)), "<(null)>");
}

TEST_F(log_records, survive_a_format_with_more_conversions_than_arguments) {
    const std::string message = logged("%s %s %s %s %s %s %s %s %s %s");
    EXPECT_FALSE(message.empty());
}

TEST_F(log_records, survive_a_text_without_an_end) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    std::memset(pages, 'a', page);
    ASSERT_EQ(mprotect(static_cast<char*>(pages) + page, page, PROT_NONE), 0);
    const auto address = reinterpret_cast<std::uintptr_t>(pages);
    EXPECT_EQ(logged("%s", pages), std::to_string(static_cast<std::int32_t>(address)));
    EXPECT_EQ(logged("%.3s", pages), "aaa");
    munmap(pages, 2 * page);
}

TEST_F(log_records, render_the_usual_conversions) {
    EXPECT_EQ(logged("%u|%ld|%lu|%llx|%zu|%X|%o", 7U, -8L, 9UL, 255ULL, std::size_t{3}, 171U, 8U), "7|-8|9|ff|3|AB|10");
    EXPECT_EQ(logged("%c%c|%%|%5d|%-5d|%05d|%+d|%.3d", 'a', 'b', 42, 42, 42, 42, 7), "ab|%|   42|42   |00042|+42|007");
    EXPECT_EQ(logged("%5s|%-5s|%.2s|%*d", "ab", "ab", "abc", 4, 1), "   ab|ab   |ab|   1");
    EXPECT_EQ(logged("%qd|%lld", 5000000000LL, -5000000000LL), "5000000000|-5000000000");
    EXPECT_EQ(logged("%.2f|%g|%hhd|%hd", 1.5, 0.25, 300, 65537), "1.50|0.25|44|1");
}

TEST_F(log_records, take_each_argument_by_its_width) {
    EXPECT_EQ(logged("%lld|%qd|%jd|%td", -1LL, -2LL, std::intmax_t{-3}, std::ptrdiff_t{-4}), "-1|-2|-3|-4");
    // More than an int holds.
    EXPECT_EQ(logged("%ld|%lld|%qd|%jd|%td|%zd", 5000000001L, 5000000002LL, 5000000003LL, std::intmax_t{5000000004},
                     std::ptrdiff_t{5000000005}, ssize_t{5000000006}),
              "5000000001|5000000002|5000000003|5000000004|5000000005|5000000006");
    EXPECT_EQ(logged("%hhu|%hu|%hhx|%hi", 300, 65537, -1, 65537), "44|1|ff|1");
    EXPECT_EQ(logged("%hhu|%hu|%u|%lu", 255, 65535, 4294967295U, 70000UL), "255|65535|4294967295|70000");
    EXPECT_EQ(logged("%Lf|%p", 1.5L, nullptr), "1.500000|(nil)");
    EXPECT_EQ(logged("%.*d|%.*s|<%.s>", -1, 7, -1, "text", "text"), "7|text|<>");
}

TEST_F(log_records, bound_the_width_of_a_field) {
    EXPECT_EQ(logged("%999999999d", 1).size(), 4096U);
    EXPECT_EQ(logged("%*d", 2000000000, 1).size(), 4096U);
}

TEST_F(log_records, keep_all_bytes_of_a_message) {
    EXPECT_EQ(logged("%s", "a\xFF\xFE\n%s \xE4\xB8\xAD"), "a\xFF\xFE\n%s \xE4\xB8\xAD");
}

TEST_F(log_records, are_bounded_in_length) {
    const std::string long_text(100000, 'x');
    EXPECT_EQ(logged("%s", long_text.c_str()).size(), 65536U);
}

TEST_F(log_records, survive_null_for_every_text) {
    orvex_log(18, nullptr, nullptr, nullptr);
    EXPECT_THAT(log_messages(), ElementsAre(""));
}

TEST_F(log_records, cannot_be_written_and_nobody_notices) {
    const std::string blocked = write("file", "");
    setenv("ORVEX_LOCAL_STATE", (blocked + "/state").c_str(), 1);
    orvex_log(18, "tag", "function", "%s", "text");
}

TEST_F(log_records, are_dropped_after_ten_thousand_newer_ones) {
    local_service::transaction many;
    for (int number = 1; number <= 10005; ++number) {
        local_service::write_log({6, "tag", "function", std::to_string(number)});
    }
    many.commit();
    const std::vector<std::string> messages = log_messages();
    EXPECT_EQ(messages.size(), 10000U);
    EXPECT_EQ(messages.front(), "6");
    EXPECT_EQ(messages.back(), "10005");
}

}  // namespace
