// SPDX-License-Identifier: Apache-2.0
// liborvex_scene_c: execution control, the whitelist with the digests of its files and the exceptions.
#include "service/exectl.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/failure.h"
#include "core/file_kind.h"
#include "core/heap.h"
#include "core/paths.h"
#include "core/store.h"
#include "families/batch.h"
#include "families/digest.h"
#include "families/lists.h"

using namespace local_service;

namespace {

constexpr std::int32_t status_intact = 0;
constexpr std::int32_t status_changed = 1;
/// The caller may not read the file: neither answer would be true.
constexpr std::int32_t status_unknown = 2;

struct whitelisted_file {
    std::string path;
    std::string digest;
};

std::vector<whitelisted_file> digest_all(std::vector<std::string> paths) {
    std::vector<whitelisted_file> files;
    files.reserve(paths.size());
    for (std::string& path : paths) {
        content_digest digest = digest_file(path);
        if (digest.result != content_digest::outcome::read) {
            throw failure(path + " cannot be read as a file");
        }
        files.push_back({std::move(path), std::move(digest.text)});
    }
    return files;
}

/// Reads the files before the transaction begins, so that nobody waits for the database meanwhile.
void whitelist_files(std::vector<std::string> paths) {
    const std::vector<whitelisted_file> files = digest_all(std::move(paths));
    transaction whole;
    for (const whitelisted_file& file : files) {
        change(
            "INSERT INTO whitelist (path, digest) VALUES (?, ?) "
            "ON CONFLICT (path) DO UPDATE SET digest = excluded.digest",
            {file.path, file.digest});
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

std::int32_t status_of(const whitelisted_file& file) {
    const content_digest digest = digest_file(file.path);
    switch (digest.result) {
        case content_digest::outcome::read:
            return digest.text == file.digest ? status_intact : status_changed;
        case content_digest::outcome::gone:
            return status_changed;
        default:
            return status_unknown;
    }
}

void fill_record(orvex_exectl_obj* record, const whitelisted_file& file) {
    record->status = status_of(file);
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

std::vector<whitelisted_file> read_whitelist() {
    std::vector<whitelisted_file> files;
    query rows("SELECT path, digest FROM whitelist ORDER BY id");
    while (rows.next()) {
        files.push_back({rows.text(0), rows.text(1)});
    }
    return files;
}

}  // namespace

int orvex_scene_exectl_wlist_multi_add(char** paths, std::int64_t count) {
    return guard(__func__, [&] {
        require_rights();
        whitelist_files(given_texts(paths, count));
        return 0;
    });
}

int orvex_scene_exectl_wlist_multi_delete(char** paths, std::int64_t count) {
    return guard_change(__func__, [&] {
        for (const std::string& path : given_texts(paths, count)) {
            change("DELETE FROM whitelist WHERE path = ?", {path});
        }
    });
}

int orvex_scene_exectl_wlist_add_by_dir(const char* directory) {
    return guard(__func__, [&] {
        require_rights();
        whitelist_files(find_controlled_files(absolute_path(given_text(directory))));
        return 0;
    });
}

int orvex_scene_exectl_wlist_delete_by_dir(const char* directory) {
    return guard_change(__func__, [&] {
        const std::string path = absolute_path(given_text(directory));
        const std::string inside = path == "/" ? "" : path;
        // '0' is the character behind '/': the range holds all that begins with the path and a slash.
        change("DELETE FROM whitelist WHERE path >= ? AND path < ?", {inside + "/", inside + "0"});
    });
}

int orvex_scene_exectl_wlist_load_by_path(const char* path, orvex_exectl_obj* record) {
    return guard(__func__, [&] {
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
    return guard(__func__, [&] {
        *head = build_chain(read_whitelist()).release();
        return 0;
    });
}

void orvex_scene_exectl_obj_free(orvex_exectl_obj* record) {
    std::free(record->path);
    record->path = nullptr;
}

void orvex_scene_exectl_objs_free(orvex_exectl_list_obj** head) {
    const owned_chain chain(*head);
    *head = nullptr;
}

char** orvex_scene_exectl_get_policy_for_file_permissive(std::uint64_t* count) {
    return guard(__func__, [&] { return hand_out(lists::exec_files, count); });
}

char** orvex_scene_exectl_get_policy_for_package_permissive(std::uint64_t* count) {
    return guard(__func__, [&] { return hand_out(lists::exec_packages, count); });
}

int orvex_scene_exectl_multi_add_file_in_permissive(char** paths, std::int64_t count) {
    return guard_change(__func__, [&] { add_batch(lists::exec_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_exectl_multi_remove_file_from_permissive(char** paths, std::int64_t count) {
    return guard_change(__func__, [&] { remove_batch(lists::exec_files, listed_as::path, given_texts(paths, count)); });
}

int orvex_scene_exectl_multi_add_package_in_permissive(char** packages, std::int64_t count) {
    return guard_change(__func__,
                        [&] { add_batch(lists::exec_packages, listed_as::given, given_texts(packages, count)); });
}

int orvex_scene_exectl_multi_remove_package_from_permissive(char** packages, std::int64_t count) {
    return guard_change(__func__,
                        [&] { remove_batch(lists::exec_packages, listed_as::given, given_texts(packages, count)); });
}
