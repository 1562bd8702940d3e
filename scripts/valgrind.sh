#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Plays the sessions of tests/cli with every run of orvex_policy and orvex_local under valgrind, and ends with a failure where
# one of them used memory that is not its own, lost some, or left a descriptor open.
#
# usage: scripts/valgrind.sh [SESSION...]
#
#   SESSION   a file of tests/cli, such as kmod; all where none is named, which takes long
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/test_programs.bash

# Not the runs of the program, but its file, its build, its libraries, its environment or its peak of memory are their matter;
# and who is killed has no end.
passed_over=' bare_build hardening include_rule linking local_run local_stress memory on_demand surroundings '

answer_help "$@"
sessions=()
for name; do
  [[ -e tests/cli/$name.bats ]] || refuse_argument "$name"
  sessions+=("$name")
done
if [[ $# -eq 0 ]]; then
  for file in tests/cli/*.bats; do
    name=$(basename "$file" .bats)
    [[ $passed_over == *" $name "* ]] || sessions+=("$name")
  done
fi

# make_program NAME: the program as the sessions find it. Valgrind finds it by its name alone, which is what it then takes
# itself for in its complaints.
make_program() {
  cat >"$scratch/bin/$1" <<END
#!/bin/sh
PATH=$scratch/real/bin:\$PATH exec valgrind --quiet --vgdb=no --error-exitcode=99 --leak-check=full --show-leak-kinds=definite \
  --errors-for-leak-kinds=definite --track-fds=yes --suppressions=$scratch/valgrind.supp \
  --log-file=$scratch/logs/%p-%n.log $1 "\$@"
END
  chmod 755 "$scratch/bin/$1"
}

# play SESSION: its tests, of which those that fail are told.
play() {
  local start=$SECONDS exit_value=0
  bats --tap "tests/cli/$1.bats" >"$scratch/$1.tap" 2>&1 || exit_value=1
  printf '%-20s %3d tests, %3d s\n' "$1" "$(grep -c '^ok ' "$scratch/$1.tap")" $((SECONDS - start))
  grep -A 20 '^not ok ' "$scratch/$1.tap" || true
  return "$exit_value"
}

# print_complaints: what valgrind says of the runs, but for descriptors that the session has given, for the store of a run that
# only read, which leaves it to the end of the process, for those that GIO keeps as long as it lives to watch files, and, in the
# child that asks for an owner, for the directory that its parent walks through and for the database of packages, where rpm
# keeps it until the child ends, at once.
print_complaints() {
  awk '
    FNR == 1 { skipped = 0; opened = "" }
    /FILE DESCRIPTORS: |^==[0-9]+== *$/ { skipped = 0; next }
    /Open (file descriptor|AF_)/ { opened = $0; next }
    # A name may go over several lines.
    opened != "" && !/ at 0x|<inherited from parent>/ { opened = opened $0; next }
    opened != "" {
      skipped = /<inherited from parent>|: (eventfd|inotify_init1) \(/ || opened ~ /\/orvex\.db(-wal|-shm)?$/ ||
        (FILENAME ~ /-2\.log$/ && (/ openat \(/ || opened ~ /\/rpmdb\.sqlite(-wal|-shm)?$/))
      if (!skipped) print FILENAME ": " opened
      opened = ""
    }
    !skipped { print FILENAME ": " $0 }' "$scratch"/logs/*.log
}

cmake --preset test >/dev/null
cmake --build --preset test --target "${session_programs[@]}"
make_scratch
mkdir "$scratch"/{bin,real,logs}
# Everybody in a session writes what valgrind says of him.
chmod 1777 "$scratch/logs"
cp -R build/test/bin build/test/lib "$scratch/real"
cp tests/cli/support/valgrind.supp "$scratch"
ln -s real/lib "$scratch/lib"
ln -s ../real/bin/show_net ../real/bin/switch_module "$scratch/bin"
make_program orvex_policy
make_program orvex_local

export scratch ORVEX_BIN_DIR=$scratch/bin ORVEX_BUILD_DIR=$PWD/build/test ORVEX_BUILD_TYPE=Release
export ORVEX_PACKAGES_DIR=$PWD/build/test/tests/packages/built ORVEX_SOURCE_DIR=$PWD
export -f play
announce 'playing the sessions'
exit_value=0
# shellcheck disable=SC2016
printf '%s\n' "${sessions[@]}" | xargs -I {} -P "$(nproc)" bash -c 'play "$1"' bash {} || exit_value=1
complaints=$(print_complaints)
printf '%s\n' "${complaints:0:20000}"
printf '%d runs under valgrind, %d lines of complaint\n' \
  "$(find "$scratch/logs" -name '*.log' | wc -l)" "$(grep -c . <<<"$complaints" || true)"
[[ $exit_value -eq 0 && -z $complaints ]]
