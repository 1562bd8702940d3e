#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Puts the stand-in's store under load and faults for some minutes, and tells what was counted. Ends with a failure at
# the first loss, crash or remnant.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/session.bash
source scripts/lib/stress.bash

case "$#:${1-}" in
  0:) ;;
  1:-h | 1:--help)
    echo 'usage: scripts/stress.sh'
    echo "Kills makers and writers of the stand-in's store, writes with many processes, fills a small disk and damages"
    echo 'the database, and prints what it has counted. Takes some minutes.'
    exit 0
    ;;
  *)
    printf 'stress: unknown argument: %s\n' "$1" >&2
    exit 2
    ;;
esac

# Everything is played as root, and a small disk takes a mount namespace: an ordinary user has both in namespaces.
if [[ -z ${ORVEX_STRESS_PLACE-} ]]; then
  scripts/bootstrap.sh
  cmake --preset release
  cmake --build --preset release --target orvex_policy orvex_local
  place=$(mktemp -d)
  trap 'rm -rf "$place"' EXIT
  trap 'exit 130' INT TERM
  ORVEX_STRESS_PLACE=$place unshare --map-root-user --mount "$PWD/scripts/stress.sh"
  exit
fi

PATH="$PWD/build/release/bin:$PATH"
begin_stress "$ORVEX_STRESS_PLACE"

kill_makers 600
kill_writers 2000
write_at_once 8 100
fill_disks 5
damage_stores 200
