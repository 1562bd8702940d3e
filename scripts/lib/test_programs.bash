# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Runs a whole program of GoogleTest at once, where CTest, with a process for each test, is not wanted, and knows what a
# build has to hold.

# What the sessions of tests/cli run.
# shellcheck disable=SC2034
session_programs=(orvex_policy orvex_rpm orvex_gio orvex_local show_net switch_module test_packages)

# run_whole [COMMAND...] PROGRAM: runs all tests of the program in one process, as an argument of COMMAND where there is
# one. An exit value of 0 is not enough: tested code can end the process before the tests do, so the closing summary has to
# tell of every test that the program lists.
run_whole() {
  local program=${!#} listed log exit_value=0
  listed=$("$program" --gtest_list_tests | grep -c '^  ') || return
  log=$(mktemp)
  (set -o pipefail; "$@" --gtest_brief=1 | tee "$log") || exit_value=$?
  if [[ $exit_value -eq 0 ]] && ! grep -q "^\[==========\] $listed tests from .* ran\." "$log"; then
    printf '%s: ended before its %d tests did\n' "$program" "$listed" >&2
    exit_value=1
  fi
  rm "$log"
  return "$exit_value"
}

# run_all_whole PROGRAM...: runs each of the programs so, as many at a time as there are processors.
run_all_whole() {
  export -f run_whole
  # shellcheck disable=SC2016
  printf '%s\n' "$@" | xargs -d '\n' -I {} -P "$(nproc)" bash -c 'run_whole "$1"' bash {}
}
