// SPDX-License-Identifier: Apache-2.0
#include "core/store_file.h"

#include <SQLiteCpp/Database.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>

#include "core/descriptor.h"
#include "core/schema.h"
#include "core/state_directory.h"

namespace local_service {
namespace {

constexpr mode_t database_mode = 0644;
constexpr const char* draft_prefix = ".new-";

[[noreturn]] void throw_error(const std::string& path, const std::string& what = "") {
    throw store_failure(path + ": " + what + std::strerror(errno));
}

/// In a user namespace all users that it does not know look like this one.
bool is_owner_unknown(uid_t owner) {
    constexpr uid_t overflow_user = 65534;
    constexpr unsigned long every_user = 4294967295UL;
    if (owner != overflow_user) {
        return false;
    }
    std::ifstream map("/proc/self/uid_map");
    unsigned long first = 0;
    unsigned long outside = 0;
    unsigned long count = 0;
    return map >> first >> outside >> count && count != every_user;
}

/// Whoever can write the directory can put any database there, for callers with more rights than their own.
void require_trust(const std::string& directory, const struct stat& status) {
    if (!S_ISDIR(status.st_mode)) {
        throw store_failure(directory + ": Not a directory");
    }
    if ((status.st_mode & S_IWOTH) != 0) {
        throw store_failure(directory + ": not trusted, as everybody may write to it");
    }
    const uid_t owner = status.st_uid;
    if (owner != 0 && owner != security_administrator && owner != geteuid() && !is_owner_unknown(owner)) {
        throw store_failure(directory + ": not trusted, as it belongs to user " + std::to_string(owner));
    }
}

/// Root's store serves the security administrator as well, who is an ordinary user to the system.
void prepare_directory(const std::string& directory) {
    std::error_code error;
    const bool is_new = std::filesystem::create_directories(directory, error);
    if (error) {
        throw store_failure(directory + ": cannot be made: " + error.message());
    }
    if (is_new && directory == system_directory) {
        give_to(security_administrator, directory);
    }
}

uid_t owner_of(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw_error(path);
    }
    return status.st_uid;
}

struct sqlite_deleter {
    void operator()(void* memory) const noexcept { sqlite3_free(memory); }
};

/// Returns the bytes of a new database.
std::string new_database() {
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(std::string("BEGIN;") + create_tables + insert_initial_rows +
                  "PRAGMA user_version = " + std::to_string(schema_version) + "; COMMIT");
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, sqlite_deleter> image(
        sqlite3_serialize(database.getHandle(), "main", &size, 0));
    if (image == nullptr) {
        throw std::bad_alloc();
    }
    std::string bytes(reinterpret_cast<const char*>(image.get()), static_cast<std::size_t>(size));
    // Here the file says that it is in WAL mode, which a database in memory cannot be.
    constexpr std::size_t write_version = 18;
    constexpr std::size_t read_version = 19;
    constexpr char wal_mode = 2;
    bytes.at(write_version) = wal_mode;
    bytes.at(read_version) = wal_mode;
    return bytes;
}

/// A file under a name of its own that is removed again at the end of its life. While its maker lives it is locked.
class draft_file {
public:
    explicit draft_file(const std::string& directory) {
        do {
            release();
            name_ = directory + "/" + draft_prefix + "XXXXXX";
            descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
            if (descriptor_ < 0) {
                throw_error(directory, "the store cannot be made: ");
            }
        } while (!is_locked());
    }
    draft_file(const draft_file&) = delete;
    draft_file& operator=(const draft_file&) = delete;
    ~draft_file() { release(); }

    const std::string& name() const { return name_; }

    /// Writes `bytes` and waits until they are on the disk. False where that fails.
    bool write(const std::string& bytes) const {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t written = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
            if (written < 0) {
                return false;
            }
            done += static_cast<std::size_t>(written);
        }
        return fchmod(descriptor_, database_mode) == 0 && fsync(descriptor_) == 0;
    }

private:
    /// Before it was locked, another process may have taken the draft for a dead one's and removed it.
    bool is_locked() const {
        struct stat status {};
        return flock(descriptor_, LOCK_EX) == 0 && fstat(descriptor_, &status) == 0 && status.st_nlink != 0;
    }

    void release() {
        if (descriptor_ >= 0) {
            unlink(name_.c_str());
            close(descriptor_);
            descriptor_ = -1;
        }
    }

    std::string name_;
    int descriptor_ = -1;
};

}  // namespace

store_failure::store_failure(const std::string& text) : std::runtime_error(text) {}

store_failure::~store_failure() = default;

std::string store_file(const std::string& directory) {
    return directory + "/orvex.db";
}

bool has_store_file(const std::string& directory) {
    struct stat status {};
    if (stat(directory.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            return false;
        }
        throw_error(directory);
    }
    require_trust(directory, status);
    const std::string file = store_file(directory);
    if (lstat(file.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            return false;
        }
        throw_error(file);
    }
    if (!S_ISREG(status.st_mode)) {
        throw store_failure(file + ": not a file");
    }
    if (access(file.c_str(), R_OK) != 0) {
        throw_error(file);
    }
    return true;
}

/// The file gets its name by a link, whole: of two first processes one wins, and neither ever sees half a database.
void make_store_file(const std::string& directory) {
    prepare_directory(directory);
    const std::string file = store_file(directory);
    const draft_file draft(directory);
    give_to(owner_of(directory), draft.name());
    if (!draft.write(new_database()) || (link(draft.name().c_str(), file.c_str()) != 0 && errno != EEXIST)) {
        throw_error(file, "cannot be made: ");
    }
}

void remove_stale_drafts(const std::string& directory) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path().string();
        if (entry->path().filename().string().rfind(draft_prefix, 0) != 0) {
            continue;
        }
        const descriptor draft(path, O_NOFOLLOW);
        if (draft.number() >= 0 && flock(draft.number(), LOCK_EX | LOCK_NB) == 0) {
            unlink(path.c_str());
        }
    }
}

void remove_store_file(const std::string& directory) {
    for (const char* ending : {"-wal", "-shm", ""}) {
        const std::string file = store_file(directory) + ending;
        if (unlink(file.c_str()) != 0 && errno != ENOENT) {
            throw_error(file, "cannot be removed: ");
        }
    }
}

std::uint64_t free_room(const std::string& directory) {
    struct statvfs disk {};
    const bool is_known = statvfs(directory.c_str(), &disk) == 0 && disk.f_blocks != 0;
    return is_known ? disk.f_bavail * disk.f_frsize : std::numeric_limits<std::uint64_t>::max();
}

}  // namespace local_service
