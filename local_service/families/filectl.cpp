// SPDX-License-Identifier: Apache-2.0
// liborvex_scene_c: file read-only protection.
#include "service/filectl.h"

#include "core/call.h"
#include "core/paths.h"
#include "families/batch.h"
#include "families/exceptions.h"
#include "families/lists.h"

using namespace local_service;

char** orvex_scene_filectl_get_policy(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::protected_files, count); });
}

char** orvex_scene_filectl_get_pkg_policy(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::protected_packages, count); });
}

int orvex_scene_filectl_multi_add_by_path(char** paths, std::int64_t count) {
    return guard_addition(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                          [&] { add_batch(lists::protected_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_filectl_multi_remove_by_path(char** paths, std::int64_t count) {
    return guard_change(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                        [&] { remove_batch(lists::protected_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_filectl_multi_add_by_pkg(char** packages, std::int64_t count) {
    return guard_addition(__func__, {{"packages", borrowed_array{packages, count}}, {"count", count}}, [&] {
        add_batch(lists::protected_packages, listed_as::given, given_texts(packages, count));
    });
}

int orvex_scene_filectl_multi_remove_by_pkg(char** packages, std::int64_t count) {
    return guard_change(__func__, {{"packages", borrowed_array{packages, count}}, {"count", count}}, [&] {
        remove_batch(lists::protected_packages, listed_as::given, given_texts(packages, count));
    });
}

int orvex_scene_filectl_exception_clear_resource_policy(std::int32_t kind, const char* resource) {
    return guard_change(__func__, {{"kind", kind}, {"resource", resource}}, [&] {
        clear_exceptions(file_protection, {kind, given_text(resource)});
    });
}

filectl_exception_record* orvex_scene_filectl_exception_get_policy(std::uint64_t* count) {
    return guard(
        __func__, {{"count", count}},
        [&] { return hand_out_exceptions<filectl_exception_record>(file_protection, count); },
        [&](value_writer& out, const filectl_exception_record* records) { write_records(out, records, *count); });
}

void orvex_scene_filectl_exception_policy_free(filectl_exception_record* records, std::uint64_t count) {
    trace(__func__, {{"records", [&](value_writer& out) { write_records(out, records, count); }}, {"count", count}});
    free_records(records, count);
}

int orvex_scene_filectl_exception_multi_add(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count) {
    return guard_addition(
        __func__,
        {{"kind", kind},
         {"resource", resource},
         {"except_kind", except_kind},
         {"exceptions", borrowed_array{exceptions, count}},
         {"count", count}},
        [&] {
            add_exceptions(file_protection, {kind, given_text(resource)}, {except_kind, exceptions, count});
        });
}

int orvex_scene_filectl_exception_multi_remove(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count) {
    return guard_change(
        __func__,
        {{"kind", kind},
         {"resource", resource},
         {"except_kind", except_kind},
         {"exceptions", borrowed_array{exceptions, count}},
         {"count", count}},
        [&] {
            remove_exceptions(file_protection, {kind, given_text(resource)}, {except_kind, exceptions, count});
        });
}
