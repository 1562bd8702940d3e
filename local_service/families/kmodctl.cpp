// SPDX-License-Identifier: Apache-2.0
// liborvex_scene_c: kernel modules that may not be unloaded.
#include "service/kmodctl.h"

#include "core/call.h"
#include "core/entry_list.h"
#include "core/failure.h"
#include "core/file_reader.h"
#include "core/heap.h"
#include "core/paths.h"
#include "families/lists.h"

using namespace local_service;

namespace {

void add_module(const std::string& name) {
    if (name.empty()) {
        throw failure("a kernel module needs a name");
    }
    if (!lists::kernel_modules.add(name)) {
        throw failure("the kernel module " + name + " is protected already");
    }
}

void remove_module(const std::string& name) {
    if (!lists::kernel_modules.remove(name)) {
        throw failure("the kernel module " + name + " is not protected");
    }
}

}  // namespace

char** orvex_scene_kmodctl_get_policy(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::kernel_modules, count); });
}

int orvex_scene_kmodctl_add_by_path(const char* path) {
    return guard_addition(__func__, {{"path", path}},
                          [&] { add_module(get_file_reader().read_module_name(given_text(path))); });
}

int orvex_scene_kmodctl_add_by_name(const char* name) {
    return guard_addition(__func__, {{"name", name}}, [&] { add_module(given_text(name)); });
}

int orvex_scene_kmodctl_remove_by_path(const char* path) {
    return guard_change(__func__, {{"path", path}},
                        [&] { remove_module(get_file_reader().read_module_name(given_text(path))); });
}

int orvex_scene_kmodctl_remove_by_name(const char* name) {
    return guard_change(__func__, {{"name", name}}, [&] { remove_module(given_text(name)); });
}

char* orvex_scene_get_module_name_from_ko_path(const char* path) {
    return guard(__func__, {{"path", path}},
                 [&] { return heap_text(get_file_reader().read_module_name(given_text(path))); });
}
