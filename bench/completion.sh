#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what a person waits for after the tabulator, in each shell that is installed, on the packages of
# bench/completion_specs. Prints a table, and ends with a failure where a figure is above its limit. Called by
# scripts/bench.sh.
#
# usage: bench/completion.sh DIR HOME
#
# DIR holds the completions, as a build leaves them. HOME leads rpm to the packages.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../scripts/lib/script.bash"
source "$here/lib/measure.bash"

word_limit_ms=20
package_limit_ms=100

# measure_keys TEXT LIMIT KEYS RESULT: how long it takes until KEYS have become RESULT.
measure_keys() {
  local milliseconds
  milliseconds=$(env -i "HOME=$scratch" "PATH=$scratch/bin:/usr/bin:/bin" TERM=xterm LC_ALL=C.UTF-8 \
    "ORVEX_COMPLETION_DIR=$completions" \
    "$here/../tests/completion/support/terminal.py" "$shell" times "$3" "$4")
  report "$shell, $1" "$milliseconds" "$2"
}

answer_help "$@"
[[ $# -eq 2 && -d $1 && -e $2/.rpmmacros ]] || refuse_call
completions=$(cd "$1" && pwd)
make_scratch
cp "$2/.rpmmacros" "$scratch"
# fish completes only what can be run.
mkdir "$scratch/bin"
ln -s /bin/true "$scratch/bin/orvex_policy"
print_head 'Completion' 'ms' 'Limit'
for shell in bash zsh fish; do
  if ! command -v "$shell" >/dev/null; then
    print_row "$shell" 'not installed' ''
    continue
  fi
  measure_keys 'a module' "$word_limit_ms" 'orvex_policy ex' 'orvex_policy exec'
  measure_keys 'an option' "$word_limit_ms" 'orvex_policy exec -L --ta' 'orvex_policy exec -L --tampered'
  measure_keys 'one of 600 packages' "$package_limit_ms" \
    'orvex_policy exec -A -P wps:orvex-s' 'orvex_policy exec -A -P wps:orvex-server'
done
exit "$exit_value"
