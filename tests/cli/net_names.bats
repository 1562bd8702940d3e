#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Names that a careless program would trip over: they come out as they went in.

load support/session.bash
load support/packages.bash
load support/net.bash

setup() {
  start_package_session
  start_framework_with net
  # shellcheck disable=SC2016
  names=(
    'two words' ' edges ' "it's" '"double"' '%s%n%d' '-dash' '--list' 'semi;colon|pipe&' '$HOME `id` \n' '*' '~'
    'a:b' '网络程序' $'new\nline' $'tab\tbell\a' $'\e]0;title\a\e[2J' $'\xff\xfe\x80' $'broken\xe5\x86'
  )
}

@test "the name of a program is kept byte for byte" {
  mkdir "$root/names"
  for name in "${names[@]}"; do
    touch "$root/names/$name"
    do_silently 0 orvex_policy net -A -f "$root/names/$name"
    expect_line_for "程序[$root/names/$name]的联网管控策略已添加, 无需重复添加!" -A -f "$root/names/$name"
    do_silently 0 orvex_policy net -U -f "$root/names/$name" -v allow
    expect_listed < <(printf '应用程序:\n   允许: %s\n' "$root/names/$name")
    expect_records \
      < <(printf 'program [%s] status 1 label [%s] text1 [] text2 [] tag 2\n' "$root/names/$name" "$root/names/$name")
    do_silently 0 orvex_policy net -D -f "$root/names/$name"
    expect_nothing_listed
    rm -- "$root/names/$name"
    expect_line_for "文件路径[$root/names/$name]不存在!" -A -f "$root/names/$name"
    expect_line_for "程序[$root/names/$name]的联网管控策略不存在, 无需删除!" -D -f "$root/names/$name"
  done
}

@test "a name that begins like an option is a value all the same" {
  expect_line_for '文件路径[-dash]不存在!' -A -f -dash
  expect_line_for '文件[--list]不存在, 请输入文件据对路径!' -D -f --list
  expect_line_for '软件包[-L]名称错误, 或者未安装!' -A -P -L
}

@test "a colon and a tilde mean nothing to network control" {
  mkdir "$root/names"
  touch "$root/names/a" "$root/names/b" "$BATS_TEST_TMPDIR/home/c"
  expect_line_for "文件路径[$root/names/a:$root/names/b]不存在!" -A -f "$root/names/a:$root/names/b"
  expect_line_for '文件路径[~/c]不存在!' -A -f '~'/c
  expect_line_for '软件包[a:b]名称错误, 或者未安装!' -A -P a:b
}

@test "the name of a package comes out as it went in" {
  for name in "${names[@]}" "$(printf 'long%.0s' {1..2000})"; do
    expect_line_for "软件包[$name]名称错误, 或者未安装!" -A -P "$name"
    expect_line_for "软件包[$name]的联网管控策略不存在, 请先添加!" -U -P "$name" -v allow
    expect_line_for "软件包[$name]的联网管控策略不存在, 无需删除!" -D -P "$name"
  done
}

# The longest path that the system opens has 4095 bytes; the label ends earlier.
@test "a path of 4095 bytes is kept whole, with a label of 255" {
  make_long_path "$root"
  do_silently 0 orvex_policy net -A -f "$path"
  expect_listed < <(printf '应用程序:\n   阻止: %s\n' "$path")
  do_silently 0 orvex_policy net -U -f "$path" -v allow
  expect_records < <(printf 'program [%s] status 1 label [%s] text1 [] text2 [] tag 2\n' "$path" "${path:0:255}")
  do_silently 0 orvex_policy net -D -f "$path"
  expect_nothing_listed
  # A longer one names no file, and no policy.
  expect_line_for "文件路径[${path}p]不存在!" -A -f "${path}p"
  expect_line_for "程序[$path/longer]的联网管控策略不存在, 无需删除!" -D -f "$path/longer"
}
