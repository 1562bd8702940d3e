#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Opens a shell in which everything can be tried by hand, as root: the program, the stand-in with a state of its own, and
# packages of which the machine's database knows nothing. All of it is gone when the shell ends.
#
# usage: scripts/play.sh [--programs DIR] [PLACE]
#
#   --programs DIR   play with the programs in DIR instead of building them
#   PLACE            the directory to play in, which must not exist; /tmp/demo if none is named
#
# In the shell, "orvex_local run --uid 600 COMMAND..." runs a command as the security administrator.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/playground.bash

# take_place DIR: makes the directory, which goes with the script.
take_place() {
  mkdir -m 755 "$1" || fail "choose another place: scripts/play.sh PLACE"
  scratch=$(cd "$1" && pwd)
  remove_scratch_at_end
}

# open_shell: a shell for a person, or one that reads what stands on standard input.
open_shell() {
  local shell=(bash -s)
  become 0
  if [[ -t 0 ]]; then
    shell=(bash --noprofile --rcfile "$scratch/shell")
  fi
  "${user_prefix[@]}" "${shell[@]}" || true
}

read_arguments "$@"
[[ ${#operands[@]} -le 1 ]] || refuse_argument "${operands[1]}"
check_users
build_programs
take_place "${operands[0]-/tmp/demo}"
prepare_playground "$scratch"
printf '%s\n' "PS1='# '" 'unset HISTFILE' >"$scratch/shell"
cd "$scratch"
make_kernel_module watchdog.ko watchdog
open_shell
