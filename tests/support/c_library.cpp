// SPDX-License-Identifier: Apache-2.0
// The C library's functions that the double answers for, by the linker's --wrap. With no double in use they are the C
// library's own.
#include <sys/types.h>

#include "support/hand_over.h"
#include "support/service_double.h"

// The linker's names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {

void __real_free(void* memory);
uid_t __real_getuid(void);
char* __real_setlocale(int category, const char* locale);

[[noreturn]] void __real_abort(void);
// Only in a build that records what the tests reach.
__attribute__((weak)) void __gcov_dump(void);

void __wrap_free(void* memory);
uid_t __wrap_getuid(void);
char* __wrap_setlocale(int category, const char* locale);
[[noreturn]] void __wrap_abort(void);

void __wrap_free(void* memory) {
    service_double* const service = service_double::find_in_use();
    if (service != nullptr) {
        service->memory().note_free(memory);
    }
    __real_free(memory);
}

uid_t __wrap_getuid(void) {
    service_double* const service = service_double::find_in_use();
    return service == nullptr ? __real_getuid() : service->getuid();
}

char* __wrap_setlocale(int category, const char* locale) {
    static char name[] = "C";
    service_double* const service = service_double::find_in_use();
    if (service == nullptr) {
        return __real_setlocale(category, locale);
    }
    service->setlocale(category, maybe_text_of(locale));
    return name;
}

void __wrap_abort(void) {
    if (__gcov_dump != nullptr) {
        __gcov_dump();
    }
    __real_abort();
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
