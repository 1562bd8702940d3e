#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what execution control costs for each file, on the packages of bench/specs. Prints a table, and ends with a failure
# where a figure is above its limit. Called by scripts/bench.sh.
#
# usage: bench/exec.sh DIR
#
# DIR holds the files of the packages. rpm has to find these, and the program has to be in PATH.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/measure.bash"

bare_loop_limit=1.15
rpm_limit=1
# For ten times as many files.
growth_limit=11
memory_limit=$((64 * 1024))

# print_share COMMAND COUNT: the time of the command for each of so many files, in microseconds.
print_share() {
  divide "$(print_time "$1")" "$2" 6 | awk '{ printf "%.0f", $1 * 1000 }'
}

measure_directory_listing() {
  local small="orvex_policy exec -L -d $many/1000/0/0/0" large="orvex_policy exec -L -d $many/1000/0/0"
  local large_loop="owner_query_loop $many/1000/0/0"
  local rpm="find $many/1000/0/0/0 -type f -exec rpm -qf {} ;"
  measure 5 "$small" "$rpm"
  report "\`exec -L -d\`, $(print_share "$small" 100) us a file, to an \`rpm -qf\` process for each" \
    "$(print_ratio "$small" "$rpm")" "$rpm_limit"
  measure 3 "$small" "$large" "$large_loop"
  report "\`exec -L -d\`, 1,000 files, to a bare loop of the same owner queries" \
    "$(print_ratio "$large" "$large_loop")" "$bare_loop_limit"
  report "\`exec -L -d\`, 1,000 files to 100" "$(print_ratio "$large" "$small")" "$growth_limit"
}

# measure_package OPTION: what the command with the option -A or -L costs for 5,000 and for 50,000 files.
measure_package() {
  local small="orvex_policy exec $1 -P orvex-many-5000" large="orvex_policy exec $1 -P orvex-many-50000" bare
  prepare=()
  if [[ $1 == -A ]]; then
    prepare=(--prepare 'orvex_policy exec -D -P orvex-many-5000:orvex-many-50000')
  else
    orvex_policy exec -A -P orvex-many-5000:orvex-many-50000
  fi
  measure 3 "$small" "$large"
  report "\`exec $1 -P\`, $(print_share "$large" 50000) us a file, 50,000 files to 5,000" \
    "$(print_ratio "$large" "$small")" "$growth_limit"
  bare=$(print_memory 'package_walk orvex-many-50000')
  report "\`exec $1 -P\`, 50,000 files, KiB of memory beyond the $bare of the rpm library" \
    $(($(print_memory "$large") - bare)) "$memory_limit"
}

measure_directory() {
  local small="orvex_policy exec -A -d $many/50000/0/0" large="orvex_policy exec -A -d $many/50000/0"
  local hashing="find $many/50000/0 -type f -exec sha256sum {} +"
  prepare=(--prepare "orvex_policy exec -D -d $many")
  measure 3 "$small" "$large" "$hashing"
  report "\`exec -A -d\`, $(print_share "$large" 10000) us a file, 10,000 files to 1,000" \
    "$(print_ratio "$large" "$small")" "$growth_limit"
  print_row "\`exec -A -d\`, to \`sha256sum\` over the same files" "$(print_ratio "$large" "$hashing")" ''
}

answer_help "$@"
[[ $# -eq 1 && -d $1 ]] || refuse_call
# The commands of a measurement are split at blanks.
[[ $1 != *[[:space:]]* ]] || fail "blanks in the name of the directory: $1"
many=$1
make_scratch
orvex_policy exec on
print_head 'What' 'Figure' 'Limit'
measure_directory_listing
measure_package -A
measure_package -L
measure_directory
exit "$exit_value"
