// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "support/module_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class module_table_test : public module_test {
protected:
    COrvexBase base;
};

TEST_F(module_table_test, a_fresh_object_has_an_empty_table) {
    EXPECT_THAT(base.get_module_names(), IsEmpty());
    EXPECT_THAT(base.get_module_types(), IsEmpty());
}

TEST_F(module_table_test, the_names_stand_by_number) {
    base.init_module_table();

    EXPECT_THAT(base.get_module_names(),
                ElementsAre(Pair(0, "exec"), Pair(1, "net"), Pair(2, "file"), Pair(3, "kmod"), Pair(4, "3adm"),
                            Pair(5, "proc"), Pair(7, "exec script"), Pair(11, "box")));
}

TEST_F(module_table_test, the_types_stand_in_the_order_of_the_report) {
    base.init_module_table();

    EXPECT_THAT(base.get_module_types(), ElementsAre(0, 7, 1, 3, 2, 5, 4, 11));
}

TEST_F(module_table_test, filling_it_again_gives_the_same_table) {
    base.init_module_table();
    const auto names = base.get_module_names();
    const auto types = base.get_module_types();

    base.init_module_table();

    EXPECT_EQ(base.get_module_names(), names);
    EXPECT_EQ(base.get_module_types(), types);
}

TEST_F(module_table_test, filling_it_drops_what_else_stands_in_it) {
    base.get_module_names()[module_box] = "other";
    base.get_module_names()[static_cast<orvex_module_type>(6)] = "six";
    base.get_module_types().push_back(module_box);

    base.init_module_table();

    EXPECT_EQ(base.get_module_names().size(), 8U);
    EXPECT_EQ(base.get_module_names()[module_box], "box");
    EXPECT_EQ(base.get_module_types().size(), 8U);
}

TEST_F(module_table_test, each_object_has_a_table_of_its_own) {
    COrvexBase other;
    other.init_module_table();

    EXPECT_THAT(base.get_module_types(), IsEmpty());
}

TEST_F(module_table_test, the_plain_base_runs_nothing_and_has_no_help) {
    EXPECT_EQ(run(base, {"base", "-L"}), (call_result{0, ""}));
    EXPECT_EQ(capture([&] {
                  base.usage();
                  return 0;
              }),
              (call_result{0, ""}));
}

}  // namespace
