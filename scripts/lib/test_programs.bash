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
  local program=${!#} listed summary
  listed=$("$program" --gtest_list_tests | grep -c '^  ') || return
  {
    summary=$(set -o pipefail; "$@" --gtest_brief=1 | tee /dev/fd/3) || return
  } 3>&1
  if ! grep -q "^\[==========\] $listed tests from .* ran\." <<<"$summary"; then
    printf '%s: ended before its %d tests did\n' "$program" "$listed" >&2
    return 1
  fi
}
