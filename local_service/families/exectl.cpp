// SPDX-License-Identifier: Apache-2.0
// liborvex_scene_c: execution control, the whitelist with the digests of its files and the exceptions.
#include "service/exectl.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/call.h"
#include "core/failure.h"
#include "core/file_kind.h"
#include "core/heap.h"
#include "core/paths.h"
#include "core/store.h"
#include "core/whitelist.h"
#include "families/batch.h"
#include "families/lists.h"

using namespace local_service;

namespace {

/// Reads the files before the transaction begins, so that nobody waits for the database meanwhile.
void whitelist_files(std::vector<std::string> paths) {
    std::vector<whitelisted_file> files;
    files.reserve(paths.size());
    for (std::string& path : paths) {
        files.push_back(whitelist_record(std::move(path)));
    }
    require_room();
    transaction whole;
    for (const whitelisted_file& file : files) {
        put_on_whitelist(file);
    }
    whole.commit();
}

/// Links are passed over, those to directories and those to files.
std::vector<std::string> find_controlled_files(const std::string& directory) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        if (is_controlled(read_file_kind(entry.path()))) {
            paths.push_back(entry.path());
        }
    }
    return paths;
}

void fill_record(orvex_exectl_obj* record, const whitelisted_file& file) {
    record->status = static_cast<std::int32_t>(status_of(file));
    record->path = heap_text(file.path);
}

struct chain_deleter {
    void operator()(orvex_exectl_list_obj* head) const noexcept {
        while (head != nullptr) {
            orvex_exectl_list_obj* next = head->next;
            std::free(head->obj.path);
            std::free(head);
            head = next;
        }
    }
};
using owned_chain = std::unique_ptr<orvex_exectl_list_obj, chain_deleter>;

owned_chain build_chain(const std::vector<whitelisted_file>& files) {
    owned_chain head;
    orvex_exectl_list_obj* last = nullptr;
    for (const whitelisted_file& file : files) {
        auto* link = allocate<orvex_exectl_list_obj>(1);
        if (last == nullptr) {
            head.reset(link);
        } else {
            last->next = link;
        }
        last = link;
        fill_record(&link->obj, file);
    }
    return head;
}

void write_record(value_writer& out, const orvex_exectl_obj& record) {
    out.write_object({{"path", record.path}, {"status", record.status}});
}

void write_chain(value_writer& out, const orvex_exectl_list_obj* head) {
    std::int64_t count = 0;
    for (const orvex_exectl_list_obj* counted = head; counted != nullptr; counted = counted->next) {
        ++count;
    }
    const orvex_exectl_list_obj* link = head;
    out.write_list(count, [&](std::int64_t) {
        write_record(out, link->obj);
        link = link->next;
    });
}

}  // namespace

int orvex_scene_exectl_wlist_multi_add(char** paths, std::int64_t count) {
    return guard(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}}, [&] {
        require_rights();
        whitelist_files(given_texts(paths, count));
        return 0;
    });
}

int orvex_scene_exectl_wlist_multi_delete(char** paths, std::int64_t count) {
    return guard_change(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}}, [&] {
        for (const std::string& path : given_texts(paths, count)) {
            change("DELETE FROM whitelist WHERE path = ?", {path});
        }
    });
}

int orvex_scene_exectl_wlist_add_by_dir(const char* directory) {
    return guard(__func__, {{"directory", directory}}, [&] {
        require_rights();
        whitelist_files(find_controlled_files(absolute_path(given_text(directory))));
        return 0;
    });
}

int orvex_scene_exectl_wlist_delete_by_dir(const char* directory) {
    return guard_change(__func__, {{"directory", directory}}, [&] {
        const std::string path = absolute_path(given_text(directory));
        const std::string inside = path == "/" ? "" : path;
        // '0' is the character behind '/': the range holds all that begins with the path and a slash.
        change("DELETE FROM whitelist WHERE path >= ? AND path < ?", {inside + "/", inside + "0"});
    });
}

int orvex_scene_exectl_wlist_load_by_path(const char* path, orvex_exectl_obj* record) {
    return guard(__func__, {{"path", path}, {"record", [&](value_writer& out) { write_record(out, *record); }}}, [&] {
        whitelisted_file file{given_text(path), {}};
        query rows("SELECT digest FROM whitelist WHERE path = ?", {file.path});
        if (rows.next()) {
            file.digest = rows.text(0);
            fill_record(record, file);
        }
        return 0;
    });
}

int orvex_scene_exectl_wlist_load_all(orvex_exectl_list_obj** head) {
    return guard(__func__, {{"head", [&](value_writer& out) { write_chain(out, *head); }}}, [&] {
        *head = build_chain(read_whitelist()).release();
        return 0;
    });
}

void orvex_scene_exectl_obj_free(orvex_exectl_obj* record) {
    trace(__func__, {{"record", [&](value_writer& out) { write_record(out, *record); }}});
    std::free(record->path);
    record->path = nullptr;
}

void orvex_scene_exectl_objs_free(orvex_exectl_list_obj** head) {
    trace(__func__, {{"head", [&](value_writer& out) { write_chain(out, *head); }}});
    const owned_chain chain(*head);
    *head = nullptr;
}

char** orvex_scene_exectl_get_policy_for_file_permissive(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::exec_files, count); });
}

char** orvex_scene_exectl_get_policy_for_package_permissive(std::uint64_t* count) {
    return guard(__func__, {{"count", count}}, [&] { return hand_out(lists::exec_packages, count); });
}

int orvex_scene_exectl_multi_add_file_in_permissive(char** paths, std::int64_t count) {
    return guard_addition(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                          [&] { add_batch(lists::exec_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_exectl_multi_remove_file_from_permissive(char** paths, std::int64_t count) {
    return guard_change(__func__, {{"paths", borrowed_array{paths, count}}, {"count", count}},
                        [&] { remove_batch(lists::exec_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_exectl_multi_add_package_in_permissive(char** packages, std::int64_t count) {
    return guard_addition(__func__, {{"packages", borrowed_array{packages, count}}, {"count", count}},
                          [&] { add_batch(lists::exec_packages, listed_as::given, given_texts(packages, count)); });
}

int orvex_scene_exectl_multi_remove_package_from_permissive(char** packages, std::int64_t count) {
    return guard_change(__func__, {{"packages", borrowed_array{packages, count}}, {"count", count}},
                        [&] { remove_batch(lists::exec_packages, listed_as::given, given_texts(packages, count)); });
}
