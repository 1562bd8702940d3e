#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# File protection of files and directories, and its command line. Its switch is in protection.bats.

load support/session.bash
load support/protection.bash

setup() {
  use_module file
  start_session
}

@test "bad command lines bring the help" {
  start_framework_with file
  expect_line_and_help_for '请输入需要设置只读文件保护文件策略的路径或者软件包名!' -A
  expect_line_and_help_for '请输入需要设置只读文件保护文件策略的路径或者软件包名!' -D -f ''
  expect_line_and_help_for '请输入需要设置例外程序策略的路径、目录或者软件包!' -A -e -f /b -f /c
  expect_line_and_help_for '请输入需要设置例外程序策略的路径、目录或者软件包!' -A -f /a --except -f /b
  expect_line_for '不支持以目录的方式添加例外程序!' -A -e -d /x -L
  expect_help_for -L -A
  expect_help_for -e -f /a
  expect_help_for off extra
  expect_help_for ''
  as 0 orvex_policy file -A -x
  expect_with_errors 0 "orvex_policy: invalid option -- 'x'"$'\n' < <(
    echo '无效的参数!'
    print_file_help
  )
}

@test "files are added, listed and deleted" {
  start_framework_with file
  touch a b
  change -A -f a
  change --add --file="$PWD/b"
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}"
  expect_line_for "文件[$PWD/a]已存在只读保护列表中, 无需重复添加!" -A -f ./a
  as 0 orvex_policy file -D -f a
  expect_silence
  expect_line_for "文件[$PWD/a]不在只读保护列表中, 无需删除!" -D -f a
  expect_listed "$PWD/b {例外:}"
  expect_log </dev/null
}

@test "a link, a detour and the home directory lead to the real path" {
  start_framework_with file
  touch a ../home/h
  ln -s a link
  change -A -f link
  # shellcheck disable=SC2088
  change -A -f '~/h'
  expect_listed "$PWD/a {例外:}" "$BATS_TEST_TMPDIR/home/h {例外:}"
  expect_line_for "文件[$PWD/a]已存在只读保护列表中, 无需重复添加!" -A -f ../desk/./a
  change -D -f link
  rm ../home/h
  # shellcheck disable=SC2088
  change -D -f '~/h'
  expect_listed
}

@test "one command takes a list, and leaves out what cannot be done" {
  start_framework_with file
  touch a b
  mkdir directory
  ln -s nowhere dangling
  expect_lines_for -A -f "a:::missing:dangling:directory:b:a:" <<END
文件路径[missing]不存在!
获取文件[dangling]的实际路径失败!
路径[$PWD/directory]是目录, 请输入文件路径
END
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}"
  expect_lines_for -D -f "b:gone.txt:directory:$PWD/gone" <<END
输入文件[gone.txt]的相对路径时, 请确保文件存在!
支持不存在的文件删除只读保护, 需输入文件绝对路径!
路径[$PWD/directory]是目录, 请输入文件路径
文件[$PWD/gone]不在只读保护列表中, 无需删除!
END
  expect_listed "$PWD/a {例外:}"
  change -A -f ::
  change -D -d :
  expect_log </dev/null
}

@test "a file that is gone is deleted by the exact text of its path" {
  start_framework_with file
  touch gone.txt program
  change -A -f gone.txt
  change -A -f gone.txt -e -f program
  rm gone.txt
  expect_line_for "文件[$PWD/../desk/gone.txt]不在只读保护列表中, 无需删除!" -D -f "$PWD/../desk/gone.txt"
  expect_listed "$PWD/gone.txt{例外:$PWD/program}"
  change -D -f "$PWD/gone.txt"
  expect_listed
  # The exceptions went with it.
  touch gone.txt
  change -A -f gone.txt
  expect_listed "$PWD/gone.txt {例外:}"
}

@test "directories are kept as patterns" {
  start_framework_with file
  mkdir a b
  touch file
  change -A -d a
  change -A -d b/
  change -A --dir /
  expect_listed "$PWD/a/* {例外:}" "$PWD/b/* {例外:}" '/* {例外:}'
  expect_line_for "目录[$PWD/a]已存在只读保护列表中, 无需重复添加!" -A -d a/
  expect_lines_for -A -d "file:missing" <<END
路径[$PWD/file]非目录, 请输入目录路径
目录路径[missing]不存在!
END
  # A directory is no file.
  expect_line_for "路径[$PWD/a]是目录, 请输入文件路径" -D -f a
  change -D -d a:/
  expect_line_for "目录[$PWD/a]不在只读保护列表中, 无需删除!" -D -d a
  expect_listed "$PWD/b/* {例外:}"
}

@test "a directory that is gone is deleted by its path, with a slash at its end or not" {
  start_framework_with file
  mkdir a b
  touch program
  change -A -d a:b
  change -A -d a -e -f program
  rmdir a b
  expect_lines_for -D -d a <<END
输入目录[a]的相对路径时, 请确保目录存在!
支持不存在的目录删除只读保护, 需输入目录绝对路径!
END
  change -D -d "$PWD/a/:$PWD/b"
  expect_listed
  mkdir a
  change -A -d a
  expect_listed "$PWD/a/* {例外:}"
}

@test "a file that has become a directory is no file any more" {
  start_framework_with file
  touch a
  change -A -f a
  rm a
  mkdir a
  expect_line_for "路径[$PWD/a]是目录, 请输入文件路径" -D -f a
  expect_line_for "目录[$PWD/a]不在只读保护列表中, 无需删除!" -D -d a
  change -A -d a
  expect_listed "$PWD/a {例外:}" "$PWD/a/* {例外:}"
  rmdir a
  change -D -f "$PWD/a"
  expect_listed "$PWD/a/* {例外:}"
}

@test "without -e a file goes before a directory before a package" {
  start_framework_with file
  touch a
  mkdir b
  change -P none -d b -f a -A
  expect_listed "$PWD/a {例外:}"
  change -A -P none -d b
  expect_listed "$PWD/a {例外:}" "$PWD/b/* {例外:}"
}
