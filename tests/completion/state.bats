#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Words, options and values of orvex_state.

load support/shell.bash

setup() {
  start_shell_session
}

@test "commands" {
  expect_offers <<'END'
? orvex_state 
dump diff plan apply
END
}

@test "options of each command" {
  expect_offers <<'END'
? orvex_state -
-h --help --version
? orvex_state dump -
-h --help -o --output
? orvex_state diff -
-h --help --json --keep-others
? orvex_state plan -
-h --help --keep-others
? orvex_state apply -
-h --help --keep-others
END
}

@test "documents, also those with blanks" {
  mkdir 'my dir'
  touch 'my dir/a b'
  for command in diff plan apply; do
    expect_arguments "orvex_state $command my<tab>a<tab>" <<<"$command"$'\nmy dir/a b'
  done
  expect_arguments 'orvex_state apply --keep-others my<tab>a<tab>' <<<$'apply\n--keep-others\nmy dir/a b'
  expect_arguments 'orvex_state dump -o my<tab>a<tab>' <<<$'dump\n-o\nmy dir/a b'
}
