// SPDX-License-Identifier: Apache-2.0
// What all calls that take an array have in common.
#include "local_store.h"
#include "service/exectl.h"
#include "service/filectl.h"
#include "service/taskctl.h"

namespace {

using batch_function = int (*)(char**, std::int64_t);

class batch_calls : public local_store, public testing::WithParamInterface<batch_function> {};

TEST_P(batch_calls, an_empty_batch_is_a_success) {
    EXPECT_EQ(GetParam()(nullptr, 0), 0);
}

TEST_P(batch_calls, a_null_array_or_entry_or_a_negative_count_is_a_failure) {
    char text[] = "/a";
    char* with_null[] = {text, nullptr};
    EXPECT_LT(GetParam()(nullptr, 1), 0);
    EXPECT_LT(GetParam()(with_null, 2), 0);
    EXPECT_LT(GetParam()(with_null, -1), 0);
}

INSTANTIATE_TEST_SUITE_P(all, batch_calls,
                         testing::Values(orvex_scene_exectl_wlist_multi_add, orvex_scene_exectl_wlist_multi_delete,
                                         orvex_scene_exectl_multi_add_file_in_permissive,
                                         orvex_scene_exectl_multi_remove_file_from_permissive,
                                         orvex_scene_exectl_multi_add_package_in_permissive,
                                         orvex_scene_exectl_multi_remove_package_from_permissive,
                                         orvex_scene_filectl_multi_add_by_path,
                                         orvex_scene_filectl_multi_remove_by_path, orvex_scene_filectl_multi_add_by_pkg,
                                         orvex_scene_filectl_multi_remove_by_pkg, orvex_scene_taskctl_multi_add_by_path,
                                         orvex_scene_taskctl_multi_remove_by_path));

}  // namespace
