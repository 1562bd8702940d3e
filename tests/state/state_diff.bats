#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What differs between a host and a document.

load support/state.bash

setup() {
  start_state_session
}

@test "a host does not differ from its own dump" {
  fill_host
  dump mine.json
  for user in 0 1234; do
    as "$user" orvex_state diff mine.json
    expect_silence
  done
  as 0 orvex_state diff --json mine.json
  expect 0 <<<'[]'
}

@test "a disabled host does not differ from its own dump" {
  switch_on kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy disable
  dump mine.json
  do_silently 0 orvex_state diff mine.json
}

@test "what differs is told line by line, and by the exit value" {
  fill_host
  dump mine.json
  sed -e 's/"orvex-demo-tools": "allow"/"orvex-demo-tools": "deny"/' -e 's/"kmod": "on"/"kmod": "off"/' \
    -e 's/"ext4"/"xfs"/' mine.json >other.json
  as 0 orvex_state diff other.json
  expect 1 <<END
~ modules: kmod is on, to be off
~ net packages: orvex-demo-tools is allow, to be deny
+ kmod modules: xfs
- kmod modules: ext4
END
  as 0 orvex_state diff --keep-others other.json
  expect 1 <<END
~ modules: kmod is on, to be off
~ net packages: orvex-demo-tools is allow, to be deny
+ kmod modules: xfs
END
}

@test "a document comes from standard input too" {
  echo '{"version": 1, "framework": "disabled"}' >wanted.json
  as 0 sh -c 'orvex_state diff - <wanted.json'
  expect 1 <<<'~ framework is enabled, to be disabled'
  as 0 sh -c 'echo nothing | orvex_state diff -'
  [[ $exit_value -eq 2 ]]
  grep -q '^orvex_state: standard input: line 1, column 2: ' "$BATS_TEST_TMPDIR/errors"
}

@test "lines are coloured on a terminal alone" {
  echo '{"version": 1, "framework": "disabled"}' >wanted.json
  as 0 script -qec 'orvex_state diff wanted.json' /dev/null
  grep -qF $'\x1b[33m~ framework is enabled, to be disabled\x1b[0m' "$BATS_TEST_TMPDIR/output"
}

@test "a document that cannot be read is an error" {
  as 0 orvex_state diff gone.json
  expect_error 'gone.json: No such file or directory'
  as 0 orvex_state diff .
  expect_error '.: Is a directory'
  : >empty.json
  as 0 orvex_state diff empty.json
  [[ $exit_value -eq 2 ]]
  echo '{"version": 1, "file": {"fiels": {}}}' >wrong.json
  as 0 orvex_state diff wrong.json
  expect_error 'wrong.json: /file/fiels: unknown field'
  as 0 orvex_state diff
  [[ $exit_value -eq 2 ]]
}

@test "what a document brings along does not reach the terminal as a command" {
  printf '{"version": 1, "\\u001b[2J": {}}' >wrong.json
  as 0 orvex_state diff wrong.json
  expect_error 'wrong.json: /\x1b[2J: unknown field'
}
