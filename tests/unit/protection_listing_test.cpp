// SPDX-License-Identifier: Apache-2.0
// The listings of `file` and `proc`. They share the row and its two shapes.
#include <stdexcept>
#include <utility>

#include "modules/file/file_module.h"
#include "modules/proc/proc_module.h"
#include "support/captured_stream.h"
#include "support/module_test.h"

namespace {

using testing::Return;

given_exceptions give_records(std::vector<given_exceptions_of> records) {
    return give_items(std::move(records));
}

class listing_test : public module_test {
protected:
    void expect_files_fetched(const given_list& paths, const given_list& packages, const given_exceptions& records) {
        EXPECT_CALL(service, orvex_scene_filectl_get_policy()).WillOnce(Return(paths));
        EXPECT_CALL(service, orvex_scene_filectl_get_pkg_policy()).WillOnce(Return(packages));
        EXPECT_CALL(service, orvex_scene_filectl_exception_get_policy()).WillOnce(Return(records));
        EXPECT_CALL(service, orvex_scene_filectl_exception_policy_free(records.items.has_value(), records.count));
    }

    void expect_programs_fetched(const given_list& programs, const given_exceptions& records) {
        EXPECT_CALL(service, orvex_scene_taskctl_get_policy()).WillOnce(Return(programs));
        EXPECT_CALL(service, orvex_scene_taskctl_exception_get_policy()).WillOnce(Return(records));
        EXPECT_CALL(service, orvex_scene_taskctl_exception_policy_free(records.items.has_value(), records.count));
    }

    call_result list_files(const given_list& paths, const given_list& packages, const given_exceptions& records) {
        expect_files_fetched(paths, packages, records);
        return capture([&] { return file.list_file_policy(); });
    }

    call_result list_programs(const given_list& programs, const given_exceptions& records) {
        expect_programs_fetched(programs, records);
        return capture([&] { return proc.list_proc_policy(); });
    }

    /// Expects the same rows from both modules, and also where the objects are packages.
    void expect_rows(const given_list& objects, const given_exceptions& records, const std::string& rows) {
        EXPECT_EQ(list_files(objects, give_list({}), records), (call_result{0, rows}));
        EXPECT_EQ(list_files(give_list({}), objects, records), (call_result{0, rows}));
        EXPECT_EQ(list_programs(objects, records), (call_result{0, rows}));
    }

    COrvexFile file;
    COrvexProc proc;
};

TEST_F(listing_test, the_two_shapes_of_a_row) {
    expect_rows(
        give_list({"/a", "/b", "/c", "/usr/bin/*"}),
        give_records({{"/b", give_list({"/x", "/y"})}, {"/c", give_list({})}, {"/usr/bin/*", give_list({"p"})}}),
        "/a {例外:}\n"
        "/b{例外:/x:/y}\n"
        "/c{例外}\n"
        "/usr/bin/*{例外:p}\n");
}

TEST_F(listing_test, the_objects_stand_in_the_library_s_order_and_as_they_are) {
    expect_rows(give_list({"/b", "/a", "a b", "%s%n", "/文件", "\xff", "", "/a"}),
                give_records({{"%s%n", give_list({"%d", "/opt/a b/*", "", "\xfe"})}}),
                "/b {例外:}\n"
                "/a {例外:}\n"
                "a b {例外:}\n"
                "%s%n{例外:%d:/opt/a b/*::\xfe}\n"
                "/文件 {例外:}\n"
                "\xff {例外:}\n"
                " {例外:}\n"
                "/a {例外:}\n");
}

TEST_F(listing_test, the_first_record_of_an_object_counts) {
    expect_rows(give_list({"/a", "/a"}), give_records({{"/a", give_list({"/x"})}, {"/a", give_list({"/y"})}}),
                "/a{例外:/x}\n/a{例外:/x}\n");
}

TEST_F(listing_test, a_record_belongs_to_the_whole_text) {
    expect_rows(give_list({"/a", "/ab"}), give_records({{"/", give_list({"/x"})}, {"/abc", give_list({"/y"})}}),
                "/a {例外:}\n/ab {例外:}\n");
}

TEST_F(listing_test, records_without_a_resource_are_skipped) {
    expect_rows(give_list({"/a", ""}),
                give_records({{std::nullopt, give_list({"/x"})}, {"/a", give_list({"/y"})}, {std::nullopt, {}}}),
                "/a{例外:/y}\n {例外:}\n");
}

TEST_F(listing_test, a_null_object_gives_no_row) {
    expect_rows(give_list({nullptr, "/a", nullptr, "/b"}), give_records({{"/b", give_list({"/x"})}}),
                "/a {例外:}\n/b{例外:/x}\n");
    expect_rows(give_list({nullptr}), give_records({}), "");
}

TEST_F(listing_test, without_objects_nothing_is_printed_whatever_the_records) {
    expect_rows(give_list({}), give_records({}), "");
    expect_rows(give_list({}), give_records({{"/a", give_list({"/x"})}}), "");
    expect_rows(give_list({}), {std::nullopt, 0}, "");
}

TEST_F(listing_test, without_records_each_object_has_the_row_without_exceptions) {
    for (const given_exceptions& records :
         {give_records({}), given_exceptions{std::nullopt, 0}, given_exceptions{std::nullopt, 3}}) {
        expect_rows(give_list({"/a", "/b"}), records, "/a {例外:}\n/b {例外:}\n");
    }
}

TEST_F(listing_test, paths_stand_in_front_of_packages) {
    EXPECT_EQ(list_files(give_list({"/b", "same"}), give_list({"a", "same"}),
                         give_records({{"same", give_list({"/x"})}, {"a", give_list({"q"})}})),
              (call_result{0, "/b {例外:}\nsame{例外:/x}\na{例外:q}\nsame{例外:/x}\n"}));
}

TEST_F(listing_test, null_lists_of_files_are_empty_whatever_their_counts) {
    for (const std::uint64_t count : {0U, 3U}) {
        EXPECT_EQ(list_files(give_no_list(count), give_no_list(count), give_records({{"/a", give_list({"/x"})}})),
                  (call_result{0, ""}))
            << count;
        EXPECT_EQ(list_files(give_no_list(count), give_list({"a"}), give_records({})), (call_result{0, "a {例外:}\n"}))
            << count;
    }
}

TEST_F(listing_test, without_a_list_of_programs_the_records_are_not_fetched) {
    for (const std::uint64_t count : {0U, 3U}) {
        EXPECT_CALL(service, orvex_scene_taskctl_get_policy()).WillOnce(Return(give_no_list(count)));
        EXPECT_EQ(capture([&] { return proc.list_proc_policy(); }), (call_result{0, ""})) << count;
    }
}

TEST_F(listing_test, a_null_exception_ends_the_listing_with_what_building_a_string_raises) {
    const given_list objects = give_list({"/a", "/b", "/c"});
    const given_exceptions records = give_records({{"/b", give_list({"/x", nullptr})}});
    const captured_stream output(stdout);
    expect_files_fetched(objects, give_list({"p"}), records);
    EXPECT_THROW(file.list_file_policy(), std::logic_error);
    expect_programs_fetched(objects, records);
    EXPECT_THROW(proc.list_proc_policy(), std::logic_error);
    EXPECT_EQ(output.read_all(), "/a {例外:}\n/a {例外:}\n");
}

}  // namespace
