// SPDX-License-Identifier: Apache-2.0
#include "support/service_double.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "service/log.h"

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage)
#define MOCKED_SIGNATURE(...) template class testing::internal::FunctionMocker<__VA_ARGS__>;
#include "support/mocked_signatures.inc"
#undef MOCKED_SIGNATURE

namespace {

service_double* the_double_in_use = nullptr;

[[noreturn]] void end_with(const char* word) {
    static_cast<void>(std::fprintf(stderr, "%s\n", word));
    std::abort();
}

}  // namespace

service_double::service_double() {
    if (the_double_in_use != nullptr) {
        end_with("there is a double of the service library in use already");
    }
    the_double_in_use = this;
}

service_double::~service_double() {
    the_double_in_use = nullptr;
}

service_double& service_double::in_use() {
    if (the_double_in_use == nullptr) {
        end_with("a service function was called with no double of the service library in use");
    }
    return *the_double_in_use;
}

service_double* service_double::find_in_use() noexcept {
    return the_double_in_use;
}

void* service_double::keep_error_record(const std::string& text) {
    // The bytes in front are no NULs, so that a text read from the wrong place shows.
    error_record_.assign(offsetof(orvex_error_record, text), '#');
    error_record_.insert(error_record_.end(), text.begin(), text.end());
    error_record_.push_back('\0');
    return error_record_.data();
}
