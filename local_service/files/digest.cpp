// SPDX-License-Identifier: Apache-2.0
#include "files/digest.h"

#include <rpm/rpmcrypto.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <type_traits>

#include "core/descriptor.h"
#include "core/failure.h"
#include "core/heap.h"

namespace local_service {
namespace {

struct digest_deleter {
    void operator()(DIGEST_CTX digest) const noexcept { rpmDigestFinal(digest, nullptr, nullptr, 0); }
};
using owned_digest = std::unique_ptr<std::remove_pointer_t<DIGEST_CTX>, digest_deleter>;

owned_digest begin_digest() {
    static const bool is_ready = rpmInitCrypto() == 0;
    owned_digest digest(is_ready ? rpmDigestInit(RPM_HASH_SHA256, RPMDIGEST_NONE) : nullptr);
    if (digest == nullptr) {
        throw failure("SHA-256 is not available");
    }
    return digest;
}

std::string finish_digest(owned_digest digest) {
    void* text = nullptr;
    std::size_t size = 0;
    rpmDigestFinal(digest.release(), &text, &size, 1);
    const std::unique_ptr<void, heap_deleter> owned_text(text);
    if (text == nullptr) {
        throw failure("SHA-256 gave no result");
    }
    return static_cast<const char*>(text);
}

content_digest::outcome outcome_of_failed_open(int error) {
    const bool is_gone = error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENXIO;
    return is_gone ? content_digest::outcome::gone : content_digest::outcome::unreadable;
}

}  // namespace

content_digest digest_file(const std::string& path) {
    const descriptor file(path);
    if (file.number() < 0) {
        return {outcome_of_failed_open(errno), {}};
    }
    struct stat status {};
    if (fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {content_digest::outcome::gone, {}};
    }
    owned_digest digest = begin_digest();
    // Left as it is: filling it with zeros would cost more than a small file does.
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t got = read(file.number(), buffer.data(), buffer.size());
        if (got < 0) {
            return {content_digest::outcome::unreadable, {}};
        }
        if (got == 0) {
            return {content_digest::outcome::read, finish_digest(std::move(digest))};
        }
        rpmDigestUpdate(digest.get(), buffer.data(), static_cast<std::size_t>(got));
    }
}

}  // namespace local_service
