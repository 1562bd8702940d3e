#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The secret scene, in which this tool changes nothing.

load support/session.bash

setup() {
  start_session
}

# set_scene on|off
set_scene() {
  as 0 orvex_local scene "$1"
  [[ $exit_value -eq 0 ]]
}

@test "the global state stays as it is, whoever asks" {
  start_framework_with kmod
  set_scene on
  for user in 0 600 1234; do
    for word in enable disable permissive; do
      as "$user" orvex_policy "$word"
      expect 0 <<<'涉密场景下禁止修改orvex状态'
    done
  done
  expect_status enable kmod
}

@test "kmod answers nothing, not even with its help" {
  start_framework_with kmod
  set_scene on
  for user in 0 600 1234; do
    as "$user" orvex_policy kmod
    expect 0 <<<'涉密场景下禁止使用通用命令行工具!'
    for word in on off -h --help -L -A -x; do
      as "$user" orvex_policy kmod "$word"
      expect 0 <<<'涉密场景下禁止使用通用命令行工具!'
    done
  done
  expect_status enable kmod
}

@test "box does not know the scene" {
  start_framework_with kmod
  set_scene on
  as 1234 orvex_policy box -h
  expect 0 < <(print_box_help)
  do_silently 0 orvex_policy box on
  expect_status enable kmod box
}

@test "help and status do not know the scene" {
  set_scene on
  as 0 orvex_policy --help
  expect 0 < <(print_global_help)
  expect_status disable
}

@test "after the scene everything is as before" {
  start_framework_with kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  set_scene on
  set_scene off
  as 0 orvex_policy kmod -L
  expect 0 < <(print_kmod_list ext4)
  do_silently 0 orvex_policy permissive
  expect_status permissive kmod
}
