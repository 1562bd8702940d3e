#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures orvex_state on a host with 10,000 objects on each list. Prints a table, and ends with a failure where a figure is
# above its limit. Called by scripts/bench.sh.
#
# usage: bench/state.sh DIR
#
# DIR is an empty directory for the files. The programs have to be in PATH, and the state of the stand-in is replaced.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/measure.bash"

# Of the time of all listings together.
listing_limit=2
# For ten times as many objects.
growth_limit=11
# What Linux allows one argument.
longest_argument=131071

listings=('orvex_policy exec -L' 'orvex_policy exec -L --tampered' 'orvex_policy net -L' 'orvex_policy file -L'
  'orvex_policy proc -L' 'orvex_policy kmod -L')

# print_list COUNT ITEM: a JSON list of so many items, with a number of each in place of every "&".
print_list() {
  seq -f %05g "$1" | sed "s|.*|$2|" | paste -sd, | sed 's/^/[/; s/$/]/'
}

# fill_host COUNT: so many objects on each list.
fill_host() {
  local file="\"$place/&\"" name='"package-&"' on='{"now": true, "after_restart": true}' files names excepted
  files=$(print_list "$1" "$file")
  names=$(print_list "$1" "$name")
  excepted=$(print_list "$1" '{"path": '"$file"', "exceptions": [{"kind": "file", "text": '"$file"'}]}')
  orvex_local load - <<END
{"version": 1,
 "framework": {"now": "enabled", "after_restart": "enabled"},
 "modules": {"exec": $on, "net": $on, "file": $on, "proc": $on, "kmod": $on},
 "exec": {"whitelist": $(print_list "$1" '{"path": '"$file"'}'), "excepted_files": $files, "excepted_packages": $names},
 "net": {"packages": $(print_list "$1" '{"name": '"$name"', "status": 1, "tag": 2}'),
   "programs": $(print_list "$1" '{"path": '"$file"', "status": 2, "tag": 2}')},
 "file": {"paths": $files, "packages": $names, "path_exceptions": $excepted},
 "proc": {"programs": $files, "exceptions": $excepted},
 "kmod": {"modules": $names}}
END
}

measure_reading() {
  local dump='orvex_state dump' diff="orvex_state diff $scratch/10000.json" command small_time small_memory
  fill_host 1000
  small_memory=$(print_memory "$dump")
  measure 3 "$dump"
  small_time=$(print_time "$dump")
  fill_host 10000
  orvex_state dump -o "$scratch/10000.json"
  measure 3 "$dump" "$diff" "${listings[@]}"
  for command in dump diff; do
    report "\`orvex_state $command\`, 10,000 objects on each list, to the listings of the same" \
      "$(print_to_listings "${!command}")" "$listing_limit"
  done
  report "\`orvex_state dump\`, time, 10,000 objects to 1,000" \
    "$(divide "$(print_time "$dump")" "$small_time")" "$growth_limit"
  report "\`orvex_state dump\`, memory, 10,000 objects to 1,000" \
    "$(divide "$(print_memory "$dump")" "$small_memory")" "$growth_limit"
}

# print_to_listings COMMAND: its time, to that of all listings together.
print_to_listings() {
  local listing total=0
  for listing in "${listings[@]}"; do
    total=$(awk -v total="$total" -v time="$(print_time "$listing")" 'BEGIN { print total + time }')
  done
  divide "$(print_time "$1")" "$total"
}

# For an emptied host: what packages, kernel modules and the exceptions of each object cost are commands of their own.
measure_commands() {
  local count bytes wanted=$scratch/wanted.json
  fill_host 0
  for count in 1000 10000; do
    echo "{\"version\": 1, \"exec\": {\"whitelist\": {$(seq -f "\"$place/%05g\": \"intact\"" "$count" | paste -sd,)}}}" >"$wanted"
    bytes=$((count * (${#place} + 7)))
    report "\`orvex_state plan\`, commands for $count files with names of $bytes bytes" \
      "$(orvex_state plan "$wanted" | wc -l)" $((bytes / longest_argument + 1))
  done
}

answer_help "$@"
[[ $# -eq 1 && -d $1 ]] || refuse_call
# The commands of a measurement are split at blanks.
[[ $1 != *[[:space:]]* ]] || fail "blanks in the name of the directory: $1"
place=$(cd "$1" && pwd)
make_scratch
for file in $(seq -f "$place/%05g" 10000); do
  echo '#!/bin/sh' >"$file"
done
print_head 'What' 'Figure' 'Limit'
measure_reading
measure_commands
exit "$exit_value"
