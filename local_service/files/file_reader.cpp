// SPDX-License-Identifier: Apache-2.0
#include "core/file_reader.h"

#include "files/digest.h"
#include "files/elf_file.h"

extern "C" const local_service::file_reader orvex_local_file_reader;
const local_service::file_reader orvex_local_file_reader = {
    .digest_file = local_service::digest_file,
    .read_elf_sort = local_service::read_elf_sort,
    .is_module_file_name = local_service::is_module_file_name,
    .read_module_name = local_service::read_module_name,
};
