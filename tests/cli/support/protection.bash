# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the sessions of file protection and process protection share.

# use_module WORD: the module of all the commands below.
use_module() {
  module=$1
}

# change ARGUMENT...: a command that works, and so says nothing.
change() {
  do_silently 0 orvex_policy "$module" "$@"
}

# expect_lines_for ARGUMENT...: the command prints just what stands on standard input.
expect_lines_for() {
  as 0 orvex_policy "$module" "$@"
  expect 0
}

# expect_line_for LINE ARGUMENT...
expect_line_for() {
  expect_lines_for "${@:2}" <<<"$1"
}

# expect_help_for ARGUMENT...
expect_help_for() {
  expect_lines_for "$@" < <("print_${module}_help")
}

# expect_line_and_help_for LINE ARGUMENT...
expect_line_and_help_for() {
  expect_lines_for "${@:2}" < <(
    echo "$1"
    "print_${module}_help"
  )
}

# expect_listed ROW...: just these rows are listed, in this order.
expect_listed() {
  expect_lines_for -L < <([[ $# -eq 0 ]] || printf '%s\n' "$@")
}
