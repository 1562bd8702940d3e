#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What all scripts have in common.
bats_require_minimum_version 1.5.0

setup() {
  cd "$ORVEX_SOURCE_DIR" || return
  scripts=(scripts/*.sh bench/*.sh tests/packages/*.sh tests/scripts/*.sh .ci/run .ci/without_rights)
  # Whatever a script leaves at home would show.
  mkdir "$BATS_TEST_TMPDIR/empty"
  export HOME=$BATS_TEST_TMPDIR/empty
}

@test "asked for help a script prints how it is used, and does nothing else" {
  [[ ${#scripts[@]} -ge 10 ]]
  for script in "${scripts[@]}"; do
    for option in -h --help; do
      run --separate-stderr timeout 5 "$script" "$option"
      echo "$script $option: $status $output $stderr"
      [[ $status -eq 0 && -z $stderr ]]
      [[ $output == *"usage: "*"${script##*/}"* ]]
      [[ $output != *SPDX* && $output != *'set -'* ]]
    done
  done
  [[ -z $(ls -A "$HOME") ]]
}

@test "an unknown argument is refused before anything is done" {
  for script in "${scripts[@]}"; do
    run --separate-stderr timeout 5 "$script" --nonsense
    echo "$script: $status $output $stderr"
    [[ $status -eq 2 && -z $output ]]
    [[ $stderr == *"try ${script##*/} --help"* ]]
  done
}

@test "programs that are not there are refused before anything is done" {
  for script in scripts/demo.sh scripts/play.sh; do
    run --separate-stderr timeout 5 "$script" --programs "$BATS_TEST_TMPDIR"
    [[ $status -eq 1 && -z $output && $stderr == *"no orvex_policy in the directory $BATS_TEST_TMPDIR" ]]
    run timeout 5 "$script" --programs
    [[ $status -eq 2 ]]
  done
}

@test "a place that exists is not played in, and is left as it is" {
  mkdir "$BATS_TEST_TMPDIR/mine"
  touch "$BATS_TEST_TMPDIR/mine/letter"
  run ! scripts/play.sh --programs "$ORVEX_BIN_DIR" "$BATS_TEST_TMPDIR/mine"
  [[ -e $BATS_TEST_TMPDIR/mine/letter ]]
}
