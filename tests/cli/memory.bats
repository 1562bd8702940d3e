#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# How much memory the program holds at a time.

load support/session.bash

setup() {
  start_session
}

# put_long_lists_in_front: both lists of network policies have 20,000 records, every byte of them written, and the
# program tells at its end the most memory that it held, in KiB, in a file.
put_long_lists_in_front() {
  if nm -D "$ORVEX_BIN_DIR/orvex_policy" | grep -q __asan_init; then
    skip 'the sanitizer wants to be the first library'
  fi
  "${CXX:-c++}" -std=c++20 -I "$ORVEX_SOURCE_DIR/src" -shared -fPIC -x c++ -o front.so - <<'END'
#include <sys/resource.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include "service/netctl.h"
template <class Record>
static Record* make_records(std::int32_t* count) {
    *count = 20000;
    auto* const records = static_cast<Record*>(std::malloc(*count * sizeof(Record)));
    std::memset(static_cast<void*>(records), 'x', *count * sizeof(Record));
    return records;
}
extern "C" {
netctl_pkg_record* orvex_netctl_pkg_read_all_data_with_uid(std::uint32_t, std::int32_t* count) {
    return make_records<netctl_pkg_record>(count);
}
netctl_ext_record* orvex_netctl_ext_read_all_data_with_uid(std::uint32_t, std::int32_t* count) {
    return make_records<netctl_ext_record>(count);
}
int orvex_scene_getstatus() { return 2; }
int orvex_scene_get_module_status(int module) { return module == 4 ? 0 : 1; }
}
__attribute__((destructor)) static void tell_peak() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::fprintf(stderr, "%ld\n", usage.ru_maxrss);
}
END
  session_environment+=("LD_PRELOAD=$PWD/front.so")
}

@test "two long lists of network policies are not held at the same time" {
  put_long_lists_in_front
  as 0 "$ORVEX_BIN_DIR/orvex_policy" net -L
  [[ $exit_value -eq 0 ]]
  # Two headings, the empty line and the rows.
  [[ $(wc -l <"$BATS_TEST_TMPDIR/output") -eq 40003 ]]
  peak=$(tail -n 1 "$BATS_TEST_TMPDIR/errors")
  one_array=$((20000 * 12620 / 1024))
  echo "held at most $peak KiB, one array is $one_array KiB"
  ((peak * 10 < one_array * 12))
}
