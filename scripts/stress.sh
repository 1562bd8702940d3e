#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Puts the stand-in's store under load and faults for some minutes, and tells what was counted: makers and writers are
# killed, many write at once, a small disk runs full and databases are damaged. Ends with a failure at the first loss, crash
# or remnant.
#
# usage: scripts/stress.sh [--programs DIR]
#
#   --programs DIR   take the programs in DIR instead of building them
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/playground.bash

read_arguments "$@"
[[ ${#operands[@]} -eq 0 ]] || refuse_argument "${operands[0]}"
check_users
build_programs
make_scratch
PATH=$programs:$PATH

# play FUNCTION ARGUMENT...
play() {
  "${user_prefix[@]}" bash scripts/lib/stress.bash "$scratch" "$@"
}

become 0
play kill_makers 600
play kill_writers 2000
play write_at_once 8 100
play damage_stores 200
user_prefix=(unshare --map-root-user --mount)
if "${user_prefix[@]}" true 2>/dev/null; then
  play fill_disks 5
else
  announce 'no full disk, as this machine allows no mounts'
fi
