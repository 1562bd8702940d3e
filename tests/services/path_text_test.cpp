// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <stdexcept>

#include "framework/module_base.h"
#include "support/given_variable.h"
#include "support/module_test.h"

namespace {

using testing::ElementsAre;

struct text_result {
    std::string text;
    std::string output;
};

bool operator==(const text_result& left, const text_result& right) {
    return left.text == right.text && left.output == right.output;
}

void PrintTo(const text_result& result, std::ostream* stream) {
    *stream << "[" << result.text << "] with the output\n" << result.output;
}

const std::string home_line = "错误: HOME环境变量未设置!\n";
const std::string tilde_line = "错误: home无效, 无法扩展~字符!\n";

class path_text_test : public module_test {
protected:
    text_result get_home_dir() {
        std::string text;
        const call_result result = capture([&] {
            text = base.get_home_dir();
            return 0;
        });
        return {text, result.output};
    }

    text_result expand(const std::string& path) {
        std::string text;
        const call_result result = capture([&] {
            text = base.expand_tilde(path);
            return 0;
        });
        return {text, result.output};
    }

    /// Expects the answers for a home directory, with nothing on the screen.
    void expect_under_home(const std::string& home, const std::vector<std::string>& under,
                           const std::vector<std::string>& elsewhere) {
        const given_variable variable("HOME", home.c_str());
        for (const std::string& path : under) {
            EXPECT_EQ(ask_under_home(path), (call_result{1, ""})) << path;
        }
        for (const std::string& path : elsewhere) {
            EXPECT_EQ(ask_under_home(path), (call_result{0, ""})) << path;
        }
    }

    /// Tells whether `path` is under home, and what was printed.
    call_result ask_under_home(const std::string& path) {
        return capture([&] { return base.is_path_under_home(path) ? 1 : 0; });
    }

    COrvexBase base;
};

TEST_F(path_text_test, home_is_the_variable_s_text) {
    const given_variable home("HOME", "/home/../x y/");
    EXPECT_EQ(get_home_dir(), (text_result{"/home/../x y/", ""}));
}

TEST_F(path_text_test, empty_home_is_no_mistake) {
    const given_variable home("HOME", "");
    EXPECT_EQ(get_home_dir(), (text_result{"", ""}));
}

TEST_F(path_text_test, unset_home_is_told) {
    const given_variable home("HOME", nullptr);
    EXPECT_EQ(get_home_dir(), (text_result{"", home_line}));
}

TEST_F(path_text_test, tilde_in_front_is_expanded) {
    const given_variable home("HOME", "/root");
    EXPECT_EQ(expand("~"), (text_result{"/root", ""}));
    EXPECT_EQ(expand("~/a"), (text_result{"/root/a", ""}));
    EXPECT_EQ(expand("~/"), (text_result{"/root/", ""}));
    EXPECT_EQ(expand("~//a/~"), (text_result{"/root//a/~", ""}));
}

TEST_F(path_text_test, other_paths_stay_as_they_are) {
    const given_variable home("HOME", "/root");
    EXPECT_EQ(expand(""), (text_result{"", ""}));
    EXPECT_EQ(expand("~b/a"), (text_result{"~b/a", ""}));
    EXPECT_EQ(expand("~~"), (text_result{"~~", ""}));
    EXPECT_EQ(expand("a/~"), (text_result{"a/~", ""}));
    EXPECT_EQ(expand(" ~/a"), (text_result{" ~/a", ""}));
    EXPECT_EQ(expand("/a"), (text_result{"/a", ""}));
}

TEST_F(path_text_test, tilde_without_home_stays_and_is_told_twice) {
    const given_variable home("HOME", nullptr);
    for (const std::string path : {"~", "~/a", "~b/a"}) {
        EXPECT_EQ(expand(path), (text_result{path, home_line + tilde_line}));
    }
}

TEST_F(path_text_test, tilde_with_an_empty_home_stays_and_is_told_once) {
    const given_variable home("HOME", "");
    EXPECT_EQ(expand("~/a"), (text_result{"~/a", tilde_line}));
}

TEST_F(path_text_test, path_without_tilde_needs_no_home) {
    const given_variable home("HOME", nullptr);
    EXPECT_EQ(expand(""), (text_result{"", ""}));
    EXPECT_EQ(expand("a~"), (text_result{"a~", ""}));
}

/// A module with a home of its own.
class base_at_home : public COrvexBase {
public:
    std::string get_home_dir() override { return "/own"; }
};

TEST_F(path_text_test, tilde_is_expanded_to_the_module_s_own_home) {
    base_at_home at_home;
    EXPECT_EQ(at_home.expand_tilde("~/a"), "/own/a");
}

TEST_F(path_text_test, absolute_path_begins_with_a_slash) {
    EXPECT_TRUE(base.is_absolute_path("/"));
    EXPECT_TRUE(base.is_absolute_path("//a/../b"));
    EXPECT_FALSE(base.is_absolute_path("a/"));
    EXPECT_FALSE(base.is_absolute_path(" /a"));
    EXPECT_FALSE(base.is_absolute_path("~/a"));
}

TEST_F(path_text_test, empty_path_is_neither_absolute_nor_not) {
    EXPECT_THROW(base.is_absolute_path(""), std::out_of_range);
}

TEST_F(path_text_test, path_in_the_home_directory_is_under_home) {
    expect_under_home("/home/a", {"/home/a", "/home/a/x", "/home//b/../a/./x"},
                      {"/home", "/home/", "/home/b/a", "/home/a/../b", "/x/home/a"});
}

TEST_F(path_text_test, longer_name_that_begins_like_the_home_is_under_home) {
    expect_under_home("/home/a", {"/home/ab/x"}, {});
}

TEST_F(path_text_test, home_is_normalised_for_the_comparison) {
    expect_under_home("/home/./b/../a", {"/home/a/x"}, {"/home/b/x"});
}

TEST_F(path_text_test, slash_behind_the_home_is_asked_for_too) {
    expect_under_home("/home/a/", {"/home/a/x"}, {"/home/a", "/home/ab"});
}

TEST_F(path_text_test, relative_path_is_seen_from_the_working_directory) {
    expect_under_home(std::filesystem::current_path(), {"x", "~"}, {"../"});
}

TEST_F(path_text_test, every_path_is_under_an_empty_home) {
    expect_under_home("", {"/", "x"}, {});
}

TEST_F(path_text_test, nothing_is_under_an_unset_home) {
    const given_variable home("HOME", nullptr);
    EXPECT_EQ(ask_under_home("/"), (call_result{0, "无法从环境变量中获取家目录!\n"}));
}

TEST_F(path_text_test, tail_begins_with_the_last_slash) {
    EXPECT_EQ(base.get_path_tail("/a/b"), "/b");
    EXPECT_EQ(base.get_path_tail("a/b"), "/b");
    EXPECT_EQ(base.get_path_tail("/a/"), "/");
    EXPECT_EQ(base.get_path_tail("b"), "b");
    EXPECT_EQ(base.get_path_tail(""), "");
}

TEST_F(path_text_test, file_name_stands_behind_the_last_slash) {
    EXPECT_EQ(base.get_path_filename("/a/b.c"), "b.c");
    EXPECT_EQ(base.get_path_filename("b"), "b");
    EXPECT_EQ(base.get_path_filename(".."), "..");
    EXPECT_EQ(base.get_path_filename("/a/文件"), "文件");
    EXPECT_EQ(base.get_path_filename("/a/"), "");
    EXPECT_EQ(base.get_path_filename("/"), "");
}

TEST_F(path_text_test, empty_path_has_no_file_name) {
    try {
        base.get_path_filename("");
        FAIL() << "a file name came out";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "无效的路径");
    }
}

TEST_F(path_text_test, pieces_stand_between_the_delimiters) {
    EXPECT_THAT(base.split_string("a:b:a", ':'), ElementsAre("a", "b", "a"));
    EXPECT_THAT(base.split_string("a b,c", ','), ElementsAre("a b", "c"));
    EXPECT_THAT(base.split_string("a\nb:c", ':'), ElementsAre("a\nb", "c"));
    EXPECT_THAT(base.split_string("a", ':'), ElementsAre("a"));
}

TEST_F(path_text_test, empty_pieces_are_dropped) {
    EXPECT_THAT(base.split_string("a::b", ':'), ElementsAre("a", "b"));
    EXPECT_THAT(base.split_string(":a:", ':'), ElementsAre("a"));
    EXPECT_THAT(base.split_string("::", ':'), ElementsAre());
    EXPECT_THAT(base.split_string("", ':'), ElementsAre());
}

}  // namespace
