#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Kernel module unload protection, from a command line to the next process.

load support/session.bash

setup() {
  start_session
}

# expect_kmod_help_for ARGUMENT...
expect_kmod_help_for() {
  as 0 orvex_policy kmod "$@"
  expect 0 < <(print_kmod_help)
}

# expect_line_for LINE ARGUMENT...
expect_line_for() {
  as 0 orvex_policy kmod "${@:2}"
  expect 0 <<<"$1"
}

# expect_listed NAME...: these modules are on the list, in this order.
expect_listed() {
  as 0 orvex_policy kmod -L
  expect 0 < <(print_kmod_list "$@")
}

@test "kmod alone, and its help, bring the help, also while the module is off" {
  expect_kmod_help_for
  expect_kmod_help_for -h
  expect_kmod_help_for --help
  start_framework_with box
  expect_kmod_help_for
  expect_kmod_help_for -h
}

@test "while the framework or the module is off everything else is refused" {
  for state in disabled off; do
    expect_line_for '内核模块防卸载未开启!' -L
    expect_line_for '内核模块防卸载未开启!' --list
    expect_line_for '内核模块防卸载未开启!' -A -n a
    expect_line_for '内核模块防卸载未开启!' -D -f /missing
    expect_line_for '内核模块防卸载未开启!' -x
    expect_line_for '内核模块防卸载未开启!' -A -h
    expect_line_for '内核模块防卸载未开启!' on extra
    if [[ $state == disabled ]]; then
      start_framework_with box
    fi
  done
}

@test "kmod is switched on and off" {
  expect_line_for 'orvex未开启!' off
  start_framework_with kmod
  expect_status enable kmod
  do_silently 0 orvex_policy kmod off
  expect_line_for '内核模块防卸载未开启!' -L
  do_silently 0 orvex_policy kmod on
  expect_listed
}

@test "modules are added, listed and deleted by name" {
  start_framework_with kmod
  expect_listed
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod --name nf_tables --add
  expect_listed ext4 nf_tables
  expect_line_for '模块[ext4]已添加内核模块防卸载, 无需重复添加!' -A -n ext4
  do_silently 0 orvex_policy kmod --delete --name=ext4
  expect_line_for '模块[ext4]未添加内核模块防卸载, 无需删除!' -D -n ext4
  expect_listed nf_tables
}

@test "a name counts whole and with its case" {
  start_framework_with kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod -A -n ext
  do_silently 0 orvex_policy kmod -A -n EXT4
  as 0 orvex_policy kmod -L
  [[ $(wc -l <"$BATS_TEST_TMPDIR/output") -eq 3 ]]
  expect_line_for '模块[ext42]未添加内核模块防卸载, 无需删除!' -D -n ext42
}

@test "modules are added and deleted by file, under the name in the file" {
  start_framework_with kmod
  make_kernel_module watch-dog.ko watchdog
  do_silently 0 orvex_policy kmod -A -f watch-dog.ko
  expect_listed watchdog
  expect_line_for '文件[./watch-dog.ko]已添加内核模块防卸载, 无需重复添加!' -A -f ./watch-dog.ko
  expect_line_for '模块[watchdog]已添加内核模块防卸载, 无需重复添加!' -A -n watchdog
  do_silently 0 orvex_policy kmod -D --file "$PWD/watch-dog.ko"
  expect_line_for '文件[watch-dog.ko]未添加内核模块防卸载, 无需删除!' -D -f watch-dog.ko
  expect_listed
}

@test "a file and a name stand for the same module" {
  start_framework_with kmod
  make_kernel_module watch-dog.ko watchdog
  do_silently 0 orvex_policy kmod -A -n watchdog
  expect_line_for '文件[watch-dog.ko]已添加内核模块防卸载, 无需重复添加!' -A -f watch-dog.ko
  do_silently 0 orvex_policy kmod -D -f watch-dog.ko
  expect_listed
}

@test "with a file and a name the file wins, and the last of each counts" {
  start_framework_with kmod
  make_kernel_module a.ko from_file_a
  make_kernel_module b.ko from_file_b
  do_silently 0 orvex_policy kmod -n by_name -A -f a.ko -f b.ko
  expect_listed from_file_b
  do_silently 0 orvex_policy kmod -A -n first -n second
  do_silently 0 orvex_policy kmod -D -f b.ko -n second
  expect_listed second
}

@test "a path is tested when its option is met" {
  start_framework_with kmod
  make_kernel_module a.ko a
  mkdir directory
  expect_line_for '文件路径[/missing]不存在!' -A -f /missing -n x
  expect_line_for '文件路径[]不存在!' -A -f ''
  expect_line_for '路径[directory]是目录, 请输入文件路径' -A -f directory
  expect_line_for '路径[/]是目录, 请输入文件路径' -f / -A -D
  expect_line_for '文件路径[/missing]不存在!' -A -f a.ko -f /missing
  expect_kmod_help_for -A -D -f /missing
  expect_listed
}

@test "a file without a module's name gives a line for each of its two faults" {
  start_framework_with kmod
  echo 'not a module' >text.ko
  as 0 orvex_policy kmod -A -f text.ko
  expect 0 <<'END'
通过内核模块文件[text.ko]获取模块名称失败!
添加内核模块[text.ko]防卸载失败!
END
  as 0 orvex_policy kmod -D -f text.ko
  expect 0 <<'END'
通过内核模块文件[text.ko]获取模块名称失败!
文件[text.ko]未添加内核模块防卸载, 无需删除!
END
  expect_listed
  expect_log <<'END'
18 kmod check_kmod_is_add_by_file get kmod name by kmod file failed, path: text.ko
18 kmod add_kmod_by_file add kmod failed, file=text.ko, ret=-1
18 kmod check_kmod_is_add_by_file get kmod name by kmod file failed, path: text.ko
END
}

@test "a command without a target is told, and brings the help" {
  start_framework_with kmod
  for command in -A --add; do
    as 0 orvex_policy kmod "$command"
    expect 0 < <(
      echo '请输入需要添加防卸载的内核模块文件路径或者内核模块名称!'
      print_kmod_help
    )
  done
  as 0 orvex_policy kmod -D -n ''
  expect 0 < <(
    echo '请输入需要删除防卸载的内核模块文件路径或者内核模块名称!'
    print_kmod_help
  )
}

@test "a second command, no command and plain words bring the help alone" {
  start_framework_with kmod
  expect_kmod_help_for -A -D
  expect_kmod_help_for -L -L
  expect_kmod_help_for -AD -n a
  expect_kmod_help_for -n a
  expect_kmod_help_for foo
  expect_kmod_help_for on extra
  expect_kmod_help_for off extra
  expect_kmod_help_for -A -h
  expect_kmod_help_for -A -n a -h
  expect_kmod_help_for -- -L
  expect_listed
}

@test "a list ignores its targets, and plain words are passed over" {
  start_framework_with kmod
  make_kernel_module a.ko a
  do_silently 0 orvex_policy kmod -A -n ext4
  as 0 orvex_policy kmod word -L -n none -f a.ko word
  expect 0 < <(print_kmod_list ext4)
  as 0 orvex_policy kmod --li
  expect 0 < <(print_kmod_list ext4)
}

@test "an unknown option, and one without its value, are told before the help" {
  start_framework_with kmod
  as 0 orvex_policy kmod -A -n a -x
  expect_bad_option kmod "invalid option -- 'x'"
  as 0 orvex_policy kmod -A -n
  expect_bad_option kmod "option requires an argument -- 'n'"
  as 0 orvex_policy kmod --frob -A
  expect_bad_option kmod "unrecognized option '--frob'"
  as 0 orvex_policy kmod -U
  expect_bad_option kmod "invalid option -- 'U'"
  expect_listed
}

@test "the list outlives the switch and the restart" {
  start_framework_with kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod off
  do_silently 0 orvex_policy kmod on
  restart
  expect_listed ext4
  do_silently 0 orvex_policy disable
  expect_line_for '内核模块防卸载未开启!' -L
}
