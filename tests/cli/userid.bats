#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The administrator roles' labels of files, of directories and of packages, which are real ones.

load support/session.bash
load support/packages.bash

setup() {
  start_package_session
  install_package orvex-labelled
  labelled=$root/orvex-labelled
  administrator=0
}

# start_roles: the framework is on and the administrator roles are separated.
start_roles() {
  start_framework_with box
  separate_roles
  administrator=600
}

# label ROLE PATH...
label() {
  local path
  for path in "${@:2}"; do
    do_silently 0 orvex_local label add "$1" "$path"
  done
}

# expect_userid ARGUMENT...: for the administrator of the time it prints what stands on standard input.
expect_userid() {
  as "$administrator" orvex_policy userid "$@"
  expect 0
}

# expect_line_for LINE ARGUMENT...
expect_line_for() {
  expect_userid "${@:2}" <<<"$1"
}

# expect_help_for ARGUMENT...
expect_help_for() {
  expect_userid "$@" < <(print_userid_help)
}

# expect_nothing_for ARGUMENT...
expect_nothing_for() {
  expect_userid "$@" </dev/null
}

@test "userid alone, and its help, bring the help, also while the roles are not separated" {
  expect_help_for
  expect_help_for -h
  expect_help_for --help
  start_roles
  expect_help_for
  expect_help_for -h
  expect_help_for -L -h
}

@test "while the roles are not separated everything else is refused" {
  for state in disabled together; do
    expect_line_for '三权分立功能未开启!' -L -f "$labelled/plain.conf"
    expect_line_for '三权分立功能未开启!' -L -d /missing
    expect_line_for '三权分立功能未开启!' --list
    expect_line_for '三权分立功能未开启!' -x
    expect_line_for '三权分立功能未开启!' on
    expect_line_for '三权分立功能未开启!' off
    if [[ $state == disabled ]]; then
      start_framework_with box
    fi
  done
}

@test "there is no switch" {
  start_roles
  expect_help_for on
  expect_help_for off
  expect_status enable 3adm box
}

@test "a file shows its role, and another one none" {
  start_roles
  label root "$labelled/plain.conf"
  label secadm /etc/passwd
  label auditadm "$labelled/auditors.conf"
  expect_line_for "$labelled/plain.conf: root" -L -f "$labelled/plain.conf"
  expect_line_for '/etc/passwd: secadm' --list --file=/etc/passwd
  expect_line_for "$labelled/auditors.conf: auditadm" -f "$labelled/auditors.conf" -L
  expect_line_for "$labelled/both.conf: none" -L -f "$labelled/both.conf"
}

@test "a label taken away is gone in the next process" {
  start_roles
  label secadm "$labelled/plain.conf"
  expect_line_for "$labelled/plain.conf: secadm" -L -f "$labelled/plain.conf"
  do_silently 0 orvex_local label remove secadm "$labelled/plain.conf"
  expect_line_for "$labelled/plain.conf: none" -L -f "$labelled/plain.conf"
}

@test "of two roles a file alone shows the first and a batch the last" {
  start_roles
  label root "$labelled/both.conf"
  label auditadm "$labelled/both.conf"
  expect_line_for "$labelled/both.conf: root" -L -f "$labelled/both.conf"
  expect_userid -L -d "$labelled" <<END
$labelled/auditors.conf: none
$labelled/both.conf: auditadm
$labelled/plain.conf: none
END
  expect_userid -L -P orvex-labelled <<END
$labelled/auditors.conf: none
$labelled/both.conf: auditadm
$labelled/linked.conf: none
$labelled/plain.conf: none
END
}

@test "a link carries the label of its file" {
  start_roles
  label auditadm "$labelled/auditors.conf"
  expect_line_for "$labelled/linked.conf: auditadm" -L -f "$labelled/linked.conf"
  expect_userid -L -P orvex-labelled <<END
$labelled/auditors.conf: auditadm
$labelled/both.conf: none
$labelled/linked.conf: auditadm
$labelled/plain.conf: none
END
}

@test "a relative path is shown in its absolute form" {
  start_roles
  mkdir directory
  touch file directory/file
  label secadm "$PWD/file" "$PWD/directory/file"
  expect_line_for "$PWD/file: secadm" -L -f ./directory/../file
  expect_line_for "$PWD/directory/file: secadm" -L -d directory/
}

@test "a directory shows its own files, sorted, and nothing for none" {
  start_roles
  mkdir -p directory/sub directory/empty
  touch directory/{b,a,'two words','100%s',文件,sub/c}
  label root "$PWD/directory/two words" "$PWD/directory/sub/c"
  expect_userid -L -d directory <<END
$PWD/directory/100%s: none
$PWD/directory/a: none
$PWD/directory/b: none
$PWD/directory/two words: root
$PWD/directory/文件: none
END
  expect_nothing_for -L -d directory/empty
}

@test "a plain file passes for a directory, and has no files" {
  start_roles
  expect_nothing_for -L -d /etc/passwd
}

@test "a package shows all that it owns, in its own order, whether it is there or not" {
  start_roles
  install_package orvex-demo-tools
  rm "$root/orvex-demo/bin/hello"
  label secadm "$root"/orvex-demo/{bin/hello,'share/100%s "two words"',share/文件}
  expect_userid -L -P orvex-demo-tools <<END
$root/orvex-demo: none
$root/orvex-demo/bin: none
$root/orvex-demo/bin/hello: secadm
$root/orvex-demo/bin/hi: none
$root/orvex-demo/share: none
$root/orvex-demo/share/100%s "two words": secadm
$root/orvex-demo/share/dangling: none
$root/orvex-demo/share/文件: secadm
END
}

@test "a package without files shows nothing" {
  start_roles
  install_package orvex-empty
  expect_nothing_for -L -P orvex-empty
}

@test "a package that is not installed is told, and found once it is" {
  start_roles
  expect_line_for '软件包[orvex-shared-a]未安装, 不支持查询' -L -P orvex-shared-a
  install_package orvex-shared-a
  expect_line_for "$root/orvex-shared/common: none" -L --package orvex-shared-a
  expect_line_for "$root/orvex-shared/common: none" -L -P orvex-shared-a-1.0
  remove_package orvex-shared-a
  expect_line_for '软件包[orvex-shared-a]未安装, 不支持查询' -P orvex-shared-a
}

@test "the file goes before the directory and the directory before the package" {
  start_roles
  mkdir directory
  touch directory/file
  expect_line_for "$labelled/plain.conf: none" -L -P orvex-labelled -d directory -f "$labelled/plain.conf"
  expect_line_for "$PWD/directory/file: none" -d directory -P orvex-labelled -L
  expect_line_for '软件包[none]未安装, 不支持查询' -L -f "$labelled/plain.conf" -P none
}

@test "a path is tested when its option is met" {
  start_roles
  expect_line_for '路径[/missing]不存在, 请输入正确的文件路径!' -L -f /missing -h
  expect_line_for '路径[]不存在, 请输入正确的文件路径!' -L -f ''
  expect_line_for '路径[/tmp]是目录, 请输入文件路径' -L -f /tmp
  expect_line_for '路径[/missing]不存在或者非目录, 请输入正确的路径!' -L -d /missing
  expect_help_for -L -L -f /missing
}

@test "a listing without a target, and a target without a listing, bring the help" {
  start_roles
  expect_userid -L < <(
    echo '请输入需要查询三员用户标记的文件、目录或者软件包!'
    print_userid_help
  )
  expect_help_for -f "$labelled/plain.conf"
  expect_help_for word
}

@test "an unknown option is told before the help" {
  start_roles
  as 600 orvex_policy userid -A
  expect_with_errors 0 "orvex_policy: invalid option -- 'A'"$'\n' < <(
    echo '无效的参数'
    print_userid_help
  )
}

@test "everybody may list, where the listing stands first" {
  start_roles
  for user in 0 600 1234; do
    as "$user" orvex_policy userid -L -f "$labelled/plain.conf"
    expect 0 <<<"$labelled/plain.conf: none"
  done
  as 600 orvex_policy userid -f "$labelled/plain.conf" -L
  expect 0 <<<"$labelled/plain.conf: none"
  for user in 0 1234; do
    as "$user" orvex_policy userid -f "$labelled/plain.conf" -L
    expect 0 <<<'当前用户无权限执行, 请切换secadm用户执行!'
  done
}

@test "nothing is changed and nothing is logged" {
  start_roles
  label root "$labelled/plain.conf"
  as 0 orvex_local show
  mv "$BATS_TEST_TMPDIR/output" before
  as 0 orvex_policy userid -L -f "$labelled/plain.conf"
  as 0 orvex_policy userid -L -d /missing
  as 0 orvex_policy userid -L -P none
  as 0 orvex_local show
  expect 0 <before
  expect_log </dev/null
}
