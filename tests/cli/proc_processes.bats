#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Process protection of programs that are named by a process of theirs.

load support/session.bash
load support/processes.bash
load support/protection.bash

setup() {
  use_module proc
  start_process_session
  start_framework_with proc
  touch a b x y
  mkdir dir
}

teardown() {
  end_processes
}

@test "the program of a process is protected and released" {
  start_program "$PWD/a"$'\n'
  change -A -p "$pid"
  expect_listed "$PWD/a {例外:}"
  expect_line_for "进程[$pid]对应路径[$PWD/a]已存在进程防杀死列表中, 无需重复添加!" -A -p "0$pid"
  expect_line_for "文件[$PWD/a]已存在进程防杀死列表中, 无需重复添加!" -A -f a
  change --delete --pid "$pid"
  expect_line_for "进程[$pid]对应路径[$PWD/a]不在进程防杀死列表中, 无需删除!" -D -p "$pid"
  expect_listed
  expect_log </dev/null
}

@test "two processes, of two programs or of one, go out in one call" {
  start_program "$PWD/a"
  first=$pid
  start_program "$PWD/b"
  second=$pid
  start_program "$PWD/a"
  change -A -p "$first:$second:$pid"
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}"
  change -D -p "$second"
  expect_listed "$PWD/a {例外:}"
}

@test "of a list what is no process of a program is told and left out" {
  start_program ''
  empty=$pid
  start_process
  without=$pid
  start_program "$PWD/a"
  expect_lines_for -A -p "12a:-1:2147483648:0:4194305:$empty:$without:$pid:" <<END
pid[12a]错误
pid[-1]错误
无效的pid[2147483648], 输入无效或超出pid范围!
获取进程[0]的执行程序路径错误: 进程不存在!
获取进程[4194305]的执行程序路径错误: 进程不存在!
获取进程[$empty]的执行程序路径错误: 读取attr/vemu/path文件失败内容失败!
获取进程[$without]的执行程序路径错误: 打开attr/vemu/path文件失败!
END
  expect_listed "$PWD/a {例外:}"
  change -A -p ::
}

@test "a process that has ended names nothing any more" {
  start_program "$PWD/a"
  change -A -p "$pid"
  start_process
  ended=$pid
  kill "$ended"
  wait "$ended" || true
  expect_line_for "获取进程[$ended]的执行程序路径错误: 进程不存在!" -D -p "$ended"
  expect_line_for "获取进程[$ended]的执行程序路径错误: 进程不存在!" -D -p "$ended" -e -f x
  expect_listed "$PWD/a {例外:}"
}

@test "the blacklist belongs to the paths alone" {
  start_program "$PWD/a"
  do_silently 0 orvex_local blacklist add "$PWD/a"
  expect_line_for "$PWD/a: 该进程是黑名单进程, 不允许设置策略" -A -f a
  change -A -p "$pid"
  expect_listed "$PWD/a {例外:}"
  change -D -p "$pid"
  expect_listed
}

@test "a program that is gone is released by its process" {
  start_program "$PWD/a"
  change -A -f a
  change -A -f a -e -f x
  rm a
  change -D -p "$pid"
  expect_listed
}

@test "without -e a path goes before a process, with it the process goes first" {
  start_program "$PWD/a"
  change -A -p "$pid" -f b
  expect_listed "$PWD/b {例外:}"
  change -A -p "$pid"
  change -A -f b -p "$pid" -e -f x
  expect_listed "$PWD/b {例外:}" "$PWD/a{例外:$PWD/x}"
}

@test "exceptions are files and directories" {
  start_program "$PWD/a"
  change -A -p "$pid"
  change -A -p "$pid" -e -f x:y
  change -A -p "$pid" -e -d dir/
  expect_listed "$PWD/a{例外:$PWD/x:$PWD/y:$PWD/dir/*}"
  expect_line_for "进程[$pid]已添加了例外程序[$PWD/x], 无需重复添加!" -A -p "0$pid" -e -f x
  change -D -p "$pid" -e -d dir
  change -D -f a -e -f y
  expect_line_for "进程[$pid]未添加了例外程序[$PWD/y], 无需删除!" -D -p "$pid" -e -f y
  expect_listed "$PWD/a{例外:$PWD/x}"
  change -D -p "$pid"
  change -A -f a
  expect_listed "$PWD/a {例外:}"
  expect_log </dev/null
}

@test "a process in front of -e alone is a directory that is an exception" {
  start_program "$PWD/a"
  change -A -p "$pid"
  expect_line_for "目录路径[$pid]不存在!" -A -p "$pid" -e
  expect_line_for "目录路径[$pid]不存在!" -A -e -f x -p "$pid"
  mkdir "$pid"
  change -A -p "$pid" -e
  expect_listed "$PWD/a{例外:$PWD/$pid/*}"
}

@test "the process of an exception is one number, and its program has to be protected" {
  start_program "$PWD/a"
  expect_line_for "pid[$pid:$pid]错误" -A -p "$pid:$pid" -e -f x
  expect_line_for '无效的pid[2147483648], 输入无效或超出pid范围!' -A -p 2147483648 -e -f x
  expect_line_for "[0$pid]不在防杀死保护列表中, 请先添加进程防杀死!" -A -p "0$pid" -e -f x
  expect_line_for "进程[$pid]未添加了例外程序[$PWD/x], 无需删除!" -D -p "0$pid" -e -f x
  expect_log </dev/null
}

@test "a failed removal shows the number as it was typed" {
  start_program "$PWD/a"
  change -A -p "$pid"
  change -A -p "$pid" -e -d dir
  touch 'dir/*'
  expect_line_for "删除防杀死进程[0$pid]的例外程序[dir/*:]失败" -D -p "0$pid" -e -f 'dir/*:'
}
