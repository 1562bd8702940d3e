// SPDX-License-Identifier: Apache-2.0
// The functions of filectl.h and taskctl.h over the double in use.
#include "service/filectl.h"
#include "service/taskctl.h"
#include "support/hand_over.h"
#include "support/service_double.h"

namespace {

template <class Record>
Record* hand_over_exceptions(const given_exceptions& values, std::uint64_t* count) {
    expect_zero(static_cast<std::int64_t>(*count));
    *count = values.count;
    if (!values.items) {
        return nullptr;
    }
    memory_ledger& memory = service_double::in_use().memory();
    auto* const records = static_cast<Record*>(
        memory.hand_out(values.items->size() * sizeof(Record), way_back::with_library_call, "records"));
    Record* record = records;
    for (const given_exceptions_of& item : *values.items) {
        record->resource = hand_over_text(item.resource, way_back::with_library_call);
        record->exceptions = hand_over_entries(item.exceptions, way_back::with_library_call);
        record->exception_count = item.exceptions.count;
        ++record;
    }
    return records;
}

template <class Record>
void take_exceptions_back(Record* records, std::uint64_t count) {
    if (records == nullptr) {
        return;
    }
    memory_ledger& memory = service_double::in_use().memory();
    for (const Record* record = records; record != records + count; ++record) {
        for (std::uint64_t index = 0; record->exceptions != nullptr && index < record->exception_count; ++index) {
            memory.take_back(record->exceptions[index]);
        }
        memory.take_back(record->exceptions);
        memory.take_back(record->resource);
    }
    memory.take_back(records);
}

}  // namespace

extern "C" {

char** orvex_scene_filectl_get_policy(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_filectl_get_policy(), count);
}

char** orvex_scene_filectl_get_pkg_policy(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_filectl_get_pkg_policy(), count);
}

int orvex_scene_filectl_multi_add_by_path(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_multi_add_by_path(texts_of(paths, count));
}

int orvex_scene_filectl_multi_remove_by_path(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_multi_remove_by_path(texts_of(paths, count));
}

int orvex_scene_filectl_multi_add_by_pkg(char** packages, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_multi_add_by_pkg(texts_of(packages, count));
}

int orvex_scene_filectl_multi_remove_by_pkg(char** packages, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_multi_remove_by_pkg(texts_of(packages, count));
}

int orvex_scene_filectl_exception_clear_resource_policy(std::int32_t kind, const char* resource) {
    return service_double::in_use().orvex_scene_filectl_exception_clear_resource_policy(kind, text_of(resource));
}

filectl_exception_record* orvex_scene_filectl_exception_get_policy(std::uint64_t* count) {
    return hand_over_exceptions<filectl_exception_record>(
        service_double::in_use().orvex_scene_filectl_exception_get_policy(), count);
}

void orvex_scene_filectl_exception_policy_free(filectl_exception_record* records, std::uint64_t count) {
    service_double::in_use().orvex_scene_filectl_exception_policy_free(records != nullptr, count);
    take_exceptions_back(records, count);
}

int orvex_scene_filectl_exception_multi_add(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_exception_multi_add(kind, text_of(resource), except_kind,
                                                                            texts_of(exceptions, count));
}

int orvex_scene_filectl_exception_multi_remove(std::int32_t kind, const char* resource, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count) {
    return service_double::in_use().orvex_scene_filectl_exception_multi_remove(kind, text_of(resource), except_kind,
                                                                               texts_of(exceptions, count));
}

char** orvex_scene_taskctl_get_policy(std::uint64_t* count) {
    return hand_over_list(service_double::in_use().orvex_scene_taskctl_get_policy(), count);
}

int orvex_scene_taskctl_multi_add_by_path(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_multi_add_by_path(texts_of(paths, count));
}

int orvex_scene_taskctl_multi_remove_by_path(char** paths, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_multi_remove_by_path(texts_of(paths, count));
}

int orvex_scene_taskctl_multi_add_by_pid(std::int32_t* pids, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_multi_add_by_pid(numbers_of(pids, count));
}

int orvex_scene_taskctl_multi_remove_by_pid(std::int32_t* pids, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_multi_remove_by_pid(numbers_of(pids, count));
}

int orvex_scene_taskctl_exception_clear_resource_policy(const char* path) {
    return service_double::in_use().orvex_scene_taskctl_exception_clear_resource_policy(text_of(path));
}

int orvex_scene_taskctl_exception_clear_resource_policy_by_pid(std::int32_t pid) {
    return service_double::in_use().orvex_scene_taskctl_exception_clear_resource_policy_by_pid(pid);
}

taskctl_exception_record* orvex_scene_taskctl_exception_get_policy(std::uint64_t* count) {
    return hand_over_exceptions<taskctl_exception_record>(
        service_double::in_use().orvex_scene_taskctl_exception_get_policy(), count);
}

void orvex_scene_taskctl_exception_policy_free(taskctl_exception_record* records, std::uint64_t count) {
    service_double::in_use().orvex_scene_taskctl_exception_policy_free(records != nullptr, count);
    take_exceptions_back(records, count);
}

int orvex_scene_taskctl_exception_multi_add(std::int32_t kind, const char* path, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_exception_multi_add(kind, text_of(path), except_kind,
                                                                            texts_of(exceptions, count));
}

int orvex_scene_taskctl_exception_multi_remove(std::int32_t kind, const char* path, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_exception_multi_remove(kind, text_of(path), except_kind,
                                                                               texts_of(exceptions, count));
}

int orvex_scene_taskctl_exception_multi_add_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                   std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_exception_multi_add_by_pid(pid, except_kind,
                                                                                   texts_of(exceptions, count));
}

int orvex_scene_taskctl_exception_multi_remove_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                      std::int64_t count) {
    return service_double::in_use().orvex_scene_taskctl_exception_multi_remove_by_pid(pid, except_kind,
                                                                                      texts_of(exceptions, count));
}
}
