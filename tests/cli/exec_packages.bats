#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Execution control of packages: real ones, with files of the session's own.

load support/session.bash
load support/exec.bash
load support/packages.bash

setup() {
  start_package_session
  for package in orvex-demo-tools orvex-empty orvex-labelled; do
    install_package $package
  done
  bin=$root/orvex-demo/bin
  start_framework_with exec
}

@test "the scripts of a package are added, listed, told when they change, and deleted" {
  expect_line_for "$bin/hello       不可执行" -L -P orvex-demo-tools
  do_silently 0 orvex_policy exec -A -P orvex-demo-tools
  # Links and other kinds of files have no row.
  expect_line_for "$bin/hello       可执行" -L -P orvex-demo-tools
  expect_line_for "$bin/hi       不可执行" -L -f "$bin/hi"
  as 0 orvex_policy exec -L -d "$bin"
  expect_sorted 0 <<END
$bin/hello       可执行
$bin/hi       不可执行
END
  sed -i 's/hello$/hallo/' "$bin/hello"
  expect_tampered "$bin/hello"
  expect_line_for "$bin/hello       不可执行" -L -P orvex-demo-tools
  do_silently 0 orvex_policy exec -D -P orvex-demo-tools
  expect_tampered
  # A package is deleted without a question for what is on the list.
  do_silently 0 orvex_policy exec -D -P orvex-demo-tools
  expect_log </dev/null
}

@test "a package may be named with its version" {
  do_silently 0 orvex_policy exec -A -P orvex-demo-tools-1.0
  expect_line_for "$bin/hello       可执行" -L -P orvex-demo-tools
}

@test "packages that are not installed are told, and the others done" {
  expect_line_for '不支持未安装的软件包[none]设置' -A -P none:orvex-demo-tools
  as 0 orvex_policy exec -L -P none:orvex-demo-tools
  expect 0 <<END
不支持未安装的软件包[none]查询
$bin/hello       可执行
END
}

@test "packages without a controlled file are passed over" {
  do_silently 0 orvex_policy exec -A -P orvex-empty:orvex-labelled
  do_silently 0 orvex_policy exec -L -P orvex-empty:orvex-labelled
  do_silently 0 orvex_policy exec -D -P orvex-empty
}

@test "an exception package covers its files wherever they are met" {
  do_silently 0 orvex_policy exec -A -e -P orvex-demo-tools
  expect_line_for '放行   软件包:orvex-demo-tools' -L
  expect_line_for '软件包[orvex-demo-tools]已存在例外程序列表中, 无需重复添加!' -A -e -P orvex-demo-tools
  expect_line_for 'orvex-demo-tools       例外程序' -L -P orvex-demo-tools
  expect_line_for "$bin/hello       例外程序" -L -f "$bin/hello"
  as 0 orvex_policy exec -L -d "$bin"
  expect_sorted 0 <<END
$bin/hello       例外程序
$bin/hi       例外程序
END
  do_silently 0 orvex_policy exec -D -e -P orvex-demo-tools
  expect_line_for '软件包[orvex-demo-tools]不在例外程序列表中, 无需删除!' -D -e -P orvex-demo-tools
  expect_line_for "$bin/hello       不可执行" -L -f "$bin/hello"
  expect_no_exceptions
}

@test "files, directories and packages are exceptions side by side" {
  do_silently 0 orvex_policy exec -A -e -P orvex-empty:orvex-demo-tools
  do_silently 0 orvex_policy exec -A -e -d "$root/orvex-demo/share"
  do_silently 0 orvex_policy exec -A -e -f "$bin/hello"
  as 0 orvex_policy exec -L
  expect 0 <<END
放行   文件:$bin/hello
放行   目录:$root/orvex-demo/share/
放行   软件包:orvex-empty:orvex-demo-tools
END
}

@test "the files of a package obey exceptions by file and by directory" {
  do_silently 0 orvex_policy exec -A -e -d "$root/orvex-demo"
  expect_line_for "$bin/hello       例外程序" -L -P orvex-demo-tools
  do_silently 0 orvex_policy exec -D -e -d "$root/orvex-demo"
  do_silently 0 orvex_policy exec -A -e -f "$bin/hello"
  expect_line_for "$bin/hello       例外程序" -L -P orvex-demo-tools
}

@test "listing a package needs no rights" {
  as 1234 orvex_policy exec -L -P orvex-demo-tools
  expect 0 <<<"$bin/hello       不可执行"
}
