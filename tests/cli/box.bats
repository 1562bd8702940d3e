#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The file box: a switch and a help.

load support/session.bash

setup() {
  start_session
}

expect_box_help_for() {
  as 0 orvex_policy box "$@"
  expect 0 < <(print_box_help)
}

@test "box alone, and its help, bring the help" {
  expect_box_help_for
  expect_box_help_for -h
  expect_box_help_for --help
  expect_box_help_for --he
}

@test "any other word brings the help and no complaint" {
  expect_box_help_for status
  expect_box_help_for On
  expect_box_help_for on now
  expect_box_help_for on off
  expect_box_help_for off off
  expect_box_help_for -- -x
}

@test "an unknown option is told before the help" {
  as 0 orvex_policy box -x
  expect_bad_option box "invalid option -- 'x'"
  as 0 orvex_policy box --list
  expect_bad_option box "unrecognized option '--list'"
  as 0 orvex_policy box --help=me
  expect_bad_option box "option '--help' doesn't allow an argument"
}

@test "box off while the framework is disabled changes nothing" {
  as 0 orvex_policy box off
  expect 0 <<<'orvex未开启!'
  expect_status disable
}

@test "box on while the framework is disabled starts the framework with the box alone" {
  start_framework_with box
  expect_status enable box
}

@test "the box is switched at once, and silently, while the framework runs" {
  start_framework_with kmod
  do_silently 0 orvex_policy box on
  expect_status enable kmod box
  do_silently 0 orvex_policy box off
  do_silently 0 orvex_policy box off
  expect_status enable kmod
}

@test "without rights the box shows its help and nothing else" {
  make_store
  as 1234 orvex_policy box -h
  expect 0 < <(print_box_help)
  as 1234 orvex_policy box --help
  expect 0 < <(print_box_help)
  as 1234 orvex_policy box
  expect 0 < <(print_box_help)
  for word in on off foo -L --list -x; do
    as 1234 orvex_policy box "$word"
    expect 0 <<<'当前用户无权限执行, 请切换root用户执行!'
  done
}
