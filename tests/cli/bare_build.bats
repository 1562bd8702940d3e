#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The program as the bare compiler line of docs/architecture.md builds it: no macro and no option of the build files may
# be what makes it right.

load support/session.bash
load support/service_functions.bash

setup() {
  start_session
}

# build_bare: builds the program by the line of the document as ./bare.
build_bare() {
  local libraries line
  mapfile -t libraries < <(find "$ORVEX_BUILD_DIR/lib" -type f \( -name 'liborvex*' -o -name 'libvemu*' \))
  line=$(grep '^g++ ' "$ORVEX_SOURCE_DIR/docs/architecture.md")
  line=${line/g++/${CXX:-c++}}
  line=${line%<the eight libraries>}$(printf '%q ' "${libraries[@]}" -o "$PWD/bare")
  (cd "$ORVEX_SOURCE_DIR" && eval "${line//$'\n'/ }")
  session_environment+=("LD_LIBRARY_PATH=$ORVEX_BUILD_DIR/lib")
}

# put_entry_in_front TEXT: every list of exception files holds this one entry; the framework and all modules are on.
put_entry_in_front() {
  "${CXX:-c++}" -shared -fPIC -x c++ -o front.so - <<END
#include <cstdint>
#include <cstdlib>
#include <cstring>
extern "C" char** orvex_scene_exectl_get_policy_for_file_permissive(std::uint64_t* count) {
    char** const list = static_cast<char**>(std::malloc(sizeof(char*)));
    list[0] = strdup("$1");
    *count = 1;
    return list;
}
extern "C" int orvex_scene_getstatus() { return 2; }
extern "C" int orvex_scene_get_module_status(int module) { return module == 4 ? 0 : 1; }
END
  session_environment+=("LD_PRELOAD=$PWD/front.so")
}

# expect_assertion ARGUMENT...: the program prints nothing and is stopped by its assertion.
expect_assertion() {
  as 0 ./bare "$@"
  # The shell's value for SIGABRT.
  [[ $exit_value -eq 134 && ! -s $BATS_TEST_TMPDIR/output ]]
  grep -qx 'orvex_policy: assertion failed: an entry of the exception files is too short' "$BATS_TEST_TMPDIR/errors"
}

@test "built by the bare compiler line the program stops at a broken exception entry" {
  if nm -D "$ORVEX_BIN_DIR/orvex_policy" | grep -q __asan_init; then
    skip 'the libraries want the sanitizer, which the line does not link'
  fi
  build_bare
  as 0 ./bare status
  expect 0 <<<'orvex status : disable'

  mkdir dir
  put_entry_in_front ''
  expect_assertion exec -A -e -d dir
  expect_assertion exec -L

  put_entry_in_front '*'
  expect_assertion exec -D -e -d dir
  # The listing cuts the star alone.
  as 0 ./bare exec -L
  expect 0 <<<'放行   文件:'
}

@test "main itself runs an object of each module" {
  # A call through the base class or of somebody else's object would show no such name here.
  "${CXX:-c++}" -std=c++20 -I "$ORVEX_SOURCE_DIR/src" -c -o main.o "$ORVEX_SOURCE_DIR/src/front/main.cpp"
  nm --undefined-only --demangle main.o | sed -n 's/^ *U \(COrvex.*\)::run(int, char\*\*)$/\1/p' | LC_ALL=C sort >run_by_main
  diff -u - run_by_main <<'END'
COrvexBox
COrvexExec
COrvexFile
COrvexKmod
COrvexNet
COrvexProc
COrvexUserid
END
}
