#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The programs that may access a protected file or directory all the same.

load support/session.bash
load support/protection.bash

setup() {
  use_module file
  start_session
  start_framework_with file
  touch a x y
  mkdir dir
  change -A -f a
}

@test "exceptions are added, listed in their order and deleted" {
  change -A -f a -e -f y
  change -A -f a -e -f x
  expect_listed "$PWD/a{例外:$PWD/y:$PWD/x}"
  expect_line_for "只读保护文件[$PWD/a]已添加了例外程序[$PWD/x], 无需重复添加!" -A -f a -e -f ./x
  change -D -f a --except whatever -f y
  expect_line_for "只读保护文件[$PWD/a]未添加例外程序[$PWD/y], 无需删除!" -D -f a -e -f y
  expect_listed "$PWD/a{例外:$PWD/x}"
  expect_log </dev/null
}

@test "of a list what is in the wanted state, or bad, is told and left out" {
  change -A -f a -e -f x
  expect_lines_for -A -f a -e -f "missing:x::dir:y" <<END
文件路径[missing]不存在!
路径[$PWD/dir]是目录, 请输入文件路径
只读保护文件[$PWD/a]已添加了例外程序[$PWD/x], 无需重复添加!
END
  expect_listed "$PWD/a{例外:$PWD/x:$PWD/y}"
  touch z
  expect_lines_for -D -f a -e -f "missing:z:x" <<END
输入文件[missing]的相对路径时, 请确保文件存在!
支持只读文件删除不存在的例外程序, 需输入文件绝对路径!
只读保护文件[$PWD/a]未添加例外程序[$PWD/z], 无需删除!
END
  expect_listed "$PWD/a{例外:$PWD/y}"
  expect_line_for '文件路径[missing]不存在!' -A -f a -e -f missing
  change -A -f a -e -f :
}

@test "an object that is not protected has no exceptions" {
  expect_line_for "[$PWD/x]不在只读保护列表中, 请先添加只读保护!" -A -f ./x -e -f y
  expect_line_for "[$PWD/dir]不在只读保护列表中, 请先添加只读保护!" -A -d dir/ -e -f y
  expect_line_for "只读保护文件[$PWD/x]未添加例外程序[$PWD/y], 无需删除!" -D -f x -e -f y
  expect_listed "$PWD/a {例外:}"
  expect_log </dev/null
}

@test "the protected object is one object as it stands" {
  expect_line_for "文件路径[a:x]不存在!" -A -f a:x -e -f y
  touch ../home/h
  # shellcheck disable=SC2088
  expect_line_for '文件路径[~/h]不存在!' -A -f '~/h' -e -f '~/h'
  # shellcheck disable=SC2088
  change -A -f a -e -f '~/h'
  expect_listed "$PWD/a{例外:$BATS_TEST_TMPDIR/home/h}"
  touch a:x
  expect_line_for "[$PWD/a:x]不在只读保护列表中, 请先添加只读保护!" -A -f a:x -e -f y
}

@test "the latest object in front of -e counts" {
  change -A -d dir
  change -A -f a -d dir -e -f x -f y
  expect_listed "$PWD/a {例外:}" "$PWD/dir/*{例外:$PWD/y}"
  change -D -d dir -f a -f x -d dir -e -f y
  expect_listed "$PWD/a {例外:}" "$PWD/dir/* {例外:}"
}

@test "a protected directory is shown, and found, by its pattern" {
  change -A -d dir
  change -A -d dir/ -e -f x
  expect_line_for "只读保护文件[$PWD/dir]已添加了例外程序[$PWD/x], 无需重复添加!" -A -d dir -e -f x
  expect_line_for "路径[$PWD/dir]是目录, 请输入文件路径" -A -f dir -e -f x
  expect_line_for "路径[$PWD/a]非目录, 请输入目录路径" -D -d a -e -f x
  expect_listed "$PWD/a {例外:}" "$PWD/dir/*{例外:$PWD/x}"
  change -D -d dir -e -f x
  expect_listed "$PWD/a {例外:}" "$PWD/dir/* {例外:}"
}

@test "exceptions of a directory that is gone are not found by its path" {
  change -A -d dir
  change -A -d dir -e -f x
  rmdir dir
  expect_line_for "只读保护文件[$PWD/dir]未添加例外程序[$PWD/x], 无需删除!" -D -d "$PWD/dir" -e -f x
  expect_lines_for -D -d dir -e -f x <<'END'
输入目录[dir]的相对路径时, 请确保目录存在!
支持不存在的目录删除只读保护的例外程序, 需输入目录绝对路径!
END
  expect_line_for '目录路径[dir]不存在!' -A -d dir -e -f x
  # They go with the directory's own protection.
  change -D -d "$PWD/dir"
  mkdir dir
  change -A -d dir
  expect_listed "$PWD/a {例外:}" "$PWD/dir/* {例外:}"
}

@test "an object and an exception that are both gone are named by their absolute paths" {
  change -A -f a -e -f x
  rm a x
  expect_lines_for -D -f a -e -f "$PWD/x" <<'END'
输入文件[a]的相对路径时, 请确保文件存在!
支持不存在的文件删除只读保护的例外程序, 需输入文件绝对路径!
END
  expect_line_for '文件路径[a]不存在!' -A -f a -e -f y
  change -D -f "$PWD/a" -e -f "$PWD/x"
  expect_listed "$PWD/a {例外:}"
}

@test "the exceptions of each object go with its protection, and of no other" {
  touch b
  change -A -f b
  change -A -f a -e -f x:y
  change -A -f b -e -f x
  change -D -f a
  change -A -f a
  expect_listed "$PWD/b{例外:$PWD/x}" "$PWD/a {例外:}"
  # Clearing nothing is no failure.
  change -D -f a:b
  expect_listed
  expect_log </dev/null
}

@test "a failed removal is told and logged with the list as it was typed" {
  change -A -f a -e -f x
  # It is found by its text, but the library keeps it as a file and not as a package.
  expect_line_for "删除只读保护文件[$PWD/a]的例外程序[$PWD/x:]失败" -D -f ./a -e -P "$PWD/x:"
  expect_listed "$PWD/a{例外:$PWD/x}"
  expect_log <<END
18 file set_file_except_policy del file except failed, readonly file = ./a, except = $PWD/x:, ret = -1
END
}
