#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What file protection and process protection have in common: switch, rights, help.

load support/session.bash
load support/protection.bash

setup() {
  start_session
  touch a
}

# start_over WORD: the framework is disabled and without policies, and the module is the one of this word.
start_over() {
  use_module "$1"
  as 0 orvex_local reset
  [[ $exit_value -eq 0 ]]
}

print_off_line() {
  case $word in
    file) echo '文件只读保护未开启!' ;;
    proc) echo '进程防杀死未开启!' ;;
  esac
}

give_help() {
  expect_help_for
  expect_help_for -h
  expect_help_for --help -x
}

@test "the word alone, and the help, bring the help, also while the module is off" {
  for word in file proc; do
    start_over "$word"
    give_help
    start_framework_with box
    give_help
    do_silently 0 orvex_policy "$word" on
    give_help
  done
}

refuse_all() {
  for arguments in -L --list '-A -f a' '-D -P none' -x '-A -h' 'on extra' foo; do
    # shellcheck disable=SC2086
    expect_lines_for $arguments < <(print_off_line)
  done
  expect_lines_for '' < <(print_off_line)
}

@test "while the framework or the module is off everything else is refused" {
  for word in file proc; do
    start_over "$word"
    refuse_all
    expect_line_for 'orvex未开启!' off
    start_framework_with box
    refuse_all
  done
}

@test "the module is switched on and off, and its policy outlives that and the restart" {
  for word in file proc; do
    start_over "$word"
    start_framework_with "$word"
    expect_status enable "$word"
    change -A -f a
    change off
    expect_status enable
    # It is carried out for a module that is off already, too.
    change off
    expect_lines_for -L < <(print_off_line)
    change on
    restart
    expect_listed "$PWD/a {例外:}"
  done
}

@test "the secret scene refuses even the help" {
  for word in file proc; do
    start_over "$word"
    start_framework_with "$word"
    do_silently 0 orvex_local scene on
    expect_line_for '涉密场景下禁止使用通用命令行工具!'
    for arguments in -h -L on '-A -f a'; do
      # shellcheck disable=SC2086
      expect_line_for '涉密场景下禁止使用通用命令行工具!' $arguments
    done
  done
}

@test "without rights only the help and the list are open, in first place" {
  for word in file proc; do
    start_over "$word"
    start_framework_with "$word"
    change -A -f a
    for option in -L --list; do
      as 1234 orvex_policy "$word" "$option" -f /x
      expect 0 <<<"$PWD/a {例外:}"
    done
    as 1234 orvex_policy "$word" -h
    expect 0 < <("print_${word}_help")
    for arguments in '-A -f a' '-f a -L' '-D -f a' on off foo; do
      # shellcheck disable=SC2086
      as 1234 orvex_policy "$word" $arguments
      expect 0 <<<'当前用户无权限执行, 请切换root用户执行!'
    done
    separate_roles
    expect_line_for '当前用户无权限执行, 请切换secadm用户执行!' -D -f a
    do_silently 600 orvex_policy "$word" -D -f a
    expect_listed
  done
}

@test "processes that protect at the same time lose nothing" {
  touch {b,c}{01..15}
  protect_all() {
    local number
    for number in {01..15}; do
      run_as 0 env -i "${session_environment[@]}" orvex_policy "$module" -A -f "$1$number"
    done
  }
  for word in file proc; do
    start_over "$word"
    start_framework_with "$word"
    protect_all b >b.log 2>&1 &
    protect_all c >c.log 2>&1 &
    wait
    cat b.log c.log >all.log
    diff -u /dev/null all.log
    as 0 orvex_policy "$word" -L
    sort -o "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/output"
    expect 0 < <(printf '%s {例外:}\n' "$PWD"/{b,c}{01..15})
  done
}
