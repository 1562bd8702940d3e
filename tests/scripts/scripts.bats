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

# make_test_program: a program with two tests, between which it does what the variable `ending` says.
make_test_program() {
  cat >"$BATS_TEST_TMPDIR/program" <<'END'
#!/bin/sh
if [ "$1" = --gtest_list_tests ]; then
  printf 'subject.\n  first\n  second\n'
  exit
fi
eval "$ending"
echo '[==========] 2 tests from 1 test suite ran. (3 ms total)'
END
  chmod +x "$BATS_TEST_TMPDIR/program"
}

@test "a test program that runs as a whole has failed where it ends before its tests do" {
  load "$ORVEX_SOURCE_DIR/scripts/lib/test_programs.bash"
  make_test_program
  ending='true' run -0 run_whole env "$BATS_TEST_TMPDIR/program"
  [[ $output == '[==========] 2 tests from 1 test suite ran. (3 ms total)' ]]
  ending='exit 0' run -1 run_whole env "$BATS_TEST_TMPDIR/program"
  [[ $output == "$BATS_TEST_TMPDIR/program: ended before its 2 tests did" ]]
  ending='exit 3' run -3 run_whole "$BATS_TEST_TMPDIR/program"
  ending='echo "[==========] 1 tests from 1 test suite ran."; exit' run -1 run_whole "$BATS_TEST_TMPDIR/program"
}

@test "a single test has failed where the tested code ends its process, whatever the exit value" {
  watched=("$ORVEX_SOURCE_DIR/tests/support/run_to_the_end" bash -c)
  # shellcheck disable=SC2016
  tests='touch "$TEST_PREMATURE_EXIT_FILE"; eval "$1"; rm "$TEST_PREMATURE_EXIT_FILE"'
  run -0 "${watched[@]}" "$tests" bash true
  [[ -z $output ]]
  run -1 "${watched[@]}" "$tests" bash exit
  [[ $output == 'bash: ended before its tests did' ]]
  run -3 "${watched[@]}" "$tests" bash 'exit 3'
  run -134 "${watched[@]}" "$tests" bash 'kill -ABRT $$'
}

@test "a test program that runs as a whole leaves what was written before it" {
  load "$ORVEX_SOURCE_DIR/scripts/lib/test_programs.bash"
  make_test_program
  {
    echo before
    ending='true' run_whole "$BATS_TEST_TMPDIR/program"
    echo behind
  } >"$BATS_TEST_TMPDIR/log"
  diff -u - "$BATS_TEST_TMPDIR/log" <<'LINES'
before
[==========] 2 tests from 1 test suite ran. (3 ms total)
behind
LINES
}
