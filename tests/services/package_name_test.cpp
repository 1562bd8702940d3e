// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "framework/module_base.h"

namespace {

struct name_case {
    std::string text;
    std::string name;
};

void PrintTo(const name_case& one, std::ostream* stream) {
    *stream << one.text;
}

class package_name_test : public testing::TestWithParam<name_case> {};

TEST_P(package_name_test, is_cut_out) {
    COrvexBase base;
    EXPECT_EQ(base.get_pkg_name_from_nevra(GetParam().text), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(of_a_query_line, package_name_test,
                         testing::Values(name_case{"bash-5.2.15-1.aarch64\n", "bash"},
                                         name_case{"bash-5.2.15-1.aarch64", "bash"},
                                         name_case{"vim-minimal-9.0-1.noarch", "vim-minimal"},
                                         name_case{"a-b-c-d-1-2.x", "a-b-c-d"},  //
                                         name_case{"a--.", "a"}, name_case{"a.b-1-2.x", "a.b"},
                                         name_case{"-a-1-2.x", "-a"}, name_case{"a 包-1-2.x", "a 包"}));
// The last '.' of the whole text counts, not that of a line.
INSTANTIATE_TEST_SUITE_P(of_several_lines, package_name_test,
                         testing::Values(name_case{"a-1-1.noarch\nb-2-2.noarch\n", "a-1-1.noarch\nb"},
                                         name_case{"a-1-1.noarch\nno more", "a"},
                                         name_case{"file /x-y-z.d is not owned\n", "file /x"}));
INSTANTIATE_TEST_SUITE_P(of_anything_else, package_name_test,
                         testing::Values(name_case{"", ""}, name_case{"abc", ""}, name_case{"abc.x86_64", ""},
                                         name_case{"abc-1.noarch", ""}, name_case{".", ""}, name_case{".noarch", ""},
                                         name_case{"-.x", ""}, name_case{"--.x", ""}, name_case{"-1.x", ""},
                                         name_case{"-1-2.x", ""}, name_case{"a-1-2", ""}, name_case{"a.b-1-2", ""},
                                         name_case{"文件", ""}));

}  // namespace
