// SPDX-License-Identifier: Apache-2.0
#include "modules/file/file_deletion.h"

#include "framework/output.h"
#include "service/paths.h"

owned_text get_path_to_delete(COrvexBase& module, path_kind kind, const std::string& path, const char* advice) {
    if (path_is_exist(path.c_str()) == 1) {
        return get_real_path(kind, path);
    }
    if (module.is_absolute_path(path)) {
        return copy_text(path);
    }
    if (kind == path_kind::file) {
        print_line("输入文件[", path, "]的相对路径时, 请确保文件存在!");
    } else {
        print_line("输入目录[", path, "]的相对路径时, 请确保目录存在!");
    }
    print_line(advice);
    return nullptr;
}
