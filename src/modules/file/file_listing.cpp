// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "framework/owned.h"
#include "modules/file/file_module.h"
#include "modules/file/file_records.h"
#include "service/filectl.h"

int COrvexFile::list_file_policy() {
    std::array<owned_list, 2> paths_and_packages = {
        owned_list(orvex_scene_filectl_get_policy),
        owned_list(orvex_scene_filectl_get_pkg_policy),
    };
    const filectl_records records(orvex_scene_filectl_exception_get_policy);
    records.print_rows(paths_and_packages);
    return 0;
}
