#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the fuzz targets and lets each look for faults, two at a time. Ends with what each has tried, and with a failure
# where one found something; the input then lies in build/fuzz/found. What was learnt is kept in build/fuzz/corpus.
#
# usage: scripts/fuzz.sh [SECONDS] [TARGET...]
#
#   SECONDS   how long each of them looks; 30 where nothing is said
#   TARGET    one in tests/fuzz, such as command_line; all where none is named
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash

answer_help "$@"
seconds=30
if [[ ${1-} =~ ^[0-9]+$ ]]; then
  seconds=$1
  shift
fi
mapfile -t all < <(sed -n 's/^add_fuzz_target(\([a-z_]*\).*/\1/p' tests/fuzz/CMakeLists.txt)
for target; do
  [[ " ${all[*]} " == *" $target "* ]] || refuse_argument "$target"
done
targets=("${@:-${all[@]}}")

# look TARGET: what libFuzzer says goes to build/fuzz/TARGET.log.
look() {
  local options=("-max_total_time=$seconds" -timeout=60 -print_final_stats=1 "-artifact_prefix=found/$1-")
  if [[ -e ../../tests/fuzz/$1.dict ]]; then
    options+=("-dict=../../tests/fuzz/$1.dict")
  fi
  mkdir -p "corpus/$1"
  if ! "bin/fuzz_$1" "${options[@]}" "corpus/$1" "../../tests/fuzz/seeds/$1" >"$1.log" 2>&1; then
    printf '%s: found something\n' "$1"
    grep -aE -A 20 '^found: |ERROR: |runtime error: |Failure$' "$1.log" | head -n 40
    return 1
  fi
  # What is tried can end the process with an exit value of 0.
  if ! grep -qa '^Done ' "$1.log"; then
    printf '%s: ended before its time\n' "$1"
    return 1
  fi
  awk -v target="$1" '
    $1 == "stat::number_of_executed_units:" { executions = $2 }
    $2 == "DONE" { for (i = 1; i < NF; i++) if ($i == "cov:") edges = $(i + 1) }
    END { printf "%-20s %9d executions, %5d edges\n", target, executions, edges }' "$1.log"
}

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}"
cd build/fuzz
mkdir -p corpus found
announce "looking, $seconds s each"
# Inputs become files, which are best kept in memory.
if [[ -w /dev/shm ]]; then
  export TMPDIR=/dev/shm
fi
export seconds
export -f look
# shellcheck disable=SC2016
printf '%s\n' "${targets[@]}" | xargs -I {} -P 2 bash -c 'look "$1"' bash {}
