# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# How the measurements measure, and the tables that they print. All times are processor time, with that of the child
# processes: what else the machine does counts little in it. Who sources this has sourced scripts/lib/script.bash, and calls
# make_scratch.
# shellcheck disable=SC2034,SC2154

exit_value=0
# What hyperfine does before each run; see measure.
prepare=()

# measure RUNS COMMAND...: takes the times of the commands, in turns, so that what else the machine does meets all of them.
measure() {
  local round commands=()
  for ((round = 0; round < $1; ++round)); do
    commands+=("${@:2}")
  done
  hyperfine --shell=none --style=none --runs "${runs_in_a_row:-1}" "${prepare[@]}" --export-csv "$scratch/times.csv" \
    "${commands[@]}" 2>"$scratch/hyperfine" || {
    cat "$scratch/hyperfine" >&2
    return 1
  }
}

# print_time COMMAND: the least time of the command in the last measurement, in milliseconds. Of several runs in a row the
# mean counts.
print_time() {
  awk -F, -v command="$1" '
    $1 == command && (least == "" || $5 + $6 < least) { least = $5 + $6 }
    END { printf "%.4f", least * 1000 }' "$scratch/times.csv"
}

# divide NUMBER OTHER [DIGITS]
divide() {
  awk -v number="$1" -v other="$2" -v digits="${3:-2}" 'BEGIN { printf "%.*f", digits, number / other }'
}

# print_ratio COMMAND OTHER: the times of two commands of the last measurement.
print_ratio() {
  divide "$(print_time "$1")" "$(print_time "$2")"
}

# print_memory COMMAND: the most memory that a run of the command holds, in KiB.
print_memory() {
  local words
  read -ra words <<<"$1"
  peak_memory "${words[@]}"
}

# print_row CELL...: a row of a table.
print_row() {
  printf '|'
  printf ' %s |' "$@"
  printf '\n'
}

# print_head CELL...: the first rows of a table.
print_head() {
  print_row "$@"
  printf '|'
  printf -- '---|%.0s' "$@"
  printf '\n'
}

# check WHAT VALUE LIMIT: a figure above its limit is told on standard error and lets the script fail.
check() {
  if awk -v value="$2" -v limit="$3" 'BEGIN { exit value <= limit }'; then
    printf '%s: %s is %s, above its limit %s\n' "$script" "$@" >&2
    exit_value=1
  fi
}

# report WHAT VALUE LIMIT: a row with its limit.
report() {
  print_row "$@"
  check "$@"
}
