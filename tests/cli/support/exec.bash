# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the sessions of execution control share.

# use_no_packages: rpm finds a database of the session, without packages, and never the machine's own.
use_no_packages() {
  echo "%_dbpath $BATS_TEST_TMPDIR/rpm" >"$BATS_TEST_TMPDIR/home/.rpmmacros"
  HOME="$BATS_TEST_TMPDIR/home" rpm --initdb
}

# write_script FILE...
write_script() {
  local file
  for file in "$@"; do
    printf '#!/bin/sh\nexit 0\n' >"$file"
  done
}

# expect_line_for LINE ARGUMENT...
expect_line_for() {
  as 0 orvex_policy exec "${@:2}"
  expect 0 <<<"$1"
}

# expect_row FILE STATE: the file, named from the working directory, is listed with this state.
expect_row() {
  expect_line_for "$PWD/$1       $2" -L -f "$1"
}

# expect_sorted EXIT: like expect, for lines in any order; those on standard input are sorted.
expect_sorted() {
  LC_ALL=C sort -o "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/output"
  expect "$1"
}

# expect_tampered FILE...: just these files are reported as tampered with, in this order.
expect_tampered() {
  as 0 orvex_policy exec -L --tampered
  expect 0 < <([[ $# -eq 0 ]] || printf '%s\n' "$@")
}

# expect_no_exceptions: the list of exceptions is empty.
expect_no_exceptions() {
  do_silently 0 orvex_policy exec -L
}
