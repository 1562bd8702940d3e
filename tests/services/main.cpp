// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <memory>

#include "services/test_packages.h"

// Options of AddressSanitizer, which asks for them by these names: without frame pointers in GLib it finds the function
// below only by the slow way, which is made quicker by looking no further than needed.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {
const char* __asan_default_options(void);
const char* __lsan_default_options(void);
const char* __lsan_default_suppressions(void);

const char* __asan_default_options(void) {
    return "fast_unwind_on_malloc=0:malloc_context_size=8";
}

const char* __lsan_default_options(void) {
    return "print_suppressions=0";
}

// The program keeps the icon's text on purpose.
const char* __lsan_default_suppressions(void) {
    return "leak:g_icon_to_string";
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // GoogleTest takes the environment over.
    testing::AddGlobalTestEnvironment(std::make_unique<test_packages>().release());
    return RUN_ALL_TESTS();
}
