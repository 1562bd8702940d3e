// SPDX-License-Identifier: Apache-2.0
#include "core/entry_list.h"
#include "local_store.h"
#include "service/admctl.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class role_labels : public local_store {
protected:
    static std::vector<std::string> files_of(std::int32_t role) {
        std::uint64_t count = 0;
        char** list = orvex_scene_admctl_get_user_policy(role, &count);
        std::vector<std::string> files;
        for (std::uint64_t index = 0; index < count; ++index) {
            files.push_back(take(list[index]));
        }
        std::free(list);
        return files;
    }
};

TEST_F(role_labels, are_none_in_a_fresh_store) {
    for (const int role : {0, 1, 2}) {
        EXPECT_THAT(files_of(role), IsEmpty());
    }
}

TEST_F(role_labels, are_kept_apart_by_role) {
    local_service::lists::role_labels[0].add("/r");
    local_service::lists::role_labels[1].add("/s2");
    local_service::lists::role_labels[1].add("/s1");
    local_service::lists::role_labels[2].add("/r");
    EXPECT_THAT(files_of(0), ElementsAre("/r"));
    EXPECT_THAT(files_of(1), ElementsAre("/s2", "/s1"));
    EXPECT_THAT(files_of(2), ElementsAre("/r"));
}

TEST_F(role_labels, of_an_unknown_role_are_null) {
    std::uint64_t count = 0;
    EXPECT_EQ(orvex_scene_admctl_get_user_policy(3, &count), nullptr);
    EXPECT_EQ(orvex_scene_admctl_get_user_policy(-1, &count), nullptr);
    EXPECT_EQ(count, 0U);
}

}  // namespace
