// SPDX-License-Identifier: Apache-2.0
// The questions that are asked of the exception lists.
#include <string>

#include "unit/exec_test.h"

namespace {

using testing::Return;

constexpr int from_user = 1;
constexpr int from_dir = 2;
constexpr int from_pkg = 3;

/// One question about an exact entry, and the list that it is asked of.
struct question_row {
    const char* name;
    bool (COrvexExec::*question)(const std::string& text);
    bool asks_pkgs;
    /// An entry that stands for a directory answers with the directory's path.
    bool cuts_star;
};

void PrintTo(const question_row& row, std::ostream* stream) {
    *stream << row.name;
}

std::string name_row(const testing::TestParamInfo<question_row>& info) {
    return info.param.name;
}

class exec_question_test : public exec_test, public testing::WithParamInterface<question_row> {
protected:
    bool ask(const std::string& text, const given_list& list) {
        if (GetParam().asks_pkgs) {
            expect_exception_pkgs(list);
        } else {
            expect_exception_files(list);
        }
        bool answer = false;
        EXPECT_EQ(capture([&] {
                      answer = (exec.*GetParam().question)(text);
                      return 0;
                  }),
                  (call_result{0, ""}));
        return answer;
    }

    COrvexExec exec;
};

TEST_P(exec_question_test, an_entry_is_found_wherever_it_stands) {
    for (const char* const text : {"/a", "/b %s", "/c"}) {
        EXPECT_TRUE(ask(text, give_list({"/a", "/b %s", "/c"}))) << text;
    }
}

TEST_P(exec_question_test, an_entry_counts_whole_and_byte_for_byte) {
    for (const char* const text : {"/op", "/opt/app", "/opt/", "/OPT", " /opt", "opt", ""}) {
        EXPECT_FALSE(ask(text, give_list({"/opt"}))) << text;
    }
    EXPECT_FALSE(ask(std::string("/opt\0x", 6), give_list({"/opt"})));
}

TEST_P(exec_question_test, null_entries_are_skipped) {
    EXPECT_TRUE(ask("/a", give_list({nullptr, "/a", nullptr})));
    EXPECT_FALSE(ask("/b", give_list({nullptr, "/a", nullptr})));
    EXPECT_FALSE(ask("", give_list({nullptr})));
}

TEST_P(exec_question_test, an_empty_list_and_no_list_answer_no) {
    EXPECT_FALSE(ask("/a", give_list({})));
    EXPECT_FALSE(ask("/a", give_no_list()));
    EXPECT_FALSE(ask("/a", give_no_list(3)));
}

TEST_P(exec_question_test, only_the_question_for_a_directory_takes_the_star_for_one) {
    EXPECT_EQ(ask("/a/b", give_list({"/a/b/*"})), GetParam().cuts_star);
    EXPECT_EQ(ask("/a/b/*", give_list({"/a/b/*"})), !GetParam().cuts_star);
    // Whatever stands in front of the star goes with it.
    EXPECT_EQ(ask("/a/", give_list({"/a/b*"})), GetParam().cuts_star);
    EXPECT_EQ(ask("", give_list({"/*"})), GetParam().cuts_star);
    // A star in another place is a character like others.
    EXPECT_TRUE(ask("/a/*/b", give_list({"/a/*/b"})));
    EXPECT_FALSE(ask("/a/b/c", give_list({"/a/b/*"})));
}

TEST_P(exec_question_test, the_first_match_ends_the_search) {
    // An entry that only the question for a directory could stumble over.
    EXPECT_TRUE(ask("/a", give_list({"/a", ""})));
    EXPECT_TRUE(ask("/a", give_list({"/a", "*"})));
}

INSTANTIATE_TEST_SUITE_P(
    operations, exec_question_test,
    testing::Values(question_row{"is_file_in_except_list", &COrvexExec::is_file_in_except_list, false, false},
                    question_row{"is_dir_in_except_list", &COrvexExec::is_dir_in_except_list, false, true},
                    question_row{"has_except_dir", &COrvexExec::has_except_dir, false, true},
                    question_row{"is_pkg_in_except_list", &COrvexExec::is_pkg_in_except_list, true, false},
                    question_row{"has_except_pkg", &COrvexExec::has_except_pkg, true, false}),
    name_row);

TEST(exec_question_overrides_test, the_twin_questions_ask_the_virtual_ones) {
    class answering_exec : public COrvexExec {
    public:
        MOCK_METHOD(bool, is_dir_in_except_list, (const std::string& path), (override));
        MOCK_METHOD(bool, is_pkg_in_except_list, (const std::string& pkg), (override));
        MOCK_METHOD(bool, is_file_excepted_from, (const std::string& path, const int& source), (override));
    };
    testing::StrictMock<answering_exec> exec;
    for (const bool answer : {true, false}) {
        EXPECT_CALL(exec, is_dir_in_except_list("/a")).WillOnce(Return(answer));
        EXPECT_EQ(exec.has_except_dir("/a"), answer);
        EXPECT_CALL(exec, is_pkg_in_except_list("p")).WillOnce(Return(answer));
        EXPECT_EQ(exec.has_except_pkg("p"), answer);
        EXPECT_CALL(exec, is_file_excepted_from("/a", from_user)).WillOnce(Return(answer));
        EXPECT_EQ(exec.is_file_excepted("/a"), answer);
    }
}

// Is a file excepted by any list?

/// A module whose questions about packages the test answers.
class exec_with_owners : public COrvexExec {
public:
    MOCK_METHOD(std::string, get_pkg_by_file, (const std::string& path), (override));
    MOCK_METHOD(bool, is_pkg_in_except_list, (const std::string& pkg), (override));
};

class exec_excepted_test : public exec_test {
protected:
    /// Expects the question for the owner of a file that no package owns.
    void expect_no_owner(const std::string& path) { EXPECT_CALL(exec, get_pkg_by_file(path)).WillOnce(Return("")); }

    bool ask(const std::string& path, int source) {
        bool answer = false;
        EXPECT_EQ(capture([&] {
                      answer = exec.is_file_excepted_from(path, source);
                      return 0;
                  }),
                  (call_result{0, ""}));
        return answer;
    }

    testing::StrictMock<exec_with_owners> exec;
};

TEST_F(exec_excepted_test, an_excepted_package_answers_for_its_files_without_a_look_at_the_file_list) {
    for (const int source : {from_user, from_dir}) {
        EXPECT_CALL(exec, get_pkg_by_file("/a %s")).WillOnce(Return("p"));
        EXPECT_CALL(exec, is_pkg_in_except_list("p")).WillOnce(Return(true));
        EXPECT_TRUE(ask("/a %s", source)) << source;
    }
}

TEST_F(exec_excepted_test, for_another_package_the_file_list_answers) {
    for (const int source : {from_user, from_dir}) {
        EXPECT_CALL(exec, get_pkg_by_file("/a")).WillOnce(Return("p"));
        EXPECT_CALL(exec, is_pkg_in_except_list("p")).WillOnce(Return(false));
        expect_exception_files(give_list({"/b"}));
        if (source == from_user) {
            expect_dir("/b", 0);
        }
        EXPECT_FALSE(ask("/a", source)) << source;
    }
}

TEST_F(exec_excepted_test, without_an_owner_no_package_is_asked_about) {
    for (const int source : {from_user, from_dir}) {
        expect_no_owner("/a");
        expect_exception_files(give_list({}));
        EXPECT_FALSE(ask("/a", source)) << source;
    }
}

TEST_F(exec_excepted_test, a_file_of_a_package_has_its_owner_behind_it) {
    expect_exception_files(give_list({"/a"}));
    expect_dir("/a", 0);
    EXPECT_TRUE(ask("/a", from_pkg));
}

TEST_F(exec_excepted_test, every_other_source_asks_like_the_user) {
    for (const int source : {0, 4, -1}) {
        expect_no_owner("/d/a");
        expect_exception_files(give_list({"/d/*"}));
        expect_dir("/d", 1);
        EXPECT_TRUE(ask("/d/a", source)) << source;
    }
}

TEST_F(exec_excepted_test, no_list_answers_no) {
    for (const given_list& list : {give_no_list(), give_no_list(3), give_list({}), give_list({nullptr})}) {
        expect_no_owner("/a");
        expect_exception_files(list);
        EXPECT_FALSE(ask("/a", from_user));
        expect_no_owner("/a");
        expect_exception_files(list);
        EXPECT_FALSE(ask("/a", from_dir));
        expect_exception_files(list);
        EXPECT_FALSE(ask("/a", from_pkg));
    }
}

/// For the sources whose files a directory covers.
class exec_covered_test : public exec_excepted_test, public testing::WithParamInterface<int> {
protected:
    void expect_owner_question(const std::string& path) {
        if (GetParam() == from_user) {
            expect_no_owner(path);
        }
    }
};

TEST_P(exec_covered_test, an_entry_that_is_no_directory_covers_itself_alone) {
    // Only 1 is a directory.
    for (const int answer : {0, 2, -1}) {
        expect_owner_question("/a");
        expect_exception_files(give_list({"/a"}));
        expect_dir("/a", answer);
        EXPECT_TRUE(ask("/a", GetParam())) << answer;

        expect_owner_question("/a/b");
        expect_exception_files(give_list({"/a"}));
        expect_dir("/a", answer);
        EXPECT_FALSE(ask("/a/b", GetParam())) << answer;
    }
}

TEST_P(exec_covered_test, a_directory_covers_all_that_begins_with_its_path) {
    for (const char* const entry : {"/opt/app/*", "/opt/app"}) {
        for (const char* const path :
             {"/opt/app/x", "/opt/app/sub/x", "/opt/app", "/opt/application", "/opt/app2/x", "/opt/app/"}) {
            expect_owner_question(path);
            expect_exception_files(give_list({entry}));
            expect_dir("/opt/app", 1);
            EXPECT_TRUE(ask(path, GetParam())) << path;
        }
        for (const char* const path : {"/opt/ap", "/opt", "/x/opt/app/x", "/Opt/app/x", ""}) {
            expect_owner_question(path);
            expect_exception_files(give_list({entry}));
            expect_dir("/opt/app", 1);
            EXPECT_FALSE(ask(path, GetParam())) << path;
        }
    }
}

TEST_P(exec_covered_test, a_directory_that_is_gone_covers_a_file_of_its_own_path_alone) {
    expect_owner_question("/d/a");
    expect_exception_files(give_list({"/d/*"}));
    expect_dir("/d", 0);
    EXPECT_FALSE(ask("/d/a", GetParam()));

    expect_owner_question("/d");
    expect_exception_files(give_list({"/d/*"}));
    expect_dir("/d", 0);
    EXPECT_TRUE(ask("/d", GetParam()));
}

TEST_P(exec_covered_test, the_entries_are_asked_about_in_order_until_one_matches) {
    expect_owner_question("/d/a");
    expect_exception_files(give_list({"/x", nullptr, "/y*", "/d/*", "/z"}));
    expect_dir("/x", 0);
    expect_dir("/", 0);
    expect_dir("/d", 1);
    EXPECT_TRUE(ask("/d/a", GetParam()));
}

TEST_P(exec_covered_test, the_root_s_entry_is_cut_to_nothing) {
    expect_owner_question("/a");
    expect_exception_files(give_list({"/*"}));
    expect_dir("", 0);
    EXPECT_FALSE(ask("/a", GetParam()));
}

INSTANTIATE_TEST_SUITE_P(sources, exec_covered_test, testing::Values(from_user, from_pkg));

TEST_F(exec_excepted_test, in_a_directory_walk_an_entry_counts_as_it_stands) {
    const auto list = give_list({nullptr, "/d/*", "/d/a", "", "*"});
    for (const char* const path : {"/d/a", "/d/*"}) {
        expect_no_owner(path);
        expect_exception_files(list);
        EXPECT_TRUE(ask(path, from_dir)) << path;
    }
    for (const char* const path : {"/d/b", "/d", "/d/a/b", "/d/"}) {
        expect_no_owner(path);
        expect_exception_files(list);
        EXPECT_FALSE(ask(path, from_dir)) << path;
    }
}

// Entries that the library never gives.

using exec_bad_entry_death_test = exec_excepted_test;

TEST_F(exec_bad_entry_death_test, an_empty_entry_and_a_lone_star_stop_the_program) {
    for (const char* const entry : {"", "*"}) {
        EXPECT_DEATH(
            {
                expect_exception_files(give_list({entry}));
                exec.is_dir_in_except_list("/a");
            },
            "assertion failed: an entry of the exception files is too short")
            << entry;
        EXPECT_DEATH(
            {
                expect_exception_files(give_list({entry}));
                exec.is_file_excepted_from("/a", from_pkg);
            },
            "assertion failed: an entry of the exception files is too short")
            << entry;
    }
}

}  // namespace
