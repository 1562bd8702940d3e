#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# File protection of packages, and packages as exceptions: real ones, which come and go.

load support/session.bash
load support/packages.bash
load support/protection.bash

setup() {
  use_module file
  start_package_session
  install_package orvex-demo-tools
  install_package orvex-empty
  start_framework_with file
}

@test "packages are added, listed behind the paths, and deleted" {
  touch a
  change -A -P orvex-demo-tools
  change -A -f a
  change -A -P orvex-empty
  expect_listed "$PWD/a {例外:}" 'orvex-demo-tools {例外:}' 'orvex-empty {例外:}'
  expect_line_for '软件包[orvex-empty]已存在只读保护列表中, 无需重复添加!' -A --package orvex-empty
  change -D -P orvex-demo-tools
  expect_line_for '软件包[orvex-demo-tools]不在只读保护列表中, 无需删除!' -D -P orvex-demo-tools
  expect_listed "$PWD/a {例外:}" 'orvex-empty {例外:}'
  expect_log </dev/null
}

@test "only an add asks whether a package is installed" {
  expect_line_for '软件包[none]未安装, 不支持添加!' -A -P none:orvex-demo-tools
  expect_line_for '软件包[none]不在只读保护列表中, 无需删除!' -D -P none
  remove_package orvex-demo-tools
  expect_line_for '软件包[orvex-demo-tools]未安装, 不支持添加!' -A -P orvex-demo-tools
  change -D -P orvex-demo-tools
  expect_listed
}

@test "a package has exceptions, files and packages" {
  touch x
  change -A -P orvex-demo-tools
  change -A -P orvex-demo-tools -e -P orvex-empty
  change -A -P orvex-demo-tools -e -f x
  expect_listed "orvex-demo-tools{例外:orvex-empty:$PWD/x}"
  expect_line_for '只读保护文件[orvex-demo-tools]已添加了例外程序[orvex-empty], 无需重复添加!' \
    -A -P orvex-demo-tools -e -P orvex-empty
  expect_line_for '[orvex-empty]不在只读保护列表中, 请先添加只读保护!' -A -P orvex-empty -e -f x
  change -D -P orvex-demo-tools -e -f x
  expect_listed 'orvex-demo-tools{例外:orvex-empty}'
  change -D -P orvex-demo-tools
  change -A -P orvex-demo-tools
  expect_listed 'orvex-demo-tools {例外:}'
}

@test "one exception package that is not installed ends an add" {
  touch a
  change -A -f a
  expect_line_for '软件包[none]未安装, 不支持设置' -A -f a -e -P orvex-empty:none:orvex-demo-tools
  expect_line_for '软件包[none]未安装, 不支持添加' -A -P none -e -f a
  expect_listed "$PWD/a {例外:}"
}

@test "packages that are gone are taken off, protected or excepted" {
  change -A -P orvex-demo-tools
  change -A -P orvex-demo-tools -e -P orvex-empty
  remove_package orvex-demo-tools
  remove_package orvex-empty
  expect_line_for '只读保护文件[orvex-demo-tools]未添加例外程序[none], 无需删除!' -D -P orvex-demo-tools -e -P none
  change -D -P orvex-demo-tools -e -P orvex-empty
  expect_listed 'orvex-demo-tools {例外:}'
  change -D -P orvex-demo-tools
  expect_listed
}

@test "an exception package with the name of a directory here is not found" {
  touch a
  change -A -f a
  change -A -f a -e -P orvex-empty
  mkdir orvex-empty
  expect_line_for "只读保护文件[$PWD/a]未添加例外程序[orvex-empty], 无需删除!" -D -f a -e -P orvex-empty
  change -A -f a -e -P orvex-empty
  rmdir orvex-empty
  change -D -f a -e -P orvex-empty
  expect_listed "$PWD/a {例外:}"
}
