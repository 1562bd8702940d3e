// SPDX-License-Identifier: Apache-2.0
// The row of one file in a listing.
#include <filesystem>
#include <string>

#include "support/scratch_dir.h"
#include "unit/exec_test.h"

namespace {

using testing::Return;

constexpr int from_user = 1;
constexpr int from_dir = 2;
constexpr int from_pkg = 3;
constexpr int all_sources[] = {from_user, from_dir, from_pkg};

/// A module whose question for exceptions the test answers.
class exec_with_exceptions : public COrvexExec {
public:
    MOCK_METHOD(bool, is_file_excepted_from, (const std::string& path, const int& source), (override));
};

class exec_row_test : public exec_test {
protected:
    call_result print(const std::string& path, int source, bool verbose) {
        return capture([&] { return exec.print_whlist_status_by_file(path, source, verbose); });
    }

    void expect_excepted(const std::string& path, int source, bool answer) {
        EXPECT_CALL(exec, is_file_excepted_from(path, source)).WillOnce(Return(answer));
    }

    /// Expects a look-up that works, and that its record goes back.
    void expect_record(const std::string& path, const given_exectl& record) {
        expect_look_up(path, {0, record});
        expect_record_given_back(record.path);
    }

    testing::StrictMock<exec_with_exceptions> exec;
};

TEST_F(exec_row_test, an_intact_record_alone_makes_a_file_executable) {
    const std::pair<given_exectl, const char*> rows[] = {
        {{"/a %s", 0}, "/a %s       可执行\n"},        {{"/other", 0}, "/a %s       可执行\n"},
        {{"/a %s", 1}, "/a %s       不可执行\n"},      {{"/a %s", 2}, "/a %s       不可执行\n"},
        {{"/a %s", -1}, "/a %s       不可执行\n"},     {{std::nullopt, 0}, "/a %s       不可执行\n"},
        {{std::nullopt, 1}, "/a %s       不可执行\n"},
    };
    for (const int source : all_sources) {
        for (const auto& [record, row] : rows) {
            for (const bool verbose : {true, false}) {
                expect_kind("/a %s", 3);
                expect_excepted("/a %s", source, false);
                expect_record("/a %s", record);
                EXPECT_EQ(print("/a %s", source, verbose), (call_result{0, row}));
            }
        }
    }
}

TEST_F(exec_row_test, an_exception_is_not_looked_up) {
    for (const int source : all_sources) {
        expect_kind("/a", 0);
        expect_excepted("/a", source, true);
        EXPECT_EQ(print("/a", source, false), (call_result{0, "/a       例外程序\n"})) << source;
    }
}

TEST_F(exec_row_test, a_failed_look_up_is_told_and_logged_and_the_record_not_given_back) {
    for (const int result : {-1, -4, 1}) {
        for (const int source : all_sources) {
            expect_kind("/a %s", 2);
            expect_excepted("/a %s", source, false);
            expect_look_up("/a %s", {result, {}});
            expect_failure_log("print_whlist_status_by_file", "failed to get is execute by path, path:%s,  ret: %d",
                               "failed to get is execute by path, path:/a %s,  ret: " + std::to_string(result));
            EXPECT_EQ(print("/a %s", source, false), (call_result{-1, "获取文件[/a %s]是否可执行失败!\n"})) << result;
        }
    }
}

TEST_F(exec_row_test, the_four_controlled_kinds_have_a_row) {
    for (const int kind : {0, 1, 2, 3}) {
        expect_kind("/a", kind);
        expect_excepted("/a", from_dir, false);
        expect_record("/a", {"/a", 0});
        EXPECT_EQ(print("/a", from_dir, false), (call_result{0, "/a       可执行\n"})) << kind;
    }
}

TEST_F(exec_row_test, every_other_kind_has_a_line_where_it_is_wanted_and_no_row) {
    for (const int kind : {4, 6, 7, 100, 2147483647, -1, -2147483647 - 1}) {
        for (const int source : all_sources) {
            expect_kind("/a %s", kind);
            EXPECT_EQ(print("/a %s", source, true), (call_result{0, "[/a %s]不受管控的文件类型!\n"})) << kind;
            expect_kind("/a %s", kind);
            EXPECT_EQ(print("/a %s", source, false), (call_result{0, ""})) << kind;
        }
    }
}

/// Real links: they are resolved by the C library.
class exec_link_row_test : public exec_row_test {
protected:
    exec_link_row_test() : target(scratch.write("target", "")), link(scratch.path() + "/link") {
        std::filesystem::create_symlink("target", link);
    }

    const scratch_dir scratch;
    const std::string target;
    const std::string link;
};

TEST_F(exec_link_row_test, a_link_of_a_package_has_neither_row_nor_line) {
    for (const bool verbose : {true, false}) {
        expect_kind(link, 5);
        EXPECT_EQ(print(link, from_pkg, verbose), (call_result{0, ""}));
    }
}

TEST_F(exec_link_row_test, a_link_to_a_controlled_file_is_rated_by_its_own_path) {
    for (const int source : {from_user, from_dir}) {
        for (const int kind : {0, 1, 2, 3}) {
            expect_kind(link, 5);
            expect_kind(target, kind);
            expect_excepted(link, source, false);
            expect_record(link, {link, 0});
            EXPECT_EQ(print(link, source, false), (call_result{0, link + "       可执行\n"})) << source << kind;
        }
        expect_kind(link, 5);
        expect_kind(target, 1);
        expect_excepted(link, source, true);
        EXPECT_EQ(print(link, source, false), (call_result{0, link + "       例外程序\n"})) << source;
    }
}

TEST_F(exec_link_row_test, a_link_to_another_kind_counts_as_that) {
    for (const int source : {from_user, from_dir}) {
        for (const int kind : {4, 5, 6, -1}) {
            expect_kind(link, 5);
            expect_kind(target, kind);
            EXPECT_EQ(print(link, source, true), (call_result{0, "[" + link + "]不受管控的文件类型!\n"})) << kind;
            expect_kind(link, 5);
            expect_kind(target, kind);
            EXPECT_EQ(print(link, source, false), (call_result{0, ""})) << kind;
        }
    }
}

TEST_F(exec_link_row_test, a_link_that_cannot_be_resolved_counts_as_not_controlled) {
    const std::string dangling = scratch.path() + "/dangling";
    std::filesystem::create_symlink("nowhere", dangling);
    expect_kind(dangling, 5);
    EXPECT_EQ(print(dangling, from_user, true), (call_result{0, "[" + dangling + "]不受管控的文件类型!\n"}));
    expect_kind(dangling, 5);
    EXPECT_EQ(print(dangling, from_dir, false), (call_result{0, ""}));
}

}  // namespace
