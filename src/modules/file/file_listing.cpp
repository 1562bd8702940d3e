// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "framework/owned.h"
#include "modules/file/file_module.h"
#include "modules/file/file_records.h"
#include "service/filectl.h"

int COrvexFile::list_file_policy() {
    owned_list paths(orvex_scene_filectl_get_policy);
    owned_list packages(orvex_scene_filectl_get_pkg_policy);
    const filectl_records records(orvex_scene_filectl_exception_get_policy);
    records.print_rows(std::move(paths));
    records.print_rows(std::move(packages));
    return 0;
}
