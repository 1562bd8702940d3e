#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what commands cost that do little: next to all of that is their start. Prints tables, and ends with a failure
# where a figure is above its limit. Called by scripts/bench.sh.
#
# usage: bench/start.sh PACKAGES
#
# PACKAGES holds the test packages (tests/packages/make_packages.sh). The programs of the build have to be in PATH.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/scripts/lib/script.bash"
source "$root/scripts/lib/session.bash"
source "$root/bench/lib/measure.bash"
export ORVEX_SOURCE_DIR=$root
source "$root/tests/cli/support/service_functions.bash"

# Instructions, which no noise touches. What is above 1 is the opening of the store and the names that the loader looks up.
status_limit=1.15
one_piece_limit=0.70
package_limit=0.88
bare_service_limit=1
call_limit=1.5

# print_instructions COMMAND: how many instructions it executes, children not counted, on a store like that of the times.
print_instructions() {
  local words
  read -ra words <<<"$1"
  orvex_local load "$scratch/on.json" >"$scratch/log"
  valgrind --tool=callgrind --callgrind-out-file=/dev/null "${words[@]}" 2>&1 >/dev/null |
    sed -n 's/.*Collected : //p'
}

# print_objects COMMAND: how many shared objects it loads, sooner or later.
print_objects() {
  local words
  read -ra words <<<"$1"
  LD_DEBUG=files "${words[@]}" 2>&1 >/dev/null | sed -n 's/.*calling init: //p' | sort -u | wc -l
}

in_one_piece() {
  echo "in_one_piece ${1#orvex_policy }"
}

# measure_commands: a row for each of the commands.
measure_commands() {
  local command whole
  print_head 'Command' 'ms' 'to a bare program' "to \`rpm --version\`" 'to the program in one piece' 'objects' \
    'million instructions' 'to the program in one piece'
  for command in "${commands[@]}"; do
    whole=$(in_one_piece "$command")
    measure 5 "$command" "$whole" one_line 'rpm --version'
    instructions=$(print_instructions "$command")
    print_row "\`${command//$packages\/root\//}\`" "$(divide "$(print_time "$command")" 1)" \
      "$(print_ratio "$command" one_line)" "$(print_ratio "$command" 'rpm --version')" \
      "$(print_ratio "$command" "$whole")" "$(print_objects "$command")" \
      "$(divide "$instructions" 1000000 1)" "$(divide "$instructions" "$(print_instructions "$whole")")"
    check_command "$command" "$whole"
  done
}

# check_command COMMAND WHOLE: what a single command has to keep.
check_command() {
  case $1 in
    *' status')
      check 'status, instructions, to the program in one piece' \
        "$(divide "$instructions" "$(print_instructions "$2")" 4)" "$one_piece_limit"
      check 'status, instructions, to a bare program' \
        "$(divide "$instructions" "$(print_instructions one_line)" 4)" "$status_limit"
      ;;
    *' net -A -P orvex-demo-tools' | *' exec -L -f '*)
      check "$1, to the program in one piece" "$(print_ratio "$1" "$2")" "$package_limit"
      ;;
  esac
}

measure_others() {
  local others=(one_line 'rpm --version' 'rpm -q orvex-player' 'kmod --version' 'nft --version') other
  print_head 'Another program' 'ms' "\`orvex_policy status\` to it" 'objects' 'million instructions'
  measure 5 'orvex_policy status' "${others[@]}"
  for other in "${others[@]}"; do
    print_row "\`$other\`" "$(divide "$(print_time "$other")" 1)" "$(print_ratio 'orvex_policy status' "$other")" \
      "$(print_objects "$other")" "$(divide "$(print_instructions "$other")" 1000000 1)"
  done
}

# make_bare_service DIR: the eight libraries again, each function of which does nothing but return 0.
make_bare_service() {
  local library
  mkdir "$1"
  print_declared_functions | sed 's/.*/long &(void) { return 0; }/' |
    "${CXX:-c++}" -shared -fPIC -nostdlib -x c -o "$1/functions" -
  for library in "$root"/build/release/lib/liborvex*.so.0 "$root/build/release/lib/libvemulabelmgr.so"; do
    print_declared_functions | sed 's/.*/long &(void) { return 0; }/' |
      "${CXX:-c++}" -shared -fPIC -nostdlib -Wl,-soname,"${library##*/}" -x c -o "$1/${library##*/}" -
  done
  rm "$1/functions"
}

# What the program itself costs: with service libraries that depend on nothing.
measure_without_stand_in() {
  local bare="env LD_LIBRARY_PATH=$scratch/bare orvex_policy status"
  make_bare_service "$scratch/bare"
  measure 5 "$bare" 'env rpm --version'
  report "\`status\` with service libraries that depend on nothing, to \`rpm --version\`" \
    "$(print_ratio "$bare" 'env rpm --version')" "$bare_service_limit"
}

# Each service function of the stand-in asks whether it is traced and whether it is to fail.
measure_call() {
  local ratio nanoseconds
  read -r ratio nanoseconds < <(call_cost)
  report "a call of the stand-in, neither traced nor to fail ($nanoseconds ns more), to its system call" \
    "$ratio" "$call_limit"
}

answer_help "$@"
[[ $# -eq 1 && -d $1 ]] || refuse_call
packages=$(cd "$1" && pwd)
[[ $packages != *[[:space:]]* ]] || fail "blanks in the name of the directory: $packages"
make_scratch
player=$packages/root/orvex-player/bin/player

orvex_policy enable >/dev/null
orvex_local restart >/dev/null
for module in exec net file proc kmod; do
  orvex_policy "$module" on
done
orvex_local show --json >"$scratch/on.json"
prepare=(--warmup 1 --prepare "orvex_local load $scratch/on.json")
runs_in_a_row=20
commands=(
  'orvex_policy --help'
  'orvex_policy status'
  'orvex_policy exec -L'
  'orvex_policy net -L'
  'orvex_policy file -L'
  'orvex_policy proc -L'
  'orvex_policy kmod -L'
  'orvex_policy kmod -A -n module'
  "orvex_policy file -A -f $player"
  "orvex_policy exec -A -f $player"
  "orvex_policy exec -L -f $player"
  'orvex_policy exec -A -P orvex-player'
  'orvex_policy net -A -P orvex-demo-tools'
  'orvex_policy net -A -P orvex-player'
)
measure_commands
echo
measure_others
echo
print_head 'What' 'Ratio' 'Limit'
measure_without_stand_in
measure_call
exit "$exit_value"
