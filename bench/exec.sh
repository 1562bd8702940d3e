#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures execution control, on the packages of bench/specs and with the framework on. Ends with a failure where a figure
# is above its limit. Called by scripts/bench.sh.
#
# usage: bench/exec.sh DIR
#
# DIR holds the files of the packages. rpm has to find these, and the program has to be in PATH.
#
# All times are processor time, with that of the child processes: what else the machine does counts little in it.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"

bare_loop_limit=1.15
rpm_limit=1
# For ten times as many files.
growth_limit=11
memory_limit=$((64 * 1024))

exit_value=0

# report TEXT VALUE LIMIT
report() {
  printf '%s: %s (limit %s)\n' "$@"
  awk -v value="$2" -v limit="$3" 'BEGIN { exit value > limit }' || exit_value=1
}

# measure RUNS COMMAND...: the times of the commands for print_time, which it runs in turns.
measure() {
  local round commands=()
  for ((round = 0; round < $1; ++round)); do
    commands+=("${@:2}")
  done
  hyperfine --shell=none --style=none --runs 1 "${prepare[@]}" --export-csv "$scratch/times.csv" "${commands[@]}"
}

# print_time COMMAND: the least time of the command in the last measurement, in seconds.
print_time() {
  awk -F, -v command="$1" '
    $1 == command && (least == "" || $5 + $6 < least) { least = $5 + $6 }
    END { print least }' "$scratch/times.csv"
}

# print_ratio COMMAND OTHER
print_ratio() {
  awk -v time="$(print_time "$1")" -v other="$(print_time "$2")" 'BEGIN { printf "%.2f", time / other }'
}

# print_share COMMAND COUNT: the time of the command for each of so many files, in microseconds.
print_share() {
  awk -v time="$(print_time "$1")" -v count="$2" 'BEGIN { printf "%.0f", time * 1000000 / count }'
}

measure_directory_listing() {
  local small="orvex_policy exec -L -d $many/1000/0/0/0" large="orvex_policy exec -L -d $many/1000/0/0"
  local small_loop="owner_query_loop $many/1000/0/0/0" large_loop="owner_query_loop $many/1000/0/0"
  local rpm="find $many/1000/0/0/0 -type f -exec rpm -qf {} ;"
  prepare=()
  measure 5 "$small" "$small_loop" "$rpm"
  report "exec -L -d: $(print_share "$small" 100) us a file, to a rpm -qf process for each" \
    "$(print_ratio "$small" "$rpm")" "$rpm_limit"
  measure 3 "$small" "$large" "$large_loop"
  report "exec -L -d: to a bare loop of owner queries, 1,000 files" "$(print_ratio "$large" "$large_loop")" \
    "$bare_loop_limit"
  report "exec -L -d: 1,000 files to 100" "$(print_ratio "$large" "$small")" "$growth_limit"
}

# measure_package OPTION: what the command with the option -A or -L costs for 5,000 and for 50,000 files.
measure_package() {
  local small="orvex_policy exec $1 -P orvex-many-5000" large="orvex_policy exec $1 -P orvex-many-50000"
  local bare_memory memory
  prepare=()
  if [[ $1 == -A ]]; then
    prepare=(--prepare 'orvex_policy exec -D -P orvex-many-5000:orvex-many-50000')
  else
    orvex_policy exec -A -P orvex-many-5000:orvex-many-50000
  fi
  measure 3 "$small" "$large"
  report "exec $1 -P: $(print_share "$large" 50000) us a file, 50,000 files to 5,000" \
    "$(print_ratio "$large" "$small")" "$growth_limit"
  # shellcheck disable=SC2086
  memory=$(peak_memory $large)
  bare_memory=$(peak_memory package_walk orvex-many-50000)
  report "exec $1 -P: KiB of memory, 50,000 files, beyond the $bare_memory of the rpm library" \
    $((memory - bare_memory)) "$memory_limit"
}

measure_directory() {
  local small="orvex_policy exec -A -d $many/50000/0/0" large="orvex_policy exec -A -d $many/50000/0"
  local hashing="find $many/50000/0 -type f -exec sha256sum {} +"
  prepare=(--prepare "orvex_policy exec -D -d $many")
  measure 3 "$small" "$large" "$hashing"
  report "exec -A -d: $(print_share "$large" 10000) us a file, 10,000 files to 1,000" \
    "$(print_ratio "$large" "$small")" "$growth_limit"
  printf 'exec -A -d: to sha256sum over the same files: %s\n' "$(print_ratio "$large" "$hashing")"
  # shellcheck disable=SC2086
  printf 'exec -A -d: KiB of memory, 10,000 files, beyond that for 1,000: %d\n' \
    $(($(peak_memory $large) - $(peak_memory $small)))
}

answer_help "$@"
[[ $# -eq 1 && -d $1 ]] || refuse_call
# The commands of a measurement are split at blanks.
[[ $1 != *[[:space:]]* ]] || fail "blanks in the name of the directory: $1"
many=$1
make_scratch
orvex_policy exec on
measure_directory_listing
measure_package -A
measure_package -L
measure_directory
exit "$exit_value"
