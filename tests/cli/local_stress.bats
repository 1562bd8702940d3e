#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Load and faults for the store, in the short form; scripts/stress.sh is the long one.

load support/session.bash

setup() {
  start_session
  mounting=()
}

# play FUNCTION ARGUMENT...: plays it, and keeps what it printed and its exit value.
play() {
  as 0 "${mounting[@]}" bash "$ORVEX_SOURCE_DIR/scripts/lib/stress.bash" "$PWD" "$@"
}

# expect_figures PATTERN: the last play came to its end and counted something like this.
expect_figures() {
  cat "$BATS_TEST_TMPDIR/errors"
  [[ $exit_value -eq 0 ]]
  grep -Ex "$1" "$BATS_TEST_TMPDIR/output"
}

@test "killed makers of a store leave nothing but a store" {
  play kill_makers 60
  expect_figures 'makers of a store: 60 runs, .* killed before their end, .* drafts left and cleared'
}

@test "killed writers lose nothing that was written" {
  play kill_writers 120
  expect_figures 'writers: 120 runs, .* killed before their end, .* additions, none lost'
}

@test "eight writers at once lose nothing" {
  play write_at_once 8 5
  expect_figures 'writers at once: 8 with 5 additions each, none lost'
}

@test "a full disk is told, and its store can be emptied and filled again" {
  mounting=(unshare --map-root-user --mount)
  "${mounting[@]}" true 2>/dev/null || skip 'this machine allows no mounts'
  play fill_disks 1
  expect_figures 'full disk of 200 KiB: filled and emptied 1 times'
}

@test "a damaged database is refused or answers, and nothing crashes" {
  play damage_stores 12
  expect_figures 'damaged databases: 12, of which .* were refused as a whole, no crash'
}
