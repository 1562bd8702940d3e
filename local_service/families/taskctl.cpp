// SPDX-License-Identifier: Apache-2.0
// liborvex_scene_c: process kill protection.
#include "service/taskctl.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "core/call.h"
#include "core/failure.h"
#include "core/paths.h"
#include "families/batch.h"
#include "families/exceptions.h"
#include "families/lists.h"

using namespace local_service;

namespace {

/// The framework's kernel part says which program a process runs; where it is missing, the exe link does.
named_object program_of(std::int32_t pid) {
    const std::string process = "/proc/" + std::to_string(pid);
    const std::ifstream attribute(process + "/attr/vemu/path", std::ios::binary);
    if (attribute) {
        std::ostringstream text;
        text << attribute.rdbuf();
        return {orvex_kind_file, standard_path(text.str())};
    }
    std::error_code error;
    const std::filesystem::path link = std::filesystem::read_symlink(process + "/exe", error);
    if (error) {
        throw failure("process " + std::to_string(pid) + " runs no program that can be named: " + error.message());
    }
    return {orvex_kind_file, link.string()};
}

std::vector<std::string> programs_of(const std::int32_t* pids, std::int64_t count) {
    if (count < 0 || (pids == nullptr && count > 0)) {
        throw failure("a batch of " + std::to_string(count) + " processes cannot be read");
    }
    std::vector<std::string> programs;
    for (std::int64_t index = 0; index < count; ++index) {
        programs.push_back(program_of(pids[index]).name);
    }
    return programs;
}

}  // namespace

char** orvex_scene_taskctl_get_policy(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::protected_programs, count); });
}

int orvex_scene_taskctl_multi_add_by_path(char** paths, std::int64_t count) {
    return guard_addition(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                          [&] { add_batch(lists::protected_programs, listed_as::given, given_texts(paths, count)); });
}

int orvex_scene_taskctl_multi_remove_by_path(char** paths, std::int64_t count) {
    return guard_change(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                        [&] { remove_batch(lists::protected_programs, listed_as::given, given_texts(paths, count)); });
}

int orvex_scene_taskctl_multi_add_by_pid(std::int32_t* pids, std::int64_t count) {
    return guard_addition(__func__, {{"pids", borrowed_array{pids, count}}, {"count", count}},
                          [&] { add_batch(lists::protected_programs, listed_as::given, programs_of(pids, count)); });
}

int orvex_scene_taskctl_multi_remove_by_pid(std::int32_t* pids, std::int64_t count) {
    return guard_change(__func__, {{"pids", borrowed_array{pids, count}}, {"count", count}},
                        [&] { remove_batch(lists::protected_programs, listed_as::given, programs_of(pids, count)); });
}

int orvex_scene_taskctl_exception_clear_resource_policy(const char* path) {
    return guard_change(__func__, {{"path", path}}, [&] {
        clear_exceptions(process_protection, {orvex_kind_file, given_text(path)});
    });
}

int orvex_scene_taskctl_exception_clear_resource_policy_by_pid(std::int32_t pid) {
    return guard_change(__func__, {{"pid", pid}}, [&] { clear_exceptions(process_protection, program_of(pid)); });
}

taskctl_exception_record* orvex_scene_taskctl_exception_get_policy(std::uint64_t* count) {
    return guard(
        __func__, {{"count", count}},
        [&] { return hand_out_exceptions<taskctl_exception_record>(process_protection, count); },
        [&](value_writer& out, const taskctl_exception_record* records) { write_records(out, records, *count); });
}

void orvex_scene_taskctl_exception_policy_free(taskctl_exception_record* records, std::uint64_t count) {
    trace(__func__, {{"records", [&](value_writer& out) { write_records(out, records, count); }}, {"count", count}});
    free_records(records, count);
}

int orvex_scene_taskctl_exception_multi_add(std::int32_t kind, const char* path, std::int32_t except_kind,
                                            char** exceptions, std::int64_t count) {
    return guard_addition(
        __func__,
        {{"kind", kind},
         {"path", path},
         {"except_kind", except_kind},
         {"exceptions", borrowed_array{exceptions, count}},
         {"count", count}},
        [&] {
            add_exceptions(process_protection, {kind, given_text(path)}, {except_kind, exceptions, count});
        });
}

int orvex_scene_taskctl_exception_multi_remove(std::int32_t kind, const char* path, std::int32_t except_kind,
                                               char** exceptions, std::int64_t count) {
    return guard_change(
        __func__,
        {{"kind", kind},
         {"path", path},
         {"except_kind", except_kind},
         {"exceptions", borrowed_array{exceptions, count}},
         {"count", count}},
        [&] {
            remove_exceptions(process_protection, {kind, given_text(path)}, {except_kind, exceptions, count});
        });
}

int orvex_scene_taskctl_exception_multi_add_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                   std::int64_t count) {
    return guard_addition(__func__,
                          {{"pid", pid},
                           {"except_kind", except_kind},
                           {"exceptions", borrowed_array{exceptions, count}},
                           {"count", count}},
                          [&] {
                              add_exceptions(process_protection, program_of(pid), {except_kind, exceptions, count});
                          });
}

int orvex_scene_taskctl_exception_multi_remove_by_pid(std::int32_t pid, std::int32_t except_kind, char** exceptions,
                                                      std::int64_t count) {
    return guard_change(__func__,
                        {{"pid", pid},
                         {"except_kind", except_kind},
                         {"exceptions", borrowed_array{exceptions, count}},
                         {"count", count}},
                        [&] {
                            remove_exceptions(process_protection, program_of(pid), {except_kind, exceptions, count});
                        });
}
