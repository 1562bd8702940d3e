#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Several processes at one policy, and one that dies at it.

load support/session.bash

setup() {
  start_session
  start_framework_with kmod
}

# add_all PREFIX: adds forty modules, each by a process of its own, and prints what these print.
add_all() {
  local number
  for number in {01..40}; do
    run_as 0 env -i "${session_environment[@]}" orvex_policy kmod -A -n "$1$number"
  done
}

@test "processes that add at the same time lose nothing" {
  for prefix in a b c; do
    add_all "$prefix" >"$prefix.log" 2>&1 &
  done
  wait
  cat a.log b.log c.log >all.log
  diff -u /dev/null all.log

  as 0 orvex_policy kmod -L
  sort -o "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/output"
  expect 0 < <(print_kmod_list {a,b,c}{01..40})
}

@test "a process that is killed at any moment leaves the list whole" {
  local kept=() killed=0
  for number in {01..30}; do
    as 0 timeout --signal=KILL "0.0$number" orvex_policy kmod -A -n "perhaps$number"
    if [[ $exit_value -ne 0 ]]; then
      killed=$((killed + 1))
    fi
    do_silently 0 orvex_policy kmod -A -n "kept$number"
    kept+=("kept$number")
  done
  [[ $killed -ge 1 ]]

  as 0 orvex_policy kmod -L
  sed -i '/perhaps/d' "$BATS_TEST_TMPDIR/output"
  expect 0 < <(print_kmod_list "${kept[@]}")
}
