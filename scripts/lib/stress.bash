# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Load and faults for the stand-in's store. Each function plays one of them as often as it is told to, in a state
# directory of its own, prints one line with what it has counted, and fails at the first loss, crash or remnant. The
# programs are found in the PATH, and run as root.
#
# usage: bash stress.bash PLACE FUNCTION ARGUMENT...
set -euo pipefail
place=$1
exec {silence}<> <(:)

# fault TEXT: the end of a run that has found something.
fault() {
  printf 'stress: %s\n' "$*" >&2
  exit 1
}

# begin_state NAME: an empty state directory.
begin_state() {
  export ORVEX_LOCAL_STATE="$place/$1"
  rm -rf "$ORVEX_LOCAL_STATE"
  mkdir "$ORVEX_LOCAL_STATE"
}

# begin_framework NAME: a state in which kernel modules can be protected.
begin_framework() {
  begin_state "$1"
  orvex_policy kmod on >/dev/null
  orvex_local restart >/dev/null
}

# pass_time MICROSECONDS: waits, without a process of its own.
pass_time() {
  local fraction
  printf -v fraction '0.%06d' "$1"
  read -rt "$fraction" -u "$silence" || true
}

# kill_after MICROSECONDS COMMAND...: runs the command and kills it then. Ends with 0 where the command was faster.
kill_after() {
  "${@:2}" >"$place/output" 2>&1 &
  pass_time "$1"
  kill -KILL "$!" 2>/dev/null || true
  # The shell would tell of each killed process.
  wait "$!" 2>/dev/null
}

# expect_only_store: the state directory holds a store and nothing else.
expect_only_store() {
  local names
  names=$(cd "$ORVEX_LOCAL_STATE" && echo .[!.]* *)
  [[ $names == '.[!.]* orvex.db orvex.db-shm orvex.db-wal' ]] || fault "left in the state directory: $names"
}

# kill_makers COUNT: kills processes that make the store; the next process finds or makes a whole one.
kill_makers() {
  local round unfinished=0 drafts=0
  for ((round = 0; round < $1; ++round)); do
    begin_state maker
    kill_after $((RANDOM % 20000)) orvex_policy status || unfinished=$((unfinished + 1))
    if compgen -G "$ORVEX_LOCAL_STATE/.new-*" >/dev/null; then
      drafts=$((drafts + 1))
    fi
    [[ $(orvex_policy status 2>&1) == 'orvex status : disable' ]] || fault "no store after kill $round of a maker"
    expect_only_store
  done
  echo "makers of a store: $1 runs, $unfinished killed before their end, $drafts drafts left and cleared"
}

# kill_writers COUNT: kills processes that add to the store; what others have added is there, and what was added by
# those that came to their end.
kill_writers() {
  local round killed=0 added=()
  begin_framework writer
  for ((round = 0; round < $1; ++round)); do
    if kill_after $((RANDOM % 30000)) orvex_policy kmod -A -n "module$round"; then
      [[ ! -s $place/output ]] || fault "a writer said: $(<"$place/output")"
      added+=("模块名称: module$round, 防卸载保护: 开")
    else
      killed=$((killed + 1))
    fi
  done
  orvex_policy kmod -L >"$place/listed"
  printf '%s\n' "${added[@]}" >"$place/added"
  ! grep -qvxFf "$place/listed" "$place/added" || fault 'what was added is not on the list'
  orvex_local show >/dev/null || fault 'the store cannot be shown'
  expect_only_store
  echo "writers: $1 runs, $killed killed before their end, $(($1 - killed)) additions, none lost"
}

# write_at_once WRITERS COUNT: processes add at the same time, each many.
write_at_once() {
  local writer number writers=()
  begin_framework crowd
  for ((writer = 0; writer < $1; ++writer)); do
    for ((number = 0; number < $2; ++number)); do
      orvex_policy kmod -A -n "w${writer}_$number"
    done >"$place/crowd$writer" 2>&1 &
    writers+=("$!")
  done
  wait "${writers[@]}"
  [[ -z $(cat "$place"/crowd[0-9]*) ]] || fault "writers said: $(cat "$place"/crowd[0-9]*)"
  [[ $(orvex_policy kmod -L | sort -u | wc -l) -eq $(($1 * $2)) ]] || fault 'an addition is lost'
  echo "writers at once: $1 with $2 additions each, none lost"
}

# fill_disk: adds to the store on a small disk until nothing more can be added, and takes all of it off again.
fill_disk() {
  local number=0 name answer
  # Names of 999 letters, so that a few fill a page.
  printf -v name '%0999d' "$number"
  while answer=$(orvex_policy kmod -A -n "$name" 2>&1) && [[ -z $answer ]]; do
    number=$((number + 1))
    printf -v name '%0999d' "$number"
  done
  [[ $number -ge 3 ]] || fault "the disk is full after $number additions"
  [[ $answer == "local_service: $ORVEX_LOCAL_STATE/orvex.db: the disk is full but for the room that is kept"* ]] ||
    fault "on a full disk: $answer"
  while [[ $number -gt 0 ]]; do
    number=$((number - 1))
    printf -v name '%0999d' "$number"
    answer=$(orvex_policy kmod -D -n "$name" 2>&1)
    [[ -z $answer ]] || fault "a full store cannot be emptied: $answer"
  done
  [[ -z $(orvex_policy kmod -L) ]] || fault 'an emptied store is not empty'
}

# fill_disks COUNT: that on a file system of 200 KiB, in a mount namespace.
fill_disks() {
  local round
  begin_state disk
  mount -t tmpfs -o size=200k,mode=755 state "$ORVEX_LOCAL_STATE"
  orvex_policy kmod on >/dev/null
  orvex_local restart >/dev/null
  for ((round = 0; round < $1; ++round)); do
    fill_disk
    orvex_local reset >/dev/null || fault 'a store on a small disk cannot be reset'
    orvex_policy kmod on >/dev/null
    orvex_local restart >/dev/null
  done
  expect_only_store
  umount "$ORVEX_LOCAL_STATE"
  echo "full disk of 200 KiB: filled and emptied $1 times"
}

# damage FILE COUNT: overwrites bytes of the file at random places.
damage() {
  local size number
  size=$(stat -c %s "$1")
  for ((number = 0; number < $2; ++number)); do
    printf '%b' "\\x$(printf %02x $((RANDOM % 256)))" |
      dd of="$1" bs=1 seek=$(((RANDOM * 32768 + RANDOM) % size)) conv=notrunc status=none
  done
}

# expect_no_crash COMMAND...: the command ends by itself, whatever it says.
expect_no_crash() {
  local exit_value=0
  timeout 60 "$@" >"$place/output" 2>&1 || exit_value=$?
  # The program's own failures: 255 is one, above 128 lie those of a signal, and 124 is for a time that is over.
  [[ $exit_value -eq 255 || $exit_value -lt 124 ]] || fault "$* ended with $exit_value on a damaged store"
}

# damage_stores COUNT: damages a database at random; nothing crashes at it, and a reset makes a good one.
damage_stores() {
  local round refused=0
  begin_framework whole
  for ((round = 0; round < 60; ++round)); do
    orvex_policy kmod -A -n "module$round"
    orvex_local label add secadm "/etc/file$round"
  done
  local whole=$ORVEX_LOCAL_STATE
  for ((round = 0; round < $1; ++round)); do
    begin_state damaged
    cp "$whole"/orvex.db* "$ORVEX_LOCAL_STATE"
    damage "$ORVEX_LOCAL_STATE/orvex.db" $((1 << RANDOM % 8))
    expect_no_crash orvex_policy status
    expect_no_crash orvex_policy kmod -L
    expect_no_crash orvex_policy kmod -A -n ext4
    expect_no_crash orvex_policy kmod -D -n module7
    expect_no_crash orvex_policy userid -L -f /etc/file3
    expect_no_crash orvex_local show --json
    orvex_local show >/dev/null 2>&1 || refused=$((refused + 1))
    orvex_local reset --force >/dev/null || fault 'a damaged store cannot be reset'
    [[ $(orvex_policy status 2>&1) == 'orvex status : disable' ]] || fault 'no good store after a reset'
  done
  echo "damaged databases: $1, of which $refused were refused as a whole, no crash"
}

"${@:2}"
