# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Plays the round trips of the seeds FIRST to LAST in the working directory, up to the first that goes wrong. All of them in
# one shell, as there are many.
#
# usage: bash play_seeds.bash FIRST LAST
set -u -o pipefail

# load_state SEED
load_state() {
  make_state "$1" "$PWD" orvex-demo-tools orvex-player | orvex_local load -
}

# apply FILE: applies the document, with as many restarts as that takes.
apply() {
  local exit_value
  for _ in 1 2; do
    exit_value=0
    orvex_state apply "$1" >output 2>errors || exit_value=$?
    [[ $exit_value -eq 3 ]] || return "$exit_value"
    orvex_local restart >said
  done
  return 1
}

# play_seed SEED: from nothing, and with every fourth seed from another state too.
play_seed() {
  load_state "$1" && orvex_state dump >"$1.json" || return
  orvex_local reset >said && apply "$1.json" && orvex_state dump | cmp - "$1.json" || return
  orvex_state apply "$1.json" >output && [[ ! -s output ]] || return
  (($1 % 4 == 0)) || return 0
  load_state "$(($1 + 1000000))" && apply "$1.json" && orvex_state dump | cmp - "$1.json"
}

for ((seed = $1; seed <= $2; ++seed)); do
  if ! play_seed "$seed"; then
    printf 'seed %d\n' "$seed"
    cat output errors
    exit 1
  fi
done
