#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Modules switched on and off, with the framework running and from a disabled one.

load support/session.bash

setup() {
  start_session
}

@test "a module that is switched on from a disabled framework takes effect after the restart" {
  as 0 orvex_policy kmod on
  expect 0 <<'END'
正在开启orvex......
orvex开启成功, 安全模块[kmod]开启成功, 重启后生效!
END
  expect_status disable
  restart
  expect_status enable kmod
}

@test "a framework that is started with one module has all others off" {
  start_framework_with kmod
  do_silently 0 orvex_policy box on
  do_silently 0 switch_module 0 1
  expect_status enable exec kmod box
  do_silently 0 orvex_policy disable
  start_framework_with box
  expect_status enable box
}

@test "of two modules that are switched on before the restart the last one is started" {
  as 0 orvex_policy kmod on
  as 0 orvex_policy box on
  expect 0 <<'END'
正在开启orvex......
orvex开启成功, 安全模块[box]开启成功, 重启后生效!
END
  restart
  expect_status enable box
}

@test "a module that is switched while the framework runs is so at once and after the restart" {
  start_framework_with kmod
  do_silently 0 orvex_policy box on
  do_silently 0 orvex_policy kmod off
  expect_status enable box
  restart
  expect_status enable box
}

@test "a permissive framework switches its modules at once" {
  start_framework_with kmod
  do_silently 0 orvex_policy permissive
  do_silently 0 orvex_policy kmod off
  do_silently 0 orvex_policy box on
  expect_status permissive box
}

@test "nothing is switched off while the framework is disabled" {
  start_framework_with kmod
  do_silently 0 orvex_policy disable
  for module in kmod box; do
    as 0 orvex_policy "$module" off
    expect 0 <<<'orvex未开启!'
  done
  as 0 orvex_policy enable
  restart
  expect_status enable kmod
}
