#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The demonstration, with the programs of this build.
bats_require_minimum_version 1.5.0

setup() {
  cd "$ORVEX_SOURCE_DIR" || return
  # Users of the demonstration have to come by.
  chmod go+rx "$BATS_RUN_TMPDIR"
  export TMPDIR="$BATS_TEST_TMPDIR/a place"
  mkdir "$TMPDIR"
}

demonstrate() {
  scripts/demo.sh --programs "$ORVEX_BIN_DIR"
}

@test "the demonstration plays to its end, in a place with a blank in its name, and leaves nothing behind" {
  demonstrate >"$BATS_TEST_TMPDIR/output" 2>"$BATS_TEST_TMPDIR/errors"
  grep -q '^== A process stands for its program$' "$BATS_TEST_TMPDIR/output"
  tail -n 6 "$BATS_TEST_TMPDIR/output" | grep -q '^== A second time there is nothing to do$'
  diff -u "$BATS_TEST_TMPDIR/errors" - <<'END'
orvex_state: policy.json: /exec/excepted_package: unknown field
orvex_state: the framework works after a restart of the machine; apply the document again then
END
  [[ -z $(ls "$TMPDIR") ]]
}

@test "the README's picture is one of what the demonstration prints" {
  demonstrate | scripts/draw_session.sh | diff -u docs/session.svg -
}

@test "a demonstration that is interrupted leaves nothing behind" {
  for signal in INT TERM; do
    # In a process group of its own, as on a terminal; a background process would ignore the interrupt.
    setsid env --default-signal=INT scripts/demo.sh --programs "$ORVEX_BIN_DIR" \
      >"$BATS_TEST_TMPDIR/$signal" 2>&1 3>&- &
    demonstration=$!
    until grep -qs '^== ' "$BATS_TEST_TMPDIR/$signal"; do
      kill -0 "$demonstration"
      sleep 0.1
    done
    [[ -n $(ls "$TMPDIR") ]]
    kill "-$signal" -- "-$demonstration"
    status=0
    wait "$demonstration" || status=$?
    [[ $status -gt 128 ]]
    [[ -z $(ls "$TMPDIR") ]]
  done
}
