#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures how listings and bulk commands grow with their objects. Prints a table, and ends with a failure where something
# grows faster than it may. Called by scripts/bench.sh.
#
# usage: bench/growth.sh DIR FILE
#
# DIR holds the files of the packages of bench/specs. rpm has to find these, and the programs of the build have to be in
# PATH. The times go to FILE as well, for bench/growth.gnuplot.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/measure.bash"

# How much faster than its objects a command may grow that does the same for each of them.
linear_limit=1.1
# The most memory that it may take for each of them, in KiB. A record of a network policy alone has 8.
memory_limit=2
record_limit=9

# print_names COUNT FORMAT: that many strings of a document.
print_names() {
  seq -f "\"$2\"," 1 "$1" | sed '$ s/,$//'
}

# print_document PART COUNT: a store with the framework and all modules on, and with that many objects of the part.
print_document() {
  echo '{"version": 1, "framework": {"now": "enabled", "after_restart": "enabled"}, "modules": {'
  printf '"%s": {"now": true, "after_restart": true},' exec net file proc
  echo '"kmod": {"now": true, "after_restart": true}}'
  case $1 in
    exec) echo ", \"exec\": {\"excepted_files\": [$(print_names "$2" /srv/objects/%06g)]}" ;;
    net)
      echo ", \"net\": {\"programs\": [$(seq -f '{"path": "/srv/objects/%06g", "status": 1},' 1 "$2" | sed '$ s/,$//')]}"
      ;;
    file | proc) print_protected "$@" ;;
    kmod) echo ", \"kmod\": {\"modules\": [$(print_names "$2" module_%06g)]}" ;;
  esac
  echo '}'
}

# print_protected MODULE COUNT: protected objects, each with an exception.
print_protected() {
  local objects=paths exceptions=path_exceptions
  if [[ $1 == proc ]]; then
    objects=programs exceptions=exceptions
  fi
  echo ", \"$1\": {\"$objects\": [$(print_names "$2" /srv/objects/%06g)], \"$exceptions\": ["
  seq -f '{"path": "/srv/objects/%06g", "exceptions": [{"kind": "file", "text": "/usr/bin/editor"}]},' 1 "$2" |
    sed '$ s/,$//'
  echo ']}'
}

# measure_sizes WHAT LIMIT: fills a row from the commands in the array commands, one for each size in the array sizes, and the
# stores that they begin with, in the array stores. LIMIT is that of the last size to the first.
measure_sizes() {
  local last=$((${#sizes[@]} - 1)) index ratio memory times=() cells=()
  if [[ -s $data ]]; then
    printf '\n\n' >>"$data"
  fi
  echo "\"$1\"" >>"$data"
  for index in "${!sizes[@]}"; do
    prepare=(--prepare "orvex_local load ${stores[index]}")
    measure "$rounds" "${commands[index]}"
    times+=("$(print_time "${commands[index]}")")
    cells+=("${sizes[index]}: $(divide "${times[index]}" 1 1) ms")
    echo "${sizes[index]} ${times[index]}" >>"$data"
  done
  ratio=$(divide "${times[last]}" "${times[0]}" 1)
  orvex_local load "${stores[0]}" >"$scratch/log"
  memory=$(print_memory "${commands[0]}")
  orvex_local load "${stores[last]}" >"$scratch/log"
  memory=$(divide $(($(print_memory "${commands[last]}") - memory)) $((sizes[last] - sizes[0])))
  print_row "\`$1\`" "$(printf '%s, ' "${cells[@]}" | sed 's/, $//')" \
    "$((sizes[last] / sizes[0])) times as many" "$ratio" "$2" "$memory"
  check "$1, growth" "$ratio" "$2"
  check "$1, KiB of memory for each object" "$memory" "$([[ $1 == net* ]] && echo "$record_limit" || echo "$memory_limit")"
}

# limit_linear: the limit for what does the same for each object.
limit_linear() {
  awk -v most="${sizes[-1]}" -v least="${sizes[0]}" -v more="$linear_limit" 'BEGIN { print most / least * more }'
}

# limit_quadratic: the limit for what looks at all objects for each of them.
limit_quadratic() {
  awk -v most="${sizes[-1]}" -v least="${sizes[0]}" -v more="$linear_limit" \
    'BEGIN { print (most / least) ^ 2 * more }'
}

# measure_listing MODULE SIZE...
measure_listing() {
  local size
  sizes=("${@:2}")
  commands=()
  stores=()
  for size in "${sizes[@]}"; do
    print_document "$1" "$size" >"$scratch/$1-$size.json"
    stores+=("$scratch/$1-$size.json")
    commands+=("orvex_policy $1 -L")
  done
  rounds=5
  measure_sizes "$1 -L" "$(limit_linear)"
}

# measure_bulk WHAT LIMIT COMMAND...: the commands, one for each of the sizes, begin with an empty store, or with what those in
# the array before have done.
measure_bulk() {
  commands=("${@:3}")
  rounds=3
  stores=()
  local index
  for index in "${!sizes[@]}"; do
    print_document none 0 >"$scratch/store-$index.json"
    if [[ ${#before[@]} -gt 0 ]]; then
      orvex_local load "$scratch/store-$index.json" >"$scratch/log"
      run_words "${before[index]}"
      orvex_local show --json >"$scratch/store-$index.json"
    fi
    stores+=("$scratch/store-$index.json")
  done
  measure_sizes "$1" "$2"
}

# run_words COMMAND
run_words() {
  local words
  read -ra words <<<"$1"
  "${words[@]}" >"$scratch/log"
}

measure_packages() {
  local sizes=(1000 5000 50000)
  before=()
  measure_bulk 'exec -A -P' "$(limit_linear)" 'orvex_policy exec -A -P orvex-many-'{1000,5000,50000}
  before=('orvex_policy exec -A -P orvex-many-'{1000,5000,50000})
  measure_bulk 'exec -D -P' "$(limit_linear)" 'orvex_policy exec -D -P orvex-many-'{1000,5000,50000}
}

measure_directories() {
  local sizes=(1000 10000 50000)
  before=()
  measure_bulk 'exec -A -d' "$(limit_linear)" "orvex_policy exec -A -d $many/50000/"{0/0,0,}
  before=("orvex_policy exec -A -d $many/50000/"{0/0,0,})
  measure_bulk 'exec -D -d' "$(limit_linear)" "orvex_policy exec -D -d $many/50000/"{0/0,0,}
}

# print_list_command OPTIONS COUNT: a command with so many of the files in the current directory. The list is one argument,
# of 128 KiB at most.
print_list_command() {
  echo "orvex_policy $1 $(seq -s : -f s%05g 1 "$2")"
}

# measure_lists LIMIT MODULE LETTER: the command of the module with a list of files, in the sizes. Deletions begin with what
# additions did.
measure_lists() {
  local size
  before=()
  commands=()
  for size in "${sizes[@]}"; do
    commands+=("$(print_list_command "$2 $3 -f" "$size")")
    if [[ $3 == -D ]]; then
      before+=("$(print_list_command "$2 -A -f" "$size")")
    fi
  done
  measure_bulk "$2 $3 -f" "$1" "${commands[@]}"
}

measure_all_lists() {
  local sizes=(1000 5000 10000) module name
  mkdir "$scratch/objects"
  cd "$scratch/objects"
  for name in $(seq -f s%05g 1 10000); do
    echo '#!/bin/sh' >"$name"
  done
  for module in exec file proc; do
    measure_lists "$(limit_linear)" "$module" -A
  done
  measure_lists "$(limit_linear)" exec -D
  # At each name they ask the service library for the whole list: nothing may be kept from one question to the next.
  sizes=(500 1000 2000)
  measure_lists "$(limit_quadratic)" file -D
  measure_lists "$(limit_quadratic)" proc -D
  measure_share file -D
}

# measure_share MODULE LETTER: which part of the last command's instructions is not the program's.
measure_share() {
  orvex_local load "${stores[-1]}" >"$scratch/log"
  read -ra words <<<"${commands[-1]}"
  valgrind --tool=callgrind --callgrind-out-file="$scratch/calls" "${words[@]}" >"$scratch/log" 2>&1
  echo
  print_head "Instructions of \`$1 $2 -f\` with ${sizes[-1]} names" 'Share'
  callgrind_annotate --threshold=100 "$scratch/calls" | awk '
    match($0, /\[[^]]*\]/) {
      object = substr($0, RSTART + 1, RLENGTH - 2)
      gsub(/.*\/|\.so.*/, "", object)
      gsub(/,/, "", $1)
      counts[object] += $1
      total += $1
    }
    END {
      for (object in counts) {
        printf "%.0f %s\n", counts[object] * 100 / total, object
      }
    }' | sort -rn | awk '$1 >= 1 { printf "| `%s` | %d %% |\n", $2, $1 }'
}

answer_help "$@"
[[ $# -eq 2 && -d $1 ]] || refuse_call
[[ $1 != *[[:space:]]* ]] || fail "blanks in the name of the directory: $1"
many=$1
: >"$2"
data=$(realpath "$2")
make_scratch
print_head 'Command' 'Objects and time' 'From the least to the most' 'Growth' 'Limit' 'KiB for each object'
measure_listing exec 1000 10000 50000
measure_listing net 1000 10000 50000
measure_listing file 1000 10000 20000
measure_listing proc 1000 10000 20000
measure_listing kmod 1000 10000 50000
measure_packages
measure_directories
measure_all_lists
exit "$exit_value"
