#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Names that a careless program would trip over: they come out as they went in.

load support/session.bash

setup() {
  start_session
  start_framework_with kmod
  # shellcheck disable=SC2016
  names=(
    'two words' ' edges ' "it's" '"double"' '%s%n%d' '-dash' '--list' 'semi;colon|pipe&' '$HOME `id` \n' '*'
    'a:b' '../up' '内核模块' $'new\nline' $'tab\tbell\a' $'\e]0;title\a\e[2J' $'\xff\xfe\x80' $'broken\xe5\x86'
    "$(printf 'long%.0s' {1..1000})"
  )
}

@test "a module's name is kept byte for byte" {
  for name in "${names[@]}"; do
    do_silently 0 orvex_policy kmod -A -n "$name"
    as 0 orvex_policy kmod -L
    expect 0 < <(print_kmod_list "$name")
    as 0 orvex_policy kmod -A -n "$name"
    expect 0 <<<"模块[$name]已添加内核模块防卸载, 无需重复添加!"
    do_silently 0 orvex_policy kmod -D -n "$name"
    as 0 orvex_policy kmod -D -n "$name"
    expect 0 <<<"模块[$name]未添加内核模块防卸载, 无需删除!"
  done
}

@test "a file's name is kept byte for byte" {
  make_kernel_module plain.ko plain
  for name in "${names[@]}"; do
    if [[ $name == ../up || ${#name} -gt 255 ]]; then
      continue
    fi
    cp plain.ko "./$name"
    do_silently 0 orvex_policy kmod -A -f "$name"
    as 0 orvex_policy kmod -A -f "$name"
    expect 0 <<<"文件[$name]已添加内核模块防卸载, 无需重复添加!"
    do_silently 0 orvex_policy kmod -D -f "$name"
    as 0 orvex_policy kmod -D -f "$name"
    expect 0 <<<"文件[$name]未添加内核模块防卸载, 无需删除!"
    rm -- "./$name"
    as 0 orvex_policy kmod -A -f "$name"
    expect 0 <<<"文件路径[$name]不存在!"
    mkdir -- "./$name"
    as 0 orvex_policy kmod -A -f "$name"
    expect 0 <<<"路径[$name]是目录, 请输入文件路径"
  done
}

@test "a path of 4095 bytes is kept whole" {
  make_kernel_module plain.ko plain
  make_long_path "$PWD"
  cp plain.ko "$path"
  do_silently 0 orvex_policy kmod -A -f "$path"
  as 0 orvex_policy kmod -A -f "$path"
  expect 0 <<<"文件[$path]已添加内核模块防卸载, 无需重复添加!"
  as 0 orvex_policy kmod -A -f "${path}p"
  expect 0 <<<"文件路径[${path}p]不存在!"
}

@test "the name inside a file is kept byte for byte" {
  make_kernel_module inside.ko 'two words %s'
  do_silently 0 orvex_policy kmod -A -f inside.ko
  as 0 orvex_policy kmod -L
  expect 0 < <(print_kmod_list 'two words %s')
}

@test "a hostile name reaches the log as it is" {
  echo 'not a module' >'%s %n'
  as 0 orvex_policy kmod -D -f '%s %n'
  expect 0 <<'END'
通过内核模块文件[%s %n]获取模块名称失败!
文件[%s %n]未添加内核模块防卸载, 无需删除!
END
  expect_log <<'END'
18 kmod check_kmod_is_add_by_file get kmod name by kmod file failed, path: %s %n
END
}

@test "an empty name is no target" {
  as 0 orvex_policy kmod -A -n ''
  expect 0 < <(
    echo '请输入需要添加防卸载的内核模块文件路径或者内核模块名称!'
    print_kmod_help
  )
}
