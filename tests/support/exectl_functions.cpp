// SPDX-License-Identifier: Apache-2.0
// The functions of exectl.h over the double in use.
#include <algorithm>

#include "gtest/gtest.h"
#include "service/exectl.h"
#include "support/hand_over.h"
#include "support/service_double.h"

namespace {

bool is_all_zero(const orvex_exectl_obj& record) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&record);
    return std::all_of(bytes, bytes + sizeof(record), [](unsigned char byte) { return byte == 0; });
}

void fill_record(const given_exectl& values, orvex_exectl_obj& record) {
    record.path = hand_over_text(values.path, way_back::with_library_call);
    record.status = values.status;
}

}  // namespace

extern "C" {

int orvex_scene_exectl_wlist_multi_add(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_wlist_multi_add(texts_of(paths, count));
}

int orvex_scene_exectl_wlist_multi_delete(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_wlist_multi_delete(texts_of(paths, count));
}

int orvex_scene_exectl_wlist_add_by_dir(const char* directory) {
    return service_double::in_use().orvex_scene_exectl_wlist_add_by_dir(text_of(directory));
}

int orvex_scene_exectl_wlist_delete_by_dir(const char* directory) {
    return service_double::in_use().orvex_scene_exectl_wlist_delete_by_dir(text_of(directory));
}

int orvex_scene_exectl_wlist_load_by_path(const char* path, orvex_exectl_obj* record) {
    EXPECT_TRUE(is_all_zero(*record)) << "the record was not zeroed in front of the call";
    const given_exectl_lookup answer = service_double::in_use().orvex_scene_exectl_wlist_load_by_path(text_of(path));
    fill_record(answer.record, *record);
    return answer.result;
}

int orvex_scene_exectl_wlist_load_all(orvex_exectl_list_obj** head) {
    EXPECT_EQ(*head, nullptr) << "the head was not set to null in front of the call";
    service_double& service = service_double::in_use();
    const given_exectl_chain answer = service.orvex_scene_exectl_wlist_load_all();
    orvex_exectl_list_obj** end = head;
    for (const given_exectl& values : answer.links) {
        void* const memory =
            service.memory().hand_out(sizeof(orvex_exectl_list_obj), way_back::with_library_call, "link");
        *end = static_cast<orvex_exectl_list_obj*>(memory);
        fill_record(values, (*end)->obj);
        end = &(*end)->next;
    }
    return answer.result;
}

void orvex_scene_exectl_obj_free(orvex_exectl_obj* record) {
    service_double& service = service_double::in_use();
    service.orvex_scene_exectl_obj_free(maybe_text_of(record->path));
    service.memory().take_back(record->path);
}

void orvex_scene_exectl_objs_free(orvex_exectl_list_obj** head) {
    service_double& service = service_double::in_use();
    std::size_t links = 0;
    for (const orvex_exectl_list_obj* link = *head; link != nullptr; link = link->next) {
        ++links;
    }
    service.orvex_scene_exectl_objs_free(links);
    orvex_exectl_list_obj* link = *head;
    while (link != nullptr) {
        orvex_exectl_list_obj* const next = link->next;
        service.memory().take_back(link->obj.path);
        service.memory().take_back(link);
        link = next;
    }
}

char** orvex_scene_exectl_get_policy_for_file_permissive(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_exectl_get_policy_for_file_permissive(), count);
}

char** orvex_scene_exectl_get_policy_for_package_permissive(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_exectl_get_policy_for_package_permissive(), count);
}

int orvex_scene_exectl_multi_add_file_in_permissive(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_multi_add_file_in_permissive(texts_of(paths, count));
}

int orvex_scene_exectl_multi_remove_file_from_permissive(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_multi_remove_file_from_permissive(texts_of(paths, count));
}

int orvex_scene_exectl_multi_add_package_in_permissive(char** packages, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_multi_add_package_in_permissive(texts_of(packages, count));
}

int orvex_scene_exectl_multi_remove_package_from_permissive(char** packages, std::int64_t count) {
    return service_double::in_use().orvex_scene_exectl_multi_remove_package_from_permissive(texts_of(packages, count));
}
}
