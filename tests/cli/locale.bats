#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The program prints bytes: the same ones in every locale.

load support/session.bash

setup() {
  start_session
  start_framework_with kmod
}

# make_chinese_locale: it need not be one of the machine's own.
make_chinese_locale() {
  mkdir "$BATS_TEST_TMPDIR/locales"
  localedef --no-archive -i zh_CN -f UTF-8 "$BATS_TEST_TMPDIR/locales/zh_CN.UTF-8"
}

# in_locale VARIABLE=VALUE...
in_locale() {
  session_environment+=(LC_ALL= "LOCPATH=$BATS_TEST_TMPDIR/locales" "$@")
}

play_session() {
  do_silently 0 orvex_policy kmod -A -n 'größe %s'
  do_silently 0 orvex_policy kmod -A -n $'\xff模块\xe5'
  as 0 orvex_policy kmod -L
  expect 0 < <(print_kmod_list 'größe %s' $'\xff模块\xe5')
  as 0 orvex_policy kmod -D -n $'内\xff'
  expect 0 <<<$'模块[内\xff]未添加内核模块防卸载, 无需删除!'
  as 0 orvex_policy kmod -h
  expect 0 < <(print_kmod_help)
  as 0 orvex_policy
  expect 0 < <(print_global_help)
  as 1234 orvex_policy box on
  expect 0 <<<'当前用户无权限执行, 请切换root用户执行!'
  expect_status enable kmod
}

@test "the C locale" {
  in_locale LC_ALL=C
  play_session
}

@test "the C.UTF-8 locale" {
  in_locale LC_ALL=C.UTF-8
  play_session
}

@test "the zh_CN.UTF-8 locale" {
  make_chinese_locale
  in_locale LC_ALL=zh_CN.UTF-8
  as 0 locale charmap
  expect 0 <<<UTF-8
  play_session
}

@test "a locale that does not exist" {
  in_locale LC_ALL=xx_XX.UTF-8
  play_session
}

@test "no locale at all" {
  in_locale LC_ALL= LANG=
  play_session
}

# What getopt_long says of its own accord is the C library's, and in the user's language.
@test "a complaint of getopt_long leaves the program's own lines alone" {
  make_chinese_locale
  for locale in C zh_CN.UTF-8; do
    in_locale "LC_ALL=$locale"
    as 0 orvex_policy kmod -x
    [[ $exit_value -eq 0 ]]
    diff -u - "$BATS_TEST_TMPDIR/output" < <(
      echo '无效的参数'
      print_kmod_help
    )
    [[ $(wc -l <"$BATS_TEST_TMPDIR/errors") -eq 1 ]]
    grep -q '^orvex_policy' "$BATS_TEST_TMPDIR/errors"
  done
}
