// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "support/given_variable.h"
#include "support/module_test.h"

namespace {

using testing::MatchesRegex;
using testing::StartsWith;

TEST(digits_test, digits_alone_are_digits) {
    COrvexBase base;
    for (const char* text : {"0", "7", "007", "0123456789", "99999999999999999999999999"}) {
        EXPECT_TRUE(base.is_all_digits(text)) << text;
    }
}

TEST(digits_test, everything_else_is_not) {
    COrvexBase base;
    for (const char* text : {"", "+7", "-7", " 7", "7 ", "7a", "a7", "/", ":", "1.5", "0x1", "１", "\n", "\xb2"}) {
        EXPECT_FALSE(base.is_all_digits(text)) << text;
    }
}

TEST(number_end_test, a_nul_inside_the_text_is_not_its_end) {
    COrvexBase base;
    for (const std::string& text : {std::string("12\0", 3),
                                    std::string("12\0"
                                                "3",
                                                4),
                                    std::string(1, '\0')}) {
        EXPECT_THROW(base.parse_pid(text), std::invalid_argument);
        EXPECT_THROW(base.parse_uint32(text), std::invalid_argument);
    }
}

TEST(digits_test, a_nul_byte_is_no_digit) {
    COrvexBase base;
    EXPECT_FALSE(base.is_all_digits(std::string("1\0", 2)));
}

/// A text and the number that it gives.
template <class Number>
struct good_number {
    const char* text;
    Number number;
};

template <class Number>
void PrintTo(const good_number<Number>& row, std::ostream* stream) {
    *stream << row.text;
}

class parse_uint32_accepts : public testing::TestWithParam<good_number<std::uint32_t>> {};

TEST_P(parse_uint32_accepts, what_the_c_library_accepts) {
    COrvexBase base;
    EXPECT_EQ(base.parse_uint32(GetParam().text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(numbers, parse_uint32_accepts,
                         testing::Values(good_number<std::uint32_t>{"0", 0}, good_number<std::uint32_t>{"", 0},
                                         good_number<std::uint32_t>{"4294967295", 4294967295U},
                                         good_number<std::uint32_t>{"0012", 12}, good_number<std::uint32_t>{"+5", 5},
                                         good_number<std::uint32_t>{" \t\n7", 7}, good_number<std::uint32_t>{"-0", 0},
                                         // strtoul negates in its own width, so this one is 1.
                                         good_number<std::uint32_t>{"-18446744073709551615", 1}));

class parse_uint32_rejects : public testing::TestWithParam<const char*> {};

TEST_P(parse_uint32_rejects, with_its_text) {
    COrvexBase base;
    try {
        base.parse_uint32(GetParam());
        FAIL() << "accepted";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "输入无效或超出uint32_t范围!");
    }
}

INSTANTIATE_TEST_SUITE_P(texts, parse_uint32_rejects,
                         testing::Values("4294967296", "18446744073709551615", "18446744073709551616",
                                         "99999999999999999999", "-1", "12a", "a12", "12 ", " ", "+", "-", "0x10",
                                         "1.5", "1:2", "１"));

class parse_pid_accepts : public testing::TestWithParam<good_number<pid_t>> {};

TEST_P(parse_pid_accepts, what_the_c_library_accepts) {
    COrvexBase base;
    EXPECT_EQ(base.parse_pid(GetParam().text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(numbers, parse_pid_accepts,
                         testing::Values(good_number<pid_t>{"0", 0}, good_number<pid_t>{"", 0},
                                         good_number<pid_t>{"1", 1}, good_number<pid_t>{"2147483647", 2147483647},
                                         good_number<pid_t>{"010", 10}, good_number<pid_t>{"+5", 5},
                                         good_number<pid_t>{" \t\n7", 7}, good_number<pid_t>{"-0", 0}));

class parse_pid_rejects : public testing::TestWithParam<const char*> {};

TEST_P(parse_pid_rejects, with_its_text) {
    COrvexBase base;
    try {
        base.parse_pid(GetParam());
        FAIL() << "accepted";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "输入无效或超出pid范围!");
    }
}

INSTANTIATE_TEST_SUITE_P(texts, parse_pid_rejects,
                         testing::Values("2147483648", "4294967296", "9223372036854775807", "9223372036854775808", "-1",
                                         "-2147483648", "-9223372036854775808", "-9223372036854775809", "12a", "a12",
                                         "12 ", " ", "+", "-", "0x10", "1.5", "1:2"));

TEST(parse_test, an_old_range_error_does_not_count) {
    COrvexBase base;
    errno = ERANGE;
    EXPECT_EQ(base.parse_uint32("5"), 5U);
    errno = ERANGE;
    EXPECT_EQ(base.parse_pid("5"), 5);
}

class current_time_test : public module_test {
protected:
    current_time_test() { tzset(); }

    /// The local time of now, as the line shows it.
    static std::string tell_time() {
        const auto now = std::chrono::system_clock::now();
        const auto second = std::chrono::floor<std::chrono::seconds>(now);
        const std::time_t seconds = std::chrono::system_clock::to_time_t(second);
        std::tm parts = {};
        localtime_r(&seconds, &parts);
        std::ostringstream text;
        text << std::put_time(&parts, "  当前时间: %Y-%m-%d %H:%M:%S.") << std::setfill('0') << std::setw(3)
             << std::chrono::floor<std::chrono::milliseconds>(now - second).count() << '\n';
        return text.str();
    }

    /// Waits until a second has just begun.
    static void wait_for_second() {
        const auto now = std::chrono::system_clock::now();
        std::this_thread::sleep_until(std::chrono::ceil<std::chrono::seconds>(now));
    }

    std::string print(const std::string& label) {
        return capture([&] {
                   base.print_current_time(label);
                   return 0;
               })
            .output;
    }

    COrvexBase base;

private:
    given_variable zone_{"TZ", "TST-05:45"};
};

TEST_F(current_time_test, the_line_has_label_date_time_and_padded_milliseconds) {
    // Shortly after a second has begun the milliseconds need their padding.
    wait_for_second();

    EXPECT_THAT(print("start"),
                MatchesRegex("start  当前时间: [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}\n"));
}

TEST_F(current_time_test, the_time_is_the_local_one_of_now) {
    const std::string before = tell_time();
    const std::string line = print("");
    const std::string after = tell_time();

    EXPECT_LE(before, line);
    EXPECT_LE(line, after);
}

TEST_F(current_time_test, the_label_is_printed_as_it_is) {
    EXPECT_THAT(print("a %s 标签"), StartsWith("a %s 标签  当前时间: "));
}

}  // namespace
