#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Calls that fail on request, so that what the program says to it can be seen.

load support/session.bash

setup() {
  start_session
  start_framework_with file
  touch notes.txt
}

@test "a call fails as often as it was wanted, and the program says so" {
  do_silently 0 orvex_local fail orvex_scene_filectl_multi_add_by_path -4 --times 1
  as 0 orvex_policy file -A -f notes.txt
  expect 0 <<<'设置文件只读保护失败'
  do_silently 0 orvex_policy file -A -f notes.txt
}

@test "the text of the failure reaches the program" {
  do_silently 0 orvex_local fail setModuleStatusReboot_dbus 1 --error 'the service is away'
  as 0 orvex_policy disable
  expect 0 <<<'设置orvex状态失败! error: the service is away'
}

@test "a failure is one for both administrators" {
  do_silently 0 orvex_local fail orvex_scene_getstatus 7 --times 2
  for user in 0 600; do
    as "$user" orvex_policy status
    head -n 1 "$BATS_TEST_TMPDIR/output" | grep -vF enable
  done
  expect_status enable file
}

@test "a user who cannot write the store gets the failure without being counted" {
  do_silently 0 orvex_local fail orvex_scene_kmodctl_get_policy null --times 1
  do_silently 0 orvex_local fail orvex_scene_getstatus 7 --times 1
  chmod -R a-w "$BATS_TEST_TMPDIR/state"
  for _ in 1 2; do
    as 1234 orvex_policy status
    head -n 1 "$BATS_TEST_TMPDIR/output" | grep -vF enable
  done
  chmod -R u+w "$BATS_TEST_TMPDIR/state"
}

@test "each function that the program calls can be made to fail" {
  load support/service_functions.bash
  for function in $(print_declared_functions); do
    as 0 orvex_local fail "$function" 0
    if [[ $exit_value -ne 0 ]]; then
      grep -E 'returns (a pointer, so it can only fail with null|nothing, so it cannot fail)$' \
        "$BATS_TEST_TMPDIR/errors"
    fi
  done
}
