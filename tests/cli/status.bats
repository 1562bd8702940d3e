#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The status report.

load support/session.bash

setup() {
  start_session
}

@test "a disabled framework is one line" {
  as 0 orvex_policy status
  expect 0 <<<'orvex status : disable'
}

@test "an enabled framework shows its modules in their order" {
  as 0 orvex_policy enable
  restart
  as 0 orvex_policy status
  expect 0 <<'END'
orvex status : enable
    exec        : off
    exec script : off
    net         : off
    kmod        : off
    file        : off
    proc        : off
    3adm        : off
    box         : off
END
}

@test "a permissive framework shows each module's own state" {
  as 0 orvex_policy permissive
  restart
  for module in 0 7 1 3 2 5 11 4; do
    do_silently 0 switch_module "$module" 1
  done
  as 0 orvex_policy status
  expect 0 <<'END'
orvex status : permissive
    exec        : on
    exec script : on
    net         : on
    kmod        : on
    file        : on
    proc        : on
    3adm        : on
    box         : on
END
}

@test "without execution control there is no script control" {
  start_framework_with kmod
  do_silently 0 switch_module 7 1
  expect_status enable kmod
  do_silently 0 switch_module 0 1
  expect_status enable exec 'exec script' kmod
  do_silently 0 switch_module 7 0
  expect_status enable exec kmod
}

@test "the report needs no rights" {
  start_framework_with box
  separate_roles
  for user in 0 600 1234; do
    as "$user" orvex_policy status
    expect 0 < <(print_status enable 3adm box)
  done
}

@test "further words are ignored" {
  start_framework_with box
  as 0 orvex_policy status extra -x words
  expect 0 < <(print_status enable box)
}
