// SPDX-License-Identifier: Apache-2.0
// What `file` and `proc` ask the library's lists: is this protected, and is that an exception of it.
#include <map>
#include <utility>

#include "modules/file/file_module.h"
#include "modules/proc/proc_module.h"
#include "support/module_test.h"

namespace {

using testing::Return;

constexpr int no = 0;
constexpr int yes = 1;

// The lists of protected objects.

class protected_list_test;

/// One question and the list behind it.
struct list_row {
    const char* name;
    bool (*ask)(protected_list_test& test, const std::string& object);
    void (*expect_list)(protected_list_test& test, const given_list& list);
    /// What stands on the list for the object "a".
    const char* stored;
};

class protected_list_test : public module_test, public testing::WithParamInterface<list_row> {
public:
    using module_test::service;

    COrvexFile file;
    COrvexProc proc;

protected:
    void expect_list(const given_list& list) { GetParam().expect_list(*this, list); }

    call_result ask(const std::string& object) {
        return capture([&] { return GetParam().ask(*this, object) ? yes : no; });
    }
};

void PrintTo(const list_row& row, std::ostream* stream) {
    *stream << row.name;
}

void expect_protected_paths(protected_list_test& test, const given_list& list) {
    EXPECT_CALL(test.service, orvex_scene_filectl_get_policy()).WillOnce(Return(list));
}

const list_row list_rows[] = {
    {"is_file_in_policy", [](auto& test, const auto& object) { return test.file.is_file_in_policy(object); },
     expect_protected_paths, "a"},
    {"is_dir_in_policy", [](auto& test, const auto& object) { return test.file.is_dir_in_policy(object); },
     expect_protected_paths, "a/*"},
    {"is_pkg_in_policy", [](auto& test, const auto& object) { return test.file.is_pkg_in_policy(object); },
     [](auto& test, const given_list& list) {
         EXPECT_CALL(test.service, orvex_scene_filectl_get_pkg_policy()).WillOnce(Return(list));
     },
     "a"},
    {"is_proc_in_policy", [](auto& test, const auto& object) { return test.proc.is_proc_in_policy(object); },
     [](auto& test, const given_list& list) {
         EXPECT_CALL(test.service, orvex_scene_taskctl_get_policy()).WillOnce(Return(list));
     },
     "a"},
};

TEST_P(protected_list_test, an_object_is_found_wherever_it_stands) {
    const char* stored = GetParam().stored;
    for (const given_list& list : {give_list({stored, "b", "c"}), give_list({"b", stored, "c"}),
                                   give_list({"b", "c", stored}), give_list({stored, stored})}) {
        expect_list(list);
        EXPECT_EQ(ask("a"), (call_result{yes, ""}));
    }
}

TEST_P(protected_list_test, an_object_is_compared_over_its_whole_length_and_byte_for_byte) {
    const std::string stored = GetParam().stored;
    for (const std::string& other : {stored + "x", "x" + stored, stored + " ", "A" + stored.substr(1), stored + "/",
                                     stored.substr(0, stored.size() - 1), std::string()}) {
        expect_list(give_list({other.c_str()}));
        EXPECT_EQ(ask("a"), (call_result{no, ""})) << other;
    }
}

TEST_P(protected_list_test, an_object_with_a_nul_is_compared_over_its_whole_length) {
    expect_list(give_list({GetParam().stored}));
    EXPECT_EQ(ask(std::string("a\0b", 3)), (call_result{no, ""}));
}

TEST_P(protected_list_test, null_entries_are_skipped) {
    expect_list(give_list({nullptr, GetParam().stored, nullptr}));
    EXPECT_EQ(ask("a"), (call_result{yes, ""}));
    expect_list(give_list({nullptr, nullptr}));
    EXPECT_EQ(ask("a"), (call_result{no, ""}));
}

TEST_P(protected_list_test, an_empty_list_and_no_list_hold_nothing) {
    for (const given_list& list : {give_list({}), give_no_list(), give_no_list(3)}) {
        expect_list(list);
        EXPECT_EQ(ask("a"), (call_result{no, ""}));
    }
}

INSTANTIATE_TEST_SUITE_P(questions, protected_list_test, testing::ValuesIn(list_rows),
                         [](const auto& row) { return row.param.name; });

class protected_dir_test : public module_test {
protected:
    call_result ask(const std::string& dir, const char* stored) {
        EXPECT_CALL(service, orvex_scene_filectl_get_policy()).WillOnce(Return(give_list({stored})));
        return capture([&] { return file.is_dir_in_policy(dir) ? yes : no; });
    }

    COrvexFile file;
};

TEST_F(protected_dir_test, a_directory_is_looked_for_as_its_pattern_only) {
    EXPECT_EQ(ask("/usr/bin", "/usr/bin/*"), (call_result{yes, ""}));
    EXPECT_EQ(ask("/usr/bin/", "/usr/bin/*"), (call_result{yes, ""}));
    EXPECT_EQ(ask("/", "/*"), (call_result{yes, ""}));
    EXPECT_EQ(ask("", "/*"), (call_result{yes, ""}));
    // A file of the same name does not count, and nothing is normalised.
    EXPECT_EQ(ask("/usr/bin", "/usr/bin"), (call_result{no, ""}));
    EXPECT_EQ(ask("/usr/bin/", "/usr/bin/"), (call_result{no, ""}));
    EXPECT_EQ(ask("/usr/bin//", "/usr/bin/*"), (call_result{no, ""}));
    EXPECT_EQ(ask("/usr/bin/*", "/usr/bin/*"), (call_result{no, ""}));
}

// The exception records.

given_exceptions give_records(std::vector<given_exceptions_of> records) {
    return give_items(std::move(records));
}

class exception_question_test : public module_test {
protected:
    /// Expects the records to be fetched, and given back at the end whatever they are.
    call_result ask_file(const given_exceptions& records, const std::string& object, const std::string& exception) {
        EXPECT_CALL(service, orvex_scene_filectl_exception_get_policy()).WillOnce(Return(records));
        if (records.count != 0 && records.items) {
            expect_dir_questions({object, exception});
        }
        EXPECT_CALL(service, orvex_scene_filectl_exception_policy_free(records.items.has_value(), records.count));
        return capture([&] { return file.is_except_in_policy(object, exception) ? yes : no; });
    }

    /// Asks `proc`; the program itself is never asked to be a directory.
    call_result ask_proc(const given_exceptions& records, const std::string& path, const std::string& exception) {
        EXPECT_CALL(service, orvex_scene_taskctl_exception_get_policy()).WillOnce(Return(records));
        if (records.count != 0 && records.items) {
            expect_dir_questions({exception});
        }
        EXPECT_CALL(service, orvex_scene_taskctl_exception_policy_free(records.items.has_value(), records.count));
        return capture([&] { return proc.is_proc_except_in_policy(path, exception) ? yes : no; });
    }

    void expect_both(const given_exceptions& records, const std::string& object, const std::string& exception,
                     int answer) {
        EXPECT_EQ(ask_file(records, object, exception), (call_result{answer, ""})) << object << " " << exception;
        EXPECT_EQ(ask_proc(records, object, exception), (call_result{answer, ""})) << object << " " << exception;
    }

    /// What the library says to be a directory, and with which number.
    std::map<std::string, int> dirs;

    COrvexFile file;
    COrvexProc proc;

private:
    void expect_dir_questions(const std::vector<std::string>& objects) {
        for (const std::string& object : objects) {
            const auto entry = dirs.find(object);
            EXPECT_CALL(service, path_is_dir(object.c_str())).WillOnce(Return(entry == dirs.end() ? 0 : entry->second));
        }
    }
};

TEST_F(exception_question_test, an_exception_is_found_wherever_it_stands) {
    const given_exceptions records = give_records({{"/a", give_list({"/x"})}, {"/b", give_list({"/y", "pkg", "/z"})}});
    expect_both(records, "/a", "/x", yes);
    expect_both(records, "/b", "/y", yes);
    expect_both(records, "/b", "pkg", yes);
    expect_both(records, "/b", "/z", yes);
}

TEST_F(exception_question_test, an_exception_of_another_object_does_not_count) {
    const given_exceptions records = give_records({{"/a", give_list({"/x"})}, {"/b", give_list({"/y"})}});
    expect_both(records, "/a", "/y", no);
    expect_both(records, "/b", "/x", no);
    expect_both(records, "/c", "/x", no);
}

TEST_F(exception_question_test, both_are_compared_over_their_whole_length_and_byte_for_byte) {
    const given_exceptions records = give_records({{"/a", give_list({"/x"})}});
    for (const std::string other : {"/", "/ab", "/A", "/a ", "/a/", ""}) {
        expect_both(records, other, "/x", no);
    }
    expect_both(records, std::string("/a\0b", 4), "/x", no);
    for (const std::string other : {"/", "/xy", "/X", " /x", "/x/", ""}) {
        expect_both(records, "/a", other, no);
    }
    expect_both(records, "/a", std::string("/x\0y", 4), no);
}

TEST_F(exception_question_test, the_first_record_of_the_object_decides) {
    const given_exceptions records =
        give_records({{"/a", give_list({"/x"})}, {"/a", give_list({"/y"})}, {"/b", give_list({})}});
    expect_both(records, "/a", "/x", yes);
    expect_both(records, "/a", "/y", no);
    expect_both(records, "/b", "/x", no);
}

TEST_F(exception_question_test, null_resources_and_null_exceptions_are_skipped) {
    const given_exceptions records = give_records({{std::nullopt, give_list({"/x"})},
                                                   {"/a", give_list({nullptr, "/y", nullptr})},
                                                   {std::nullopt, give_list({})}});
    expect_both(records, "/a", "/y", yes);
    expect_both(records, "/a", "/x", no);
    expect_both(records, "", "/x", no);
    expect_both(records, "/a", "", no);
}

TEST_F(exception_question_test, without_records_nothing_else_is_asked_and_they_are_given_back_all_the_same) {
    for (const given_exceptions& records :
         {give_records({}), given_exceptions{std::nullopt, 0}, given_exceptions{std::nullopt, 3}}) {
        expect_both(records, "/a", "/x", no);
    }
}

TEST_F(exception_question_test, an_exception_that_is_a_directory_is_looked_for_as_its_pattern) {
    dirs = {{"/usr/bin", 1}, {"/usr/bin/", 1}, {"/", 1}};
    const given_exceptions records = give_records({{"/a", give_list({"/usr/bin/*", "/*"})}});
    expect_both(records, "/a", "/usr/bin", yes);
    expect_both(records, "/a", "/usr/bin/", yes);
    expect_both(records, "/a", "/", yes);
    const given_exceptions plain = give_records({{"/a", give_list({"/usr/bin", "/usr/bin/"})}});
    expect_both(plain, "/a", "/usr/bin", no);
    expect_both(plain, "/a", "/usr/bin/", no);
}

TEST_F(exception_question_test, any_other_answer_than_1_is_no_directory) {
    for (const int answer : {2, -1}) {
        dirs = {{"/usr/bin", answer}};
        expect_both(give_records({{"/a", give_list({"/usr/bin/*"})}}), "/a", "/usr/bin", no);
        expect_both(give_records({{"/a", give_list({"/usr/bin"})}}), "/a", "/usr/bin", yes);
    }
}

TEST_F(exception_question_test, a_package_named_like_a_directory_matches_nothing) {
    dirs = {{"pkg", 1}};
    expect_both(give_records({{"/a", give_list({"pkg"})}}), "/a", "pkg", no);
}

TEST_F(exception_question_test, only_file_looks_for_an_object_that_is_a_directory_as_its_pattern) {
    dirs = {{"/dir", 1}, {"/dir/", 1}};
    const given_exceptions as_pattern = give_records({{"/dir/*", give_list({"/x"})}});
    const given_exceptions as_path = give_records({{"/dir", give_list({"/x"})}});
    EXPECT_EQ(ask_file(as_pattern, "/dir", "/x"), (call_result{yes, ""}));
    EXPECT_EQ(ask_file(as_pattern, "/dir/", "/x"), (call_result{yes, ""}));
    EXPECT_EQ(ask_file(as_path, "/dir", "/x"), (call_result{no, ""}));
    EXPECT_EQ(ask_proc(as_pattern, "/dir", "/x"), (call_result{no, ""}));
    EXPECT_EQ(ask_proc(as_path, "/dir", "/x"), (call_result{yes, ""}));

    // Gone from the disk it is no directory any more.
    dirs = {};
    EXPECT_EQ(ask_file(as_pattern, "/dir", "/x"), (call_result{no, ""}));
}

}  // namespace
