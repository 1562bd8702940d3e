#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Process protection of programs that are named by their paths, and its command line. Its switch is in protection.bats.

load support/session.bash
load support/packages.bash
load support/protection.bash

setup() {
  use_module proc
  start_package_session
  install_package orvex-demo-tools
  start_framework_with proc
  touch a b x y
  mkdir dir
}

@test "bad command lines bring the help" {
  expect_line_and_help_for '请输入需要设置进程防杀死策略的路径或者pid!' -A
  expect_line_and_help_for '请输入需要设置进程防杀死策略的路径或者pid!' -A -d /usr/bin/
  expect_line_and_help_for '请输入需要设置例外程序的防杀死进程!' -A -e -f /x
  expect_help_for -L -D
  expect_help_for -f /a
  expect_help_for ''
  as 0 orvex_policy proc -A -x
  expect_with_errors 0 "orvex_policy: invalid option -- 'x'"$'\n' < <(
    echo '无效的参数'
    print_proc_help
  )
}

@test "programs are added, listed and deleted" {
  ln -s b link
  touch ../home/h
  change -A -f a:link
  # shellcheck disable=SC2088
  change -A -d /usr/bin/ --file '~/h'
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}" "$BATS_TEST_TMPDIR/home/h {例外:}"
  expect_line_for "文件[$PWD/b]已存在进程防杀死列表中, 无需重复添加!" -A -f ./b
  change -D -f link:a
  expect_line_for "文件[$PWD/b]不在进程防杀死列表中, 无需删除!" -D -f link
  expect_listed "$BATS_TEST_TMPDIR/home/h {例外:}"
  expect_log </dev/null
}

@test "of a list what cannot be done is told and left out" {
  ln -s nowhere dangling
  expect_lines_for -A -f "missing:a::dangling:dir:b:a:" <<END
文件路径[missing]不存在!
获取文件[dangling]的实际路径失败!
路径[$PWD/dir]是目录, 请输入文件路径
END
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}"
  change -A -f ::
}

@test "a program that is gone stays on the list" {
  change -A -f a
  change -A -f a -e -f x
  rm a
  expect_line_for "文件路径[$PWD/a]不存在!" -D -f "$PWD/a"
  expect_line_for "文件路径[$PWD/a]不存在!" -D -f "$PWD/a" -e -f x
  expect_listed "$PWD/a{例外:$PWD/x}"
  touch a
  change -D -f a
  expect_listed
}

@test "a blacklisted program is neither protected nor released" {
  change -A -f a
  do_silently 0 orvex_local blacklist add "$PWD/a"
  expect_lines_for -A -f a:b <<<"$PWD/a: 该进程是黑名单进程, 不允许设置策略"
  expect_line_for "$PWD/a: 该进程是黑名单进程, 不允许设置策略" -D -f ./a
  expect_listed "$PWD/a {例外:}" "$PWD/b {例外:}"
  # Its exceptions are another matter.
  change -A -f a -e -f x
  do_silently 0 orvex_local blacklist remove "$PWD/a"
  change -D -f a
  expect_listed "$PWD/b {例外:}"
}

@test "exceptions are files, directories and packages" {
  change -A -f a:b
  change -A -f a -e -f y:x
  change -A -f a -d dir/ -e
  change -A -f a -e -P orvex-demo-tools
  expect_listed "$PWD/a{例外:$PWD/y:$PWD/x:$PWD/dir/*:orvex-demo-tools}" "$PWD/b {例外:}"
  expect_line_for "进程[$PWD/a]已添加了例外程序[$PWD/dir], 无需重复添加!" -A -f ./a -e -d dir
  expect_line_for "进程[$PWD/a]已添加了例外程序[orvex-demo-tools], 无需重复添加!" -A -f a -e -P orvex-demo-tools
  expect_line_for "进程[$PWD/b]未添加例外程序[$PWD/x], 无需删除!" -D -f b -e -f x
  change -D -f a -e -d dir
  change -D -f a -e -P orvex-demo-tools
  change -D -f a -e -f x
  expect_listed "$PWD/a{例外:$PWD/y}" "$PWD/b {例外:}"
  expect_log </dev/null
}

@test "of a list of exceptions what cannot be done is told and left out" {
  change -A -f a
  change -A -f a -e -f x
  expect_lines_for -A -f a -e -f "missing:x::dir:y" <<END
文件路径[missing]不存在!
路径[$PWD/dir]是目录, 请输入文件路径
进程[$PWD/a]已添加了例外程序[$PWD/x], 无需重复添加!
END
  expect_lines_for -A -f a -e -d "x:missing" <<END
路径[$PWD/x]非目录, 请输入目录路径
目录路径[missing]不存在!
END
  rm y
  expect_line_for "文件路径[$PWD/y]不存在!" -D -f a -e -f "$PWD/y:x"
  expect_listed "$PWD/a{例外:$PWD/y}"
  change -A -f a -e -f :
}

@test "one exception package that is not installed ends the call, at a removal too" {
  change -A -f a
  change -A -f a -e -P orvex-demo-tools
  expect_line_for '软件包[none]未安装, 不支持设置' -A -f a -e -P none:orvex-demo-tools
  remove_package orvex-demo-tools
  expect_line_for '软件包[orvex-demo-tools]未安装, 不支持设置' -D -f a -e -P orvex-demo-tools
  expect_listed "$PWD/a{例外:orvex-demo-tools}"
}

@test "a program that is not protected has no exceptions" {
  expect_line_for '[./a]不在防杀死保护列表中, 请先添加进程防杀死!' -A -f ./a -e -f x
  expect_line_for "进程[$PWD/a]未添加例外程序[$PWD/x], 无需删除!" -D -f ./a -e -f x
  expect_line_for '文件路径[a:b]不存在!' -A -f a:b -e -f x
  expect_log </dev/null
}

@test "without an exception the command is refused for its kind" {
  change -A -f a
  expect_line_for '添加例外程序时, 例外程序只允许是文件路径、目录或者软件包!' -A -f a -e
  expect_line_for '添加例外程序时, 例外程序只允许是文件路径、目录或者软件包!' -A -f a --except -f x
  expect_line_for '文件路径[missing]不存在!' -A -f missing -e
}

@test "the exceptions go with the protection" {
  change -A -f a:b
  change -A -f a -e -f x
  change -A -f b -e -f x
  change -D -f a
  change -A -f a
  expect_listed "$PWD/b{例外:$PWD/x}" "$PWD/a {例外:}"
}

@test "a failed removal is told and logged" {
  change -A -f a
  change -A -f a -e -d dir
  # It is found by its text, but the library keeps it as a directory and not as a file.
  touch 'dir/*'
  expect_line_for "删除防杀死进程[$PWD/a]的例外程序[dir/*:]失败" -D -f ./a -e -f 'dir/*:'
  expect_listed "$PWD/a{例外:$PWD/dir/*}"
  # The second field of the format is no conversion, so the number behind it is not the result.
  as 0 orvex_local log
  sed -i 's/^[0-9-]* [0-9:.]* //; s/ret = -\?[0-9]*$/ret = .../' "$BATS_TEST_TMPDIR/output"
  expect 0 <<'END'
18 proc set_proc_except_policy del proc except failed, file = ./a, except = &s, ret = ...
END
}
