#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what commands cost and how that grows, as ratios of one run, and prints tables. Ends with a failure where a figure
# is above its limit.
#
# usage: scripts/bench.sh [PICTURE]
#
#   PICTURE   where the growth curves are drawn, as SVG; build/bench/growth.svg without it
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/playground.bash

# measure WHAT SCRIPT ARGUMENT...: runs one of the measurements in bench, as root and on a fresh store.
measure() {
  printf '\n## %s\n\n' "$1"
  rm -rf "$ORVEX_LOCAL_STATE"
  mkdir "$ORVEX_LOCAL_STATE"
  run_as 0 orvex_policy enable >"$scratch/log"
  run_as 0 orvex_local restart >"$scratch/log"
  run_as 0 "${@:2}" || exit_value=1
}

answer_help "$@"
[[ $# -le 1 && ${1-} != -* ]] || refuse_argument "$1"
check_users
picture=$(realpath -m "${1:-build/bench/growth.svg}")
scripts/bootstrap.sh --all
announce 'building'
cmake --preset release
cmake --build --preset release --target \
  orvex_policy orvex_local orvex_state call_cost in_one_piece micro_benchmarks one_line owner_query_loop package_walk peak_memory

PATH="$PWD/build/release/bin:$PATH"
make_scratch
announce 'building packages, some of them of many files'
tests/packages/make_packages.sh "$scratch/packages"
tests/packages/make_packages.sh "$scratch/many" bench/specs
tests/packages/make_packages.sh "$scratch/names" bench/completion_specs
export ORVEX_LOCAL_STATE="$scratch/state"

exit_value=0
HOME=$scratch/packages/home measure 'The start' bench/start.sh "$scratch/packages"
HOME=$scratch/many/home measure 'Execution control of files' bench/exec.sh "$scratch/many/root/orvex-many"
HOME=$scratch/many/home measure 'Growth' bench/growth.sh "$scratch/many/root/orvex-many" "$scratch/growth"
measure 'Loops' bench/loops.sh
mkdir -m 755 "$scratch/objects"
measure 'The document of a host' bench/state.sh "$scratch/objects"
measure 'Completion' bench/completion.sh build/release/completion "$scratch/names/home"
mkdir -m 755 "$scratch/fleet"
measure 'A fleet' bench/fleet.sh "$scratch/fleet"
mkdir -p "$(dirname "$picture")"
gnuplot -e "data='$scratch/growth'; picture='$picture'" bench/growth.gnuplot
announce "the growth curves are drawn in $picture"
exit "$exit_value"
