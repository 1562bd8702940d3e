#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what a run of the program costs, as a ratio to a program that does next to nothing with the same libraries,
# and what execution control of many files costs. Ends with a failure where a figure is above its limit.
#
# usage: scripts/bench.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/playground.bash

status_limit=1.3
call_limit=1.5

# print_loaded PROGRAM: the libraries that it is loaded with, sorted.
print_loaded() {
  ldd "$1" | awk '{ print $1 }' | sort
}

measure_status() {
  announce 'measuring the start of the program'
  diff <(print_loaded "$(command -v orvex_policy)") <(print_loaded "$(command -v one_line)") || {
    echo 'bench: the two programs are loaded with different libraries' >&2
    exit 1
  }

  # The report is longest with the framework enabled.
  run_as 0 orvex_policy enable
  run_as 0 orvex_local restart

  # In turns, so that what else the machine does meets both.
  commands=()
  for _ in {1..8}; do
    commands+=('orvex_policy status' one_line)
  done
  hyperfine --shell=none --style=none --warmup 20 --runs 200 --export-csv "$scratch/status.csv" "${commands[@]}"
  awk -F, -v limit="$status_limit" '
    NR > 1 { total[$1] += $4; rounds[$1]++ }
    END {
      program = total["orvex_policy status"] / rounds["orvex_policy status"]
      bare = total["one_line"] / rounds["one_line"]
      printf "orvex_policy status: %.2f ms, %.2f times the %.2f ms of a bare program with its libraries (limit %.1f)\n",
        program * 1000, program / bare, bare * 1000, limit
      exit program / bare > limit
    }' "$scratch/status.csv" || exit_value=1
}

# Each service function of the stand-in asks whether it is traced and whether it is to fail.
measure_call() {
  read -r ratio nanoseconds < <(call_cost)
  printf 'a call, neither traced nor to fail: %s times its system call, %s ns more (limit %s)\n' \
    "$ratio" "$nanoseconds" "$call_limit"
  awk -v ratio="$ratio" -v limit="$call_limit" 'BEGIN { exit ratio > limit }' || exit_value=1
}

measure_exec() {
  announce 'building packages of many files'
  tests/packages/make_packages.sh "$scratch/packages" bench/specs
  announce 'measuring execution control of many files'
  HOME="$scratch/packages/home" run_as 0 bench/exec.sh "$scratch/packages/root/orvex-many" || exit_value=1
}

answer_help "$@"
[[ $# -eq 0 ]] || refuse_argument "$1"
check_users
scripts/bootstrap.sh --all
announce 'building'
cmake --preset release
cmake --build --preset release --target \
  orvex_policy orvex_local call_cost one_line owner_query_loop package_walk peak_memory

PATH="$PWD/build/release/bin:$PATH"
make_scratch
export ORVEX_LOCAL_STATE="$scratch/state"
mkdir "$ORVEX_LOCAL_STATE"

exit_value=0
measure_status
measure_call
measure_exec
exit "$exit_value"
