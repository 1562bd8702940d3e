#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Names that a careless program would trip over: files and directories come out as they went in. A name with a ':' is
# the one that cannot be given, as that separates the names of a list.

load support/session.bash
load support/exec.bash

setup() {
  start_session
  use_no_packages
  start_framework_with exec
  # shellcheck disable=SC2016
  names=(
    'two words' ' edges ' "it's" '"double"' '%s%n%d' '-dash' '--list' 'semi;colon|pipe&' '$HOME `id` \n' '*' 'star*'
    '执行' $'new\nline' $'tab\tbell\a' $'\e]0;title\a\e[2J' $'\xff\xfe\x80' $'broken\xe5\x86' 'x-1-2.noarch' "$(printf 'n%.0s' {1..255})"
  )
}

@test "a file's name is kept byte for byte in the whitelist and the reports" {
  for name in "${names[@]}"; do
    write_script "./$name"
    do_silently 0 orvex_policy exec -A -f "$name"
    expect_row "$name" 可执行
    echo '# changed' >>"./$name"
    expect_tampered "$PWD/$name"
    do_silently 0 orvex_policy exec -D -f "$name"
    expect_line_for "文件[$name]不在白名单列表中, 无需删除!" -D -f "$name"
    rm -- "./$name"
    expect_line_for "文件路径[$name]不存在!" -A -f "$name"
  done
}

@test "a file's name is kept byte for byte in the exceptions" {
  for name in "${names[@]}"; do
    # An entry that ends in a star stands for a directory.
    if [[ $name == *'*' ]]; then
      continue
    fi
    write_script "./$name"
    do_silently 0 orvex_policy exec -A -e -f "$name"
    expect_row "$name" 例外程序
    expect_line_for "放行   文件:$PWD/$name" -L
    expect_line_for "文件[$name]已存在例外程序列表中, 无需重复添加!" -A -e -f "$name"
    do_silently 0 orvex_policy exec -D -e -f "$name"
    expect_line_for "文件[$name]不在例外程序列表中, 无需删除!" -D -e -f "$name"
    rm -- "./$name"
  done
}

@test "a directory's name is kept byte for byte" {
  for name in "${names[@]}"; do
    mkdir -- "./$name"
    write_script "./$name/a.sh"
    do_silently 0 orvex_policy exec -A -d "$name"
    expect_line_for "$PWD/$name/a.sh       可执行" -L -d "$name"
    expect_line_for "路径[$name]是目录, 请输入文件路径" -L -f "$name"
    do_silently 0 orvex_policy exec -A -e -d "$name"
    expect_line_for "$name       例外程序" -L -d "$name"
    expect_line_for "放行   目录:$PWD/$name/" -L
    do_silently 0 orvex_policy exec -D -e -d "$name"
    expect_no_exceptions
    do_silently 0 orvex_policy exec -D -d "$name"
    expect_line_for "$PWD/$name/a.sh       不可执行" -L -d "$name"
    rm -r -- "./$name"
    expect_line_for "目录路径[$name]不存在!" -L -d "$name"
  done
}

@test "one walk shows all names" {
  mkdir d
  for name in "${names[@]}"; do
    write_script "./d/$name"
  done
  do_silently 0 orvex_policy exec -A -d d
  as 0 orvex_policy exec -L -d d
  expect_sorted 0 < <(printf "$PWD/d/%s       可执行\n" "${names[@]}" | LC_ALL=C sort)
}

@test "a package's name is shown as it was typed" {
  for name in "${names[@]}"; do
    expect_line_for "不支持未安装的软件包[$name]设置" -A -P "$name"
    expect_line_for "不支持未安装的软件包[$name]设置" -D -e -P "$name"
    expect_line_for "不支持未安装的软件包[$name]查询" -L -P "$name"
  done
}

@test "a path of 4095 bytes is kept whole" {
  make_long_path "$PWD"
  cd "${path%/*}"
  write_script "${path##*/}"
  cd "$OLDPWD"
  do_silently 0 orvex_policy exec -A -f "$path"
  expect_line_for "$path       可执行" -L -f "$path"
  do_silently 0 orvex_policy exec -A -e -f "$path"
  expect_line_for "放行   文件:$path" -L
  expect_line_for "文件路径[${path}p]不存在!" -A -f "${path}p"
}

@test "a colon cannot be part of a name" {
  write_script a:b
  as 0 orvex_policy exec -A -f a:b
  expect 0 <<'END'
文件路径[a]不存在!
文件路径[b]不存在!
END
}

@test "an empty name is no object" {
  as 0 orvex_policy exec -A -e -f '' -d '' -P ''
  expect 0 < <(
    echo '设置例外程序可选文件、目录或者软件包, 请选择其中一种!'
    print_exec_help
  )
}
