// SPDX-License-Identifier: Apache-2.0
#include "core/failure.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>

#include "core/log.h"
#include "core/state_directory.h"
#include "core/store_file.h"
#include "service/log.h"
#include "service/status.h"

namespace local_service {
namespace {

constexpr std::size_t text_offset = offsetof(orvex_error_record, text);
constexpr std::size_t text_size = 4096;

void keep_error_text(const char* text) noexcept {
    const std::size_t length = std::min(std::strlen(text), text_size - 1);
    unsigned char* target = error_record() + text_offset;
    std::memcpy(target, text, length);
    target[length] = 0;
}

void log_fault(const char* function, const char* text) noexcept {
    try {
        write_log({orvex_log_level_failure, "local_service", function, text});
    } catch (...) {
        // The log lies in the database that may be the very thing that failed.
        return;
    }
}

/// For whoever sits in front of the caller: the libraries only have their results to say that there is no store.
void tell_once(const char* text) noexcept {
    static bool is_told = false;
    if (!is_told) {
        is_told = true;
        static_cast<void>(std::fprintf(stderr, "local_service: %s\n", text));
    }
}

}  // namespace

failure::failure(const std::string& text, int code) : std::runtime_error(text), code_(code) {}

failure::~failure() = default;

void require_rights() {
    const uid_t caller = getuid();
    if (caller != 0 && caller != security_administrator) {
        throw failure(
            "user " + std::to_string(caller) + " may not change this: only root and the security administrator",
            orvex_result_no_rights);
    }
}

unsigned char* error_record() noexcept {
    alignas(orvex_error_record) static std::array<unsigned char, text_offset + text_size> record{};
    return record.data();
}

int handle_failure(const char* function) noexcept {
    try {
        throw;
    } catch (const failure& refusal) {
        keep_error_text(refusal.what());
        return refusal.code();
    } catch (const std::filesystem::filesystem_error& refusal) {
        // The caller's directories, or those above the store: nothing that the stand-in has done.
        keep_error_text(refusal.what());
    } catch (const store_failure& fault) {
        keep_error_text(fault.what());
        log_fault(function, fault.what());
        tell_once(fault.what());
    } catch (const std::exception& fault) {
        keep_error_text(fault.what());
        log_fault(function, fault.what());
    } catch (...) {
        keep_error_text("unknown failure");
        log_fault(function, "unknown failure");
    }
    return result_failed;
}

}  // namespace local_service
