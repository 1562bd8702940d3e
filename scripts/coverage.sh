#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tells how much of the program and of the stand-in the tests reach, file by file. Ends with a failure where a test fails,
# and where a share is below its limit.
#
# usage: scripts/coverage.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/test_programs.bash

test_programs=(shared_services_test local_service_test unit_tests)

# empty_records: no record of an earlier run is left, and every user whom the sessions play may write the new ones.
empty_records() {
  local notes
  while IFS= read -r -d '' notes; do
    : >"${notes%.gcno}.gcda"
    chmod a+w "${notes%.gcno}.gcda"
  done < <(find "$build" -name '*.gcno' -print0)
}

run_tests() {
  run_all_whole "${test_programs[@]/#/$build/bin/}"
  # What builds the program once more reaches nothing of this build.
  ctest --test-dir "$build" --output-on-failure --no-tests=error --parallel "$(nproc)" --label-regex '^cli$' \
    --exclude-regex 'bare_build|framework.s libraries installs'
}

# read_records: what the compiler alone adds is no branch of ours, nor is the way that only an exception of the standard
# library takes.
read_records() {
  find "$build" -name '*.gcda' -empty -delete
  gcovr --root . --filter src/ --filter local_service/ --exclude-throw-branches --exclude-unreachable-branches \
    --json - "$build" | python3 scripts/lib/leave_out_cleanups.py >"$build/coverage.json"
}

# expect_reached DIR LINES BRANCHES: prints the table of the directory and fails below these percentages.
expect_reached() {
  announce "$1: at least $2 % of the lines and $3 % of the branches"
  gcovr --root . --filter "$1/" --add-tracefile "$build/coverage.json" --txt --print-summary \
    --fail-under-line "$2" --fail-under-branch "$3"
}

answer_help "$@"
[[ $# -eq 0 ]] || refuse_argument "$1"
scripts/bootstrap.sh --all
build=$PWD/build/coverage
# The records lie beside the objects, and a tree that is closed to others, as root's home mostly is, has no place for those of
# other users.
if ! run_as 600 test -x "$PWD"; then
  make_scratch
  build=$scratch/build
fi
announce 'building'
cmake --preset coverage -B "$build"
cmake --build "$build" --target "${test_programs[@]}" "${session_programs[@]}"
empty_records
announce 'testing'
run_tests
read_records
exit_value=0
expect_reached src 99.5 96 || exit_value=1
expect_reached local_service 97 90 || exit_value=1
exit "$exit_value"
