#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Words and options of orvex_policy.

load support/shell.bash

setup() {
  start_shell_session
}

@test "the first word is a module or changes or shows the global state" {
  expect_offers <<'END'
? orvex_policy 
box disable enable exec file kmod net permissive proc status userid
? orvex_policy e
enable exec
? orvex_policy -
-h --help
END
}

@test "behind a module stand its switches, and its options once they are begun" {
  expect_offers <<'END'
? orvex_policy exec 
on off script
? orvex_policy exec script 
on off
? orvex_policy box 
on off
? orvex_policy box -
-h --help
END
}

@test "nothing stands behind a switch or a global word" {
  for words in 'exec on' 'exec script off' 'box off' enable status; do
    expect_arguments "orvex_policy $words <tab>-<tab>" <<<"${words// /$'\n'}"$'\n-'
  done
}

@test "the command letters are offered while none is given" {
  expect_offers <<'END'
? orvex_policy kmod -f x -
-A --add -D --delete -L --list -f --file -n --name -h --help
? orvex_policy kmod -f x -D -
-f --file -n --name -h --help
? orvex_policy kmod --list --
--file --name --help
? orvex_policy net -U -
-f --file -P --pakcage -v --value -h --help
? orvex_policy kmod -Af x -
-f --file -n --name -h --help
END
}

@test "a value at its option is no command" {
  expect_offers <<'END'
? orvex_policy kmod --name=-A --
--add --delete --list --file --name --help
? orvex_policy kmod -n-A --
--add --delete --list --file --name --help
END
}

@test "an exception is given once, and file takes no directory behind it" {
  expect_offers <<'END'
? orvex_policy proc -A -f x -e --
--file --pid --dir --package --help
? orvex_policy file -A -f x -e -
-f --file -P --package -h --help
? orvex_policy file -A -f x --except= --
--file --package --help
END
}

@test "--except takes a value, for which nothing is offered" {
  expect_arguments 'orvex_policy exec -A --exc<tab> -<tab>' <<<$'exec\n-A\n--except\n-'
}

@test "the long form of net's -P is completed as the program knows it" {
  expect_arguments 'orvex_policy net -A --p<tab> x' <<<$'net\n-A\n--pakcage\nx'
}
