#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Enable, disable and permissive, and the question before a restart.

load support/session.bash

setup() {
  start_session
}

# expect_enabled_later COMMAND...: the command says that the framework will be on after the restart.
expect_enabled_later() {
  as 0 orvex_policy "$@"
  expect 0 <<<'orvex开启成功, 重启后生效!'
}

# Puts the framework into the state in which disabling it asks first.
start_with_question() {
  start_framework_with box
  separate_roles
}

# answer TEXT: disables the framework with this text as the whole input.
answer() {
  printf '%b' "$1" >input
  as 600 orvex_policy disable <input
}

print_question() {
  printf '%s' '安全模式状态将改变, 完成设置后会立即重启系统, 是否继续Y/N[默认N]: '
}

expect_no() {
  expect 0 < <(print_question)
  expect_status enable 3adm box
}

expect_yes() {
  expect 0 < <(
    print_question
    echo '设置成功后将立即重启系统, 当前正在关闭orvex......'
  )
  expect_status disable
}

@test "the framework is enabled for the time after the restart" {
  expect_enabled_later enable
  expect_status disable
  restart
  expect_status enable
}

@test "the framework becomes permissive after the restart" {
  expect_enabled_later permissive
  expect_status disable
  restart
  expect_status permissive
}

@test "as long as the framework is disabled the restart is announced, and the last word counts" {
  expect_enabled_later enable
  expect_enabled_later enable
  expect_enabled_later permissive
  restart
  expect_status permissive
}

@test "an enabling is taken back before the restart" {
  expect_enabled_later enable
  do_silently 0 orvex_policy disable
  restart
  expect_status disable
}

@test "a running framework changes at once and silently" {
  start_framework_with kmod
  do_silently 0 orvex_policy enable
  expect_status enable kmod
  do_silently 0 orvex_policy permissive
  expect_status permissive kmod
  do_silently 0 orvex_policy permissive
  do_silently 0 orvex_policy enable
  expect_status enable kmod
  do_silently 0 orvex_policy disable
  expect_status disable
  do_silently 0 orvex_policy disable
  restart
  expect_status disable
}

@test "further words are ignored" {
  expect_enabled_later enable disable --help
  restart
  do_silently 0 orvex_policy disable enable
  expect_status disable
}

@test "with the roles separated a bare newline is a no" {
  start_with_question
  answer '\n'
  expect_no
}

@test "with the roles separated the end of the input is a no" {
  start_with_question
  answer ''
  expect_no
  as 600 orvex_policy disable <&-
  expect_no
}

@test "with the roles separated anything but a y in front is a no" {
  start_with_question
  for text in 'n\n' 'N\n' 'no yes\n' ' y\n' '1\n' '\0y\n' '\xff\n' '是\n' 'n'; do
    answer "$text"
    expect_no
  done
}

@test "only the first line is asked" {
  start_with_question
  answer '\ny\n'
  expect_no
  answer 'n\ny\n'
  expect_no
}

@test "with the roles separated a y in front is a yes" {
  for text in 'y\n' 'Y\n' 'yes\n' 'Yikes, no\n' 'y' 'y\nn\n'; do
    start_with_question
    answer "$text"
    expect_yes
  done
}

@test "after a yes the restart has happened" {
  start_with_question
  answer 'y\n'
  expect_yes
  expect_log <<'END'
6 local_service setModuleStatusReboot_dbus restart requested with the change of state: simulated, the machine keeps running
END
}

@test "without the roles separated nobody is asked" {
  start_framework_with box
  printf 'n\n' >input
  as 0 orvex_policy disable <input
  expect_silence
  expect_status disable
}

@test "with the roles separated only a disabling is asked about" {
  start_with_question
  do_silently 600 orvex_policy permissive
  expect_status permissive 3adm box
  do_silently 600 orvex_policy enable
  expect_status enable 3adm box
}
