#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what a person waits for after the tabulator, in each shell that is installed, on the packages of
# bench/completion_specs. Ends with a failure where a figure is above its limit. Called by scripts/bench.sh.
#
# usage: bench/completion.sh DIR HOME
#
# DIR holds the completions, as a build leaves them. HOME leads rpm to the packages.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../scripts/lib/script.bash"

word_limit_ms=20
package_limit_ms=100

exit_value=0

# report TEXT LIMIT KEYS RESULT: how long it takes until KEYS have become RESULT.
report() {
  local milliseconds
  milliseconds=$(env -i "HOME=$scratch" "PATH=$scratch/bin:/usr/bin:/bin" TERM=xterm LC_ALL=C.UTF-8 \
    "ORVEX_COMPLETION_DIR=$completions" \
    "$here/../tests/completion/support/terminal.py" "$shell" times "$3" "$4")
  printf 'completion in %s, %s: %s ms (limit %s)\n' "$shell" "$1" "$milliseconds" "$2"
  awk -v value="$milliseconds" -v limit="$2" 'BEGIN { exit value > limit }' || exit_value=1
}

answer_help "$@"
[[ $# -eq 2 && -d $1 && -e $2/.rpmmacros ]] || refuse_call
completions=$(cd "$1" && pwd)
make_scratch
cp "$2/.rpmmacros" "$scratch"
# fish completes only what can be run.
mkdir "$scratch/bin"
ln -s /bin/true "$scratch/bin/orvex_policy"
for shell in bash zsh fish; do
  if ! command -v "$shell" >/dev/null; then
    printf 'completion in %s: not measured, as it is not installed\n' "$shell"
    continue
  fi
  report 'a module' "$word_limit_ms" 'orvex_policy ex' 'orvex_policy exec'
  report 'an option' "$word_limit_ms" 'orvex_policy exec -L --ta' 'orvex_policy exec -L --tampered'
  report 'one of 600 packages' "$package_limit_ms" \
    'orvex_policy exec -A -P wps:orvex-s' 'orvex_policy exec -A -P wps:orvex-server'
done
exit "$exit_value"
