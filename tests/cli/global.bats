#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The words that the program serves itself, and what it makes of all others.

load support/session.bash

setup() {
  start_session
}

# expect_global_help_for ARGUMENT...
expect_global_help_for() {
  as 1234 orvex_policy "$@"
  expect 0 < <(print_global_help)
}

@test "no argument brings the global help" {
  expect_global_help_for
}

@test "-h and --help bring the global help, whatever stands behind them" {
  expect_global_help_for -h
  expect_global_help_for --help
  expect_global_help_for --help kmod -L
}

@test "an unknown word brings the global help and no complaint" {
  expect_global_help_for frob
  expect_global_help_for frob kmod
  expect_global_help_for ''
  expect_global_help_for '%s%n'
  expect_global_help_for $'\xff'
}

@test "words are compared whole and with their case" {
  expect_global_help_for Enable
  expect_global_help_for STATUS
  expect_global_help_for kmo
  expect_global_help_for kmods
  expect_global_help_for ' kmod'
  expect_global_help_for --hel
  expect_global_help_for -hh
  expect_global_help_for -v
}

@test "the version options are accepted and silent" {
  do_silently 1234 orvex_policy -V
  do_silently 1234 orvex_policy --version
  do_silently 1234 orvex_policy --version kmod -L
}

@test "import and export are refused for everybody" {
  for word in import export; do
    for user in 0 600 1234; do
      as "$user" orvex_policy "$word" file
      expect 0 <<<'暂不支持'
    done
  done
}
