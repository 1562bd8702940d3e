#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Who may act: root, or user 600 while the roles are separated and the framework is on.

load support/session.bash

root_line='当前用户无权限执行, 请切换root用户执行!'
secadm_line='当前用户无权限执行, 请切换secadm用户执行!'

setup() {
  start_session
}

# expect_refused_state_for USER LINE: no word that changes the global state is open to the user.
expect_refused_state_for() {
  for word in enable disable permissive; do
    as "$1" orvex_policy "$word"
    expect 255 <<<"$2"
  done
}

# expect_refused_for USER LINE ARGUMENT...: the exit value of a module's command is 0 all the same.
expect_refused_for() {
  as "$1" orvex_policy "${@:3}"
  expect 0 <<<"$2"
}

@test "only root changes the global state" {
  make_store
  for user in 1 599 600 601 1234; do
    expect_refused_state_for "$user" "$root_line"
  done
  expect_status disable
  as 0 orvex_policy enable
  expect 0 <<<'orvex开启成功, 重启后生效!'
}

@test "only root changes policies and switches" {
  start_framework_with kmod
  for user in 600 1234; do
    for word in on off foo -A -D -n -x --add --List; do
      expect_refused_for "$user" "$root_line" kmod "$word"
    done
    expect_refused_for "$user" "$root_line" kmod -A -n ext4
    expect_refused_for "$user" "$root_line" kmod -D -n ext4
    expect_refused_for "$user" "$root_line" box on
    expect_refused_for "$user" "$root_line" box off
  done
  as 0 orvex_policy kmod -L
  expect_silence
  expect_status enable kmod
}

@test "with the roles separated only user 600 changes the global state" {
  start_framework_with kmod
  separate_roles
  expect_refused_state_for 0 "$secadm_line"
  expect_refused_state_for 1234 "$secadm_line"
  do_silently 600 orvex_policy permissive
  expect_status permissive kmod 3adm
  expect_refused_state_for 0 "$secadm_line"
}

@test "with the roles separated only user 600 changes policies and switches" {
  start_framework_with kmod
  separate_roles
  for user in 0 1234; do
    expect_refused_for "$user" "$secadm_line" kmod -A -n ext4
    expect_refused_for "$user" "$secadm_line" kmod off
    expect_refused_for "$user" "$secadm_line" box on
  done
  do_silently 600 orvex_policy kmod -A -n ext4
  do_silently 600 orvex_policy box on
  as 600 orvex_policy kmod -L
  expect 0 < <(print_kmod_list ext4)
  expect_status enable kmod 3adm box
}

@test "root acts again once the framework is disabled" {
  start_framework_with kmod
  separate_roles
  as 600 orvex_policy disable <<<y
  [[ $exit_value -eq 0 ]]
  expect_refused_state_for 600 "$root_line"
  start_framework_with kmod
  expect_status enable kmod
}

@test "help and list need no rights, but only behind the module's word" {
  start_framework_with kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  separate_roles
  for user in 0 1234; do
    for word in -L --list; do
      as "$user" orvex_policy kmod "$word"
      expect 0 < <(print_kmod_list ext4)
    done
    for word in -h --help; do
      as "$user" orvex_policy kmod "$word"
      expect 0 < <(print_kmod_help)
    done
    as "$user" orvex_policy kmod
    expect 0 < <(print_kmod_help)
    expect_refused_for "$user" "$secadm_line" kmod -n ext4 -L
    expect_refused_for "$user" "$secadm_line" kmod foo -h
    expect_refused_for "$user" "$secadm_line" kmod --lis
    expect_refused_for "$user" "$secadm_line" kmod -LL
  done
}

# What is looked at is the second word alone.
@test "a list in front opens the way for what stands behind it" {
  start_framework_with kmod
  as 1234 orvex_policy kmod -L -A -n ext4
  expect 0 < <(print_kmod_help)
  as 1234 orvex_policy kmod -h -A -n ext4
  expect 0 < <(print_kmod_help)
  as 0 orvex_policy kmod -L
  expect_silence
}

@test "without rights the module's state still shows" {
  start_framework_with box
  expect_refused_for 1234 '内核模块防卸载未开启!' kmod -L
  expect_refused_for 1234 "$root_line" kmod -A -n ext4
}
