# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Figures and their limits. All times are processor time, with that of the child processes: what else the machine does
# counts little in it. Needs $scratch.

exit_value=0

# report TEXT VALUE LIMIT: prints the figure, and makes the script end with a failure where it is above its limit.
report() {
  printf '%s: %s (limit %s)\n' "$@"
  awk -v value="$2" -v limit="$3" 'BEGIN { exit value > limit }' || exit_value=1
}

# measure RUNS COMMAND...: the times of the commands for print_time, which it runs in turns. What the array prepare holds are
# more options of hyperfine.
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
