# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# The functions at the border to the service library, and a library that stands in front of it.

strip_comments() {
  sed 's|//.*||' "$@"
}

# print_declared_functions: the names that src/service declares, one a line, sorted.
print_declared_functions() {
  strip_comments "$ORVEX_SOURCE_DIR"/src/service/*.h | sed '/^extern "C"/,/^}/!d' | tr '\n' ' ' | tr ';' '\n' |
    sed -n 's/^[^(]*[ *]\([A-Za-z_][A-Za-z0-9_]*\)(.*/\1/p' | sort
}

# print_called_functions: those of them that the program's sources use.
print_called_functions() {
  find "$ORVEX_SOURCE_DIR/src" -path '*/service' -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 cat | strip_comments - | grep -owF -f <(print_declared_functions) | sort -u
}

# make_recording_library FILE: builds a library that has every declared function. Each one writes its name to standard
# error and returns what the environment variable of its name holds: a number, or a text as a heap string. Without the
# variable it returns 0.
make_recording_library() {
  {
    cat <<'END'
#include <cstdio>
#include <cstdlib>
#include <cstring>
static long answer(const char* name) {
    std::fprintf(stderr, "%s\n", name);
    const char* value = std::getenv(name);
    if (value == nullptr) {
        return 0;
    }
    char* end = nullptr;
    const long number = std::strtol(value, &end, 10);
    return *end == '\0' ? number : reinterpret_cast<long>(strdup(value));
}
END
    print_declared_functions | sed 's/.*/extern "C" long &() { return answer("&"); }/'
  } | "${CXX:-c++}" -shared -fPIC -x c++ -o "$1" -
}
