#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Values of the options of orvex_policy.

load support/shell.bash

setup() {
  start_shell_session
}

make_awkward_files() {
  mkdir 'my dir' 目录
  touch 'my dir/a b' "it's" 'say "x"' 目录/文件
}

@test "files and directories with blanks, quotes and Chinese names" {
  make_awkward_files
  touch "\$HOME"
  expect_arguments 'orvex_policy exec -A -f my<tab>a<tab>' <<<$'exec\n-A\n-f\nmy dir/a b'
  expect_arguments 'orvex_policy exec -A --file=it<tab>' <<<$'exec\n-A\n--file=it\'s'
  expect_arguments 'orvex_policy kmod -A -f sa<tab>' <<<$'kmod\n-A\n-f\nsay "x"'
  expect_arguments "orvex_policy net -A -f '\$H<tab>" <<<$'net\n-A\n-f\n$HOME'
  expect_arguments 'orvex_policy file -A -f 目<tab>文<tab>' <<<$'file\n-A\n-f\n目录/文件'
  expect_arguments 'orvex_policy proc -Af "my<tab>a<tab>' <<<$'proc\n-Af\nmy dir/a b'
}

@test "the last piece of a list is completed" {
  make_awkward_files
  expect_arguments 'orvex_policy exec -A -f /gone:my<tab>a<tab>' <<<$'exec\n-A\n-f\n/gone:my dir/a b'
  expect_arguments 'orvex_policy exec -A -f my<tab>a\ b:it<tab>' <<<$'exec\n-A\n-f\nmy dir/a b:it\'s'
  expect_arguments 'orvex_policy exec -A --file=目录/文件:目<tab>文<tab>' <<<$'exec\n-A\n--file=目录/文件:目录/文件'
  expect_arguments 'orvex_policy exec -A -f "my dir/a b:my<tab>a<tab>' <<<$'exec\n-A\n-f\nmy dir/a b:my dir/a b'
  expect_arguments "orvex_policy exec -A -f 'it:sa<tab>" <<<$'exec\n-A\n-f\nit:say "x"'
  expect_arguments 'orvex_policy file -A -d my\ dir:目<tab>x' <<<$'file\n-A\n-d\nmy dir:目录/x'
}

@test "a home that is named by ~ is completed in each piece" {
  touch "$home/notes"
  expect_arguments 'orvex_policy exec -A -f /gone:~/no<tab>' <<<$'exec\n-A\n-f\n/gone:~/notes'
  expect_arguments 'orvex_policy exec -A -f ~/no<tab>' <<<$'exec\n-A\n-f\n'"$home/notes"
}

@test "only directories stand behind -d" {
  mkdir there
  touch thing
  expect_arguments 'orvex_policy exec -A -d th<tab>x' <<<$'exec\n-A\n-d\nthere/x'
  expect_arguments 'orvex_policy userid -L --dir=th<tab>x' <<<$'userid\n-L\n--dir=there/x'
}

@test "installed packages are completed by prefix" {
  expect_offers <<'END'
? orvex_policy exec -A -P orvex-d
orvex-demo-tools orvex-desktop orvex-desktop-broken orvex-desktop-cache orvex-desktop-plain
END
  expect_arguments 'orvex_policy file -A -P orvex-t<tab>' <<<$'file\n-A\n-P\norvex-twice'
  expect_arguments 'orvex_policy proc --package=orvex-t<tab>' <<<$'proc\n--package=orvex-twice'
  expect_arguments 'orvex_policy net -A -P wps<tab>' <<<$'net\n-A\n-P\nwps-office'
  expect_arguments 'orvex_policy exec -A -P wps-office:orvex-t<tab>' <<<$'exec\n-A\n-P\nwps-office:orvex-twice'
  expect_arguments 'orvex_policy exec -A -P "wps-office:orvex-t<tab>' <<<$'exec\n-A\n-P\nwps-office:orvex-twice'
}

@test "a name that is a pattern to rpm finds no package" {
  expect_arguments 'orvex_policy exec -A -P "*<tab>"' <<<$'exec\n-A\n-P\n*'
}

# add_process PID NAME ARGUMENT...
add_process() {
  mkdir "$proc/$1"
  echo "$2" >"$proc/$1/comm"
  : >"$proc/$1/cmdline"
  [[ $# -eq 2 ]] || printf '%s\0' "${@:3}" >"$proc/$1/cmdline"
}

@test "processes that run a program are completed, and told by its name" {
  replace_proc
  add_process 2 kthreadd
  add_process 311 sshd sshd -D
  add_process 3120 'my:worker (1)' worker
  expect_offers <<<$'? orvex_policy proc -A -p \n311\tsshd\n3120\tmy:worker (1)'
  expect_arguments 'orvex_policy proc -A -p 311:312<tab>' <<<$'proc\n-A\n-p\n311:3120'
}

@test "kernel modules that are loaded are completed" {
  replace_proc
  printf '%s 16384 0 - Live 0x0000000000000000\n' ext4 nf_tables nf_nat >"$proc/modules"
  expect_offers <<<$'? orvex_policy kmod -A -n nf_\nnf_nat nf_tables'
  expect_arguments 'orvex_policy kmod -D --name=ex<tab>' <<<$'kmod\n-D\n--name=ext4'
}

@test "a kernel without modules has none to complete" {
  replace_proc
  expect_arguments 'orvex_policy kmod -A -n <tab>x' <<<$'kmod\n-A\n-n\nx'
}

@test "the two states of a network policy are completed" {
  expect_offers <<<$'? orvex_policy net -U -f /bin/sh -v \nallow\t允许联网\ndeny\t拒绝联网'
  expect_arguments 'orvex_policy net -U --value=d<tab>' <<<$'net\n-U\n--value=deny'
}
