#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Names that a careless program would trip over, in file and in process protection: they come out as they went in. A name
# with a ':' is the one that cannot be given in a list.

load support/session.bash
load support/protection.bash

setup() {
  start_session
  # shellcheck disable=SC2016
  names=(
    'two words' ' edges ' "it's" '"double"' '%s%n%d' '-dash' '--list' 'semi;colon|pipe&' '$HOME `id` \n' '*' 'star*'
    '{例外}' '防护' $'new\nline' $'tab\tbell\a' $'\e]0;title\a\e[2J' $'\xff\xfe\x80' $'broken\xe5\x86' "$(printf 'n%.0s' {1..255})"
  )
}

@test "a file's name is kept byte for byte" {
  for word in file proc; do
    use_module "$word"
    start_framework_with "$word"
    for name in "${names[@]}"; do
      touch "./$name"
      change -A -f "$name"
      expect_listed "$PWD/$name {例外:}"
      change -D -f "$name"
      expect_listed
      rm -- "./$name"
      expect_line_for "文件路径[$name]不存在!" -A -f "$name"
    done
    do_silently 0 orvex_policy disable
  done
}

@test "a directory's name is kept byte for byte" {
  use_module file
  start_framework_with file
  for name in "${names[@]}"; do
    mkdir -- "./$name"
    change -A -d "$name"
    expect_listed "$PWD/$name/* {例外:}"
    expect_line_for "路径[$PWD/$name]是目录, 请输入文件路径" -A -f "$name"
    rmdir -- "./$name"
    change -D -d "$PWD/$name/"
    expect_listed
  done
}

@test "the names of an object and of its exception are kept byte for byte" {
  touch plain
  for word in file proc; do
    use_module "$word"
    start_framework_with "$word"
    for name in "${names[@]}"; do
      touch "./$name"
      change -A -f "$name:plain"
      change -A -f "$name" -e -f "$name"
      change -A -f plain -e -f "$name"
      expect_listed "$PWD/$name{例外:$PWD/$name}" "$PWD/plain{例外:$PWD/$name}"
      change -D -f plain -e -f "$name"
      change -D -f "$name:plain"
      rm -- "./$name"
    done
    expect_listed
    do_silently 0 orvex_policy disable
  done
}

@test "a directory's name is kept byte for byte as an exception" {
  use_module proc
  touch plain
  start_framework_with proc
  change -A -f plain
  for name in "${names[@]}"; do
    mkdir -- "./$name"
    change -A -f plain -e -d "$name"
    expect_listed "$PWD/plain{例外:$PWD/$name/*}"
    change -D -f plain -e -d "$name"
    rmdir -- "./$name"
  done
  expect_listed "$PWD/plain {例外:}"
}

@test "a name with a colon is an object of its own where nothing is split" {
  for word in file proc; do
    use_module "$word"
    start_framework_with "$word"
    touch a:b x
    expect_line_for "文件路径[a]不存在!"$'\n'"文件路径[b]不存在!" -A -f a:b
    as 0 orvex_policy "$word" -A -f a:b -e -f x
    if [[ $word == file ]]; then
      expect 0 <<<"[$PWD/a:b]不在只读保护列表中, 请先添加只读保护!"
    else
      expect 0 <<<'[a:b]不在防杀死保护列表中, 请先添加进程防杀死!'
    fi
    do_silently 0 orvex_policy disable
  done
}

@test "a hostile name reaches line and log as it is" {
  use_module file
  start_framework_with file
  touch '%s %n' x
  change -A -f '%s %n'
  change -A -f '%s %n' -e -f x
  expect_line_for "删除只读保护文件[$PWD/%s %n]的例外程序[$PWD/x:]失败" -D -f '%s %n' -e -P "$PWD/x:"
  expect_log <<END
18 file set_file_except_policy del file except failed, readonly file = %s %n, except = $PWD/x:, ret = -1
END
}

@test "a path of 4095 bytes is kept whole" {
  make_long_path "$PWD"
  for word in file proc; do
    use_module "$word"
    start_framework_with "$word"
    change -A -f "$path"
    change -A -f "$path" -e -f "$path"
    expect_listed "$path{例外:$path}"
    expect_line_for "文件路径[${path}p]不存在!" -A -f "${path}p"
    change -D -f "$path"
    expect_listed
    do_silently 0 orvex_policy disable
  done
}
