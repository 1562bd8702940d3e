#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds everything and runs all tests. Ends with how many ran, how many were skipped, and for which reason.
#
# usage: scripts/test.sh [-R REGEX] [-E REGEX] [-L LABEL]
#
#   -R REGEX   only tests whose name matches
#   -E REGEX   no tests whose name matches
#   -L LABEL   only tests with a label that matches, such as cli
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash

# print_summary LOG: counts what ctest wrote down. A skipped test of GoogleTest tells its reason on the line behind the
# place, one of bats behind its name.
print_summary() {
  awk '
    /^[0-9]+\/[0-9]+ Testing: / { tests++; reason = "without a reason"; next }
    is_reason { reason = $0; is_reason = 0 }
    /: Skipped$/ { is_reason = 1 }
    / # skip / { reason = substr($0, index($0, " # skip ") + length(" # skip ")) }
    /^Skip regular expression found/ { skipped++; count[reason]++ }
    /^Test (Failed|Fail Reason)/ { failed++ }
    END {
      if (skipped > 0) {
        print "\nSkipped:"
        for (reason in count) printf "%6d  %s\n", count[reason], reason
      }
      printf "\n%d passed, %d failed, %d skipped\n", tests - failed - skipped, failed, skipped
    }' "$1"
}

answer_help "$@"
selection=()
while [[ $# -gt 0 ]]; do
  case $1 in
    -[REL])
      [[ $# -ge 2 ]] || refuse_argument "$1"
      selection+=("$1" "$2")
      shift 2
      ;;
    *) refuse_argument "$1" ;;
  esac
done

scripts/bootstrap.sh
announce 'building'
cmake --preset test
cmake --build --preset test
announce 'testing'
exit_value=0
ctest --preset test --no-tests=error --parallel "$(nproc)" "${selection[@]}" || exit_value=$?
print_summary build/test/Testing/Temporary/LastTest.log
exit "$exit_value"
