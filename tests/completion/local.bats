#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Words, options and values of orvex_local.

load support/shell.bash

setup() {
  start_shell_session
}

@test "commands and their words" {
  expect_offers <<'END'
? orvex_local 
show load restart reset scene roles label blacklist log fail run trace
? orvex_local scene 
on off
? orvex_local label 
add remove
? orvex_local label add 
root secadm auditadm
? orvex_local blacklist 
add remove
END
}

@test "options of each command" {
  expect_offers <<'END'
? orvex_local -
-h --help --version
? orvex_local show -
-h --help --json
? orvex_local log -
-f --follow -h --help
? orvex_local run -
-h --help --state --uid
? orvex_local trace -
-h --help --json -o --output
END
}

@test "files, also those with blanks" {
  mkdir 'my dir'
  touch 'my dir/a b'
  expect_arguments 'orvex_local load my<tab>a<tab>' <<<$'load\nmy dir/a b'
  expect_arguments 'orvex_local label add secadm my<tab>a<tab>' <<<$'label\nadd\nsecadm\nmy dir/a b'
  expect_arguments 'orvex_local blacklist remove my<tab>a<tab>' <<<$'blacklist\nremove\nmy dir/a b'
  expect_arguments 'orvex_local trace -o my<tab>a<tab>' <<<$'trace\n-o\nmy dir/a b'
}

@test "service functions that can fail, and null for those that return a pointer" {
  expect_offers <<'END'
? orvex_local fail path_
path_is_dir path_is_exist path_is_same
END
  expect_arguments 'orvex_local fail orvex_scene_exectl_objs<tab>x' <<<$'fail\norvex_scene_exectl_objsx'
  expect_arguments 'orvex_local fail get_ab<tab>n<tab>' <<<$'fail\nget_absolute_path\nnull'
}

@test "the values of run's options" {
  mkdir there
  touch thing
  expect_offers <<'END'
? orvex_local run --uid 
0 600
END
  expect_arguments 'orvex_local run --state th<tab>x' <<<$'run\n--state\nthere/x'
}

@test "the command that is run is completed like the command alone" {
  if [[ $ORVEX_SHELL == bash ]]; then
    # Without its package bash-completion bash knows files only.
    touch allow.txt
    expect_arguments 'orvex_local run --uid 600 orvex_policy net -U -v al<tab>' \
      <<<$'run\n--uid\n600\norvex_policy\nnet\n-U\n-v\nallow.txt'
    return
  fi
  expect_offers <<'END'
? orvex_local run --uid 600 orvex_policy net -U -v 
allow deny
? orvex_local trace orvex_policy kmod -A --
--file --help --name
END
}

@test "programs that can be run" {
  expect_arguments 'orvex_local run orvex_po<tab> x' <<<$'run\norvex_policy\nx'
}
