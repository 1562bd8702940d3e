#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# How hard an optimised build makes it to turn a fault into an attack. What is installed is looked at in linking.bats, where
# it is built.

load support/session.bash
load support/objects.bash

setup() {
  is_built_optimised || skip "the build type is $ORVEX_BUILD_TYPE"
  start_session
  libraries=$ORVEX_BIN_DIR/../lib
}

@test "every program, library and module that is built is hardened" {
  # What is to be installed is linked once more, beside its objects.
  print_objects "$ORVEX_BIN_DIR" "$libraries" "$ORVEX_BUILD_DIR"/{src,state,local_service} >objects
  for name in src/orvex_policy bin/orvex_policy orvex_local orvex_state unit_tests liborvex.so.0 libvemulabelmgr.so \
    orvex_policy/orvex_rpm.so orvex_policy/orvex_gio.so orvex_local/file_reader.so; do
    grep -q "/$name$" objects
  done
  mapfile -t objects <objects
  expect_hardened "${objects[@]}"
}

# Where nothing is at risk the compiler adds no check, so only the larger ones have to show some.
@test "what is built checks its stack and its copies" {
  expect_checked "$ORVEX_BIN_DIR/orvex_policy" "$ORVEX_BIN_DIR/orvex_local"
}

@test "every object of the program and of the stand-in is compiled to be checked" {
  [[ $(uname -m) == x86_64 ]] || skip "other machines than x86-64 have other notes"
  find "$ORVEX_BUILD_DIR"/{src,local_service} -name '*.o' >objects
  grep -q /main.cpp.o objects
  while read -r object; do
    echo "$object"
    has_cet_notes "$object"
  done <objects
}
