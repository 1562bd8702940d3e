#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Asks the tests whether they notice changes. Makes single-point changes of the sources, one after the other, in a copy of
# the tree: a comparison, a constant, a piece of logic, a statement dropped or swapped with the next, a byte of a text, an
# argument. After each it builds and runs the cheapest tests that can tell, then the sessions that touch the file. Prints the
# changes that no test noticed.
#
# usage: scripts/mutate.sh [--in DIR] [--count N] [--minutes N] [--seed N] [FILE:LINE[:NUMBER]...]
#
#   --in DIR      where the changes are made: src or local_service; both where nothing is said
#   --count N     how many that build, 100 where nothing is said
#   --minutes N   the time after which no further one is begun, 60 where nothing is said
#   --seed N      the seed of the choice, 1 where nothing is said
#   FILE:LINE[:NUMBER]   the changes of this line, or this one of them, and no others
#
# The tests run with a time limit, in namespaces of their own in which only the copy can be written and only their own
# processes be ended. That needs root, or user namespaces.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/test_programs.bash

answer_help "$@"
roots=(src local_service)
count=100
minutes=60
seed=1
listed=()
while [[ $# -gt 0 ]]; do
  case $1 in
    --in | --count | --minutes | --seed)
      [[ $# -ge 2 ]] || refuse_argument "$1"
      case $1 in
        --in) roots=("$2") ;;
        --count) count=$2 ;;
        --minutes) minutes=$2 ;;
        --seed) seed=$2 ;;
      esac
      shift 2
      ;;
    *:[0-9]*)
      listed+=("$1")
      shift
      ;;
    *) refuse_argument "$1" ;;
  esac
done

# list_changes: all changes of the roots, those that were listed, or all in the order of the seed.
list_changes() {
  git ls-files "${roots[@]/%//*.cpp}" "${roots[@]/%//*.h}" | LC_ALL=C xargs awk -f scripts/lib/mutants.awk |
    if [[ ${#listed[@]} -gt 0 ]]; then
      grep -E "^($(IFS='|' && echo "${listed[*]}"))[:[:space:]]"
    else
      LC_ALL=C awk -v seed="$seed" 'BEGIN { srand(seed) } { printf "%.9f\t%s\n", rand(), $0 }' | LC_ALL=C sort | cut -f2-
    fi
}

# build TARGET...
build() {
  cmake --build "$tree/build/test" --target "$@" >"$scratch/build.log" 2>&1
}

# run_apart SECONDS COMMAND...: the command can write nothing but the copy and a /tmp of its own, and sees no other processes.
run_apart() {
  # shellcheck disable=SC2016
  "${apart[@]}" bash -c '
    mount --bind "$1" /mnt && mount -o remount,bind,ro / && mount -t tmpfs tmpfs /tmp && mkdir -p "$1" &&
      mount --bind /mnt "$1" && cd "$1/tree" && exec timeout -k 5 "$2" "${@:3}"
  ' bash "$scratch" "$@" >"$scratch/test.log" 2>&1 </dev/null
}

# pass PROGRAM: the test program ends with its own word that all passed.
pass() {
  run_apart 120 "build/test/bin/$1" --gtest_brief=1 --gtest_fail_fast && grep -q '^\[  PASSED  \]' "$scratch/test.log"
}

# choose_sessions FILE: the sessions that touch the file, as a regular expression over their names.
choose_sessions() {
  case $1 in
    local_service/*) echo 'local|concurrency|on_demand|proc_processes' ;;
    src/modules/file/* | src/modules/proc/*) echo 'file|proc|protection' ;;
    src/modules/*) basename "$(dirname "$1")" ;;
    src/front/*) echo 'global|status|locale' ;;
    src/on_demand/* | src/framework/on_demand*) echo 'on_demand|[a-z]*_packages' ;;
    *) echo 'global|module|status|rights|secret|box|kmod|userid' ;;
  esac
}

# pass_sessions REGEX: the sessions whose name begins so.
pass_sessions() {
  build "${session_programs[@]}" || return 2
  run_apart 900 ctest --test-dir build/test --no-tests=error --stop-on-failure -j "$(nproc)" -R "^cli\.($1)[a-z_]*:"
}

# pass_tests FILE: the tests that can tell, cheapest first, until one fails. What does not build is told by 2.
pass_tests() {
  local program programs=(unit_tests shared_services_test)
  if [[ $1 == local_service/* ]]; then
    programs=(local_service_test)
  fi
  told_by=programs
  for program in "${programs[@]}"; do
    build "$program" || return 2
    pass "$program" || return 1
  done
  told_by=sessions
  pass_sessions "$(choose_sessions "$1")"
}

# check_sessions FILE: those that touch the file pass without any change. Most changes are noticed before a session is played,
# so each is checked when it is the first time that one notices something.
check_sessions() {
  local sessions
  sessions=$(choose_sessions "$1")
  if [[ -z ${checked[$sessions]-} ]]; then
    pass_sessions "$sessions" || fail "without any change: $(tail -n 20 "$scratch/test.log")"
    checked[$sessions]=yes
  fi
}

# apply FILE LINE TEXT: the line and the next ones become the text, which has as many lines.
apply() {
  LC_ALL=C awk -v at="$2" -v text="${3//\\/\\\\}" '
    NR == at { skip = gsub("\v", "\n", text); print text; next }
    skip > 0 { skip--; next }
    { print }' "$1" >"$tree/$1"
}

make_scratch
tree=$scratch/tree
apart=(unshare --mount --pid --fork --kill-child --mount-proc)
if [[ $EUID -ne 0 ]]; then
  apart+=(--map-root-user)
fi
git ls-files -z | xargs -0 cp --parents -t "$(mkdir "$tree" && echo "$tree")"

announce 'building the copy'
cmake -S "$tree" --preset test >"$scratch/build.log"
build unit_tests shared_services_test local_service_test "${session_programs[@]}" ||
  fail "the copy does not build: $(tail -n 5 "$scratch/build.log")"
announce 'running the tests without any change'
for program in unit_tests shared_services_test local_service_test; do
  pass "$program" || fail "$program: $(tail -n 20 "$scratch/test.log")"
done

announce "making changes, seed $seed"
declare -A checked=()
noticed=0 survived=0 unbuilt=0
while IFS=$'\t' read -r place kind text; do
  if [[ $((noticed + survived)) -ge $count || $SECONDS -ge $((minutes * 60)) ]]; then
    break
  fi
  IFS=: read -r file line _ <<<"$place"
  apply "$file" "$line" "$text"
  result=0
  pass_tests "$file" || result=$?
  if [[ $result -eq 0 ]]; then
    printf '%s: %s survived\n' "$place" "$kind"
    diff "$file" "$tree/$file" | grep '^[<>]' || true
  fi
  cp "$file" "$tree/$file"
  case $result in
    0) survived=$((survived + 1)) ;;
    2) unbuilt=$((unbuilt + 1)) ;;
    *)
      noticed=$((noticed + 1))
      if [[ $told_by == sessions ]]; then
        check_sessions "$file"
      fi
      ;;
  esac
done < <(list_changes)
printf '%d changes: %d noticed, %d survived. %d more did not build. %d minutes\n' \
  $((noticed + survived)) "$noticed" "$survived" "$unbuilt" $((SECONDS / 60))
