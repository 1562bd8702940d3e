// SPDX-License-Identifier: Apache-2.0
#include "core/whitelist.h"

#include "core/failure.h"
#include "core/file_reader.h"
#include "core/store.h"

namespace local_service {

whitelisted_file whitelist_record(std::string path) {
    content_digest digest = get_file_reader().digest_file(path);
    if (digest.result != content_digest::outcome::read) {
        throw failure(path + " cannot be read as a file");
    }
    return {std::move(path), std::move(digest.text)};
}

std::vector<whitelisted_file> read_whitelist() {
    std::vector<whitelisted_file> files;
    query rows("SELECT path, digest FROM whitelist ORDER BY id");
    while (rows.next()) {
        files.push_back({rows.text(0), rows.text(1)});
    }
    return files;
}

void put_on_whitelist(const whitelisted_file& file) {
    change(
        "INSERT INTO whitelist (path, digest) VALUES (?, ?) "
        "ON CONFLICT (path) DO UPDATE SET digest = excluded.digest",
        {file.path, file.digest});
}

whitelist_status status_of(const whitelisted_file& file) {
    const content_digest digest = get_file_reader().digest_file(file.path);
    switch (digest.result) {
        case content_digest::outcome::read:
            return digest.text == file.digest ? whitelist_status::intact : whitelist_status::changed;
        case content_digest::outcome::gone:
            return whitelist_status::changed;
        default:
            return whitelist_status::unknown;
    }
}

}  // namespace local_service
