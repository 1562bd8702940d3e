#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Random states come back as they were, from nothing and from other random states. ORVEX_SEEDS sets how many are tried.

load support/state.bash

setup() {
  start_state_session
  install_package orvex-player
  make_random_world
}

# play_part NUMBER: one of four parts, which run at the same time where there is room.
play_part() {
  local share=$((${ORVEX_SEEDS:-200} / 4))
  as 0 bash "$BATS_TEST_DIRNAME/support/play_seeds.bash" $(($1 * share + 1)) $((($1 + 1) * share))
  cat "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/errors"
  [[ $exit_value -eq 0 ]]
}

@test "random states come back as they were, first part" {
  play_part 0
}

@test "random states come back as they were, second part" {
  play_part 1
}

@test "random states come back as they were, third part" {
  play_part 2
}

@test "random states come back as they were, fourth part" {
  play_part 3
}
