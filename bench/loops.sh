#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures the pieces of the program that have loops of their own, in nanoseconds for each piece, record or row. Prints a table,
# and ends with a failure where one grows faster than its work. Called by scripts/bench.sh.
#
# usage: bench/loops.sh
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/measure.bash"

# For each object of 50,000, to each of 1,000: more of them fit no cache.
growth_limit=3

answer_help "$@"
[[ $# -eq 0 ]] || refuse_argument "$1"
make_scratch
micro_benchmarks --benchmark_format=csv >"$scratch/loops.csv" 2>"$scratch/log"
print_head 'Loop' '1,000: ns each' '50,000: ns each' 'Ratio' 'Limit'
while IFS=, read -r name few many; do
  ratio=$(divide "$many" "$few")
  print_row "\`$name\`" "$few" "$many" "$ratio" "$growth_limit"
  check "$name" "$ratio" "$growth_limit"
done < <(sed -n 's/"//g; s/^\([a-z_]*\)\/\([0-9]*\),/\1,\2,/p' "$scratch/loops.csv" | awk -F, '
  $2 == 1000 { few = $5 / $2 }
  $2 == 50000 { printf "%s,%.1f,%.1f\n", $1, few, $5 / $2 }')
exit "$exit_value"
