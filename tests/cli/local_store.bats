#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Stores that cannot be used: one line says so, and the program goes on with what the library answers.

load support/session.bash

setup() {
  start_session
  state="$BATS_TEST_TMPDIR/state"
}

# expect_refusal REASON: the status report is one of a library that fails, with one line of the reason.
expect_refusal() {
  as "${2:-0}" orvex_policy status
  expect_with_errors 0 "local_service: $1"$'\n' < <(print_unknown_status)
  as "${2:-0}" orvex_local restart
  expect_with_errors 1 "orvex_local: $1"$'\n' </dev/null
}

print_unknown_status() {
  local module
  for module in exec 'exec script' net kmod file proc 3adm box; do
    printf '    %-12s: unknown\n' "$module"
  done
}

@test "what is no store is told, with its path" {
  head -c 5000 /dev/zero | tr '\0' x >"$state/orvex.db"
  expect_refusal "$state/orvex.db: file is not a database"
  rm "$state/orvex.db"
  mkdir "$state/orvex.db"
  expect_refusal "$state/orvex.db: not a file"
  rm -r "$state"
  touch "$state"
  expect_refusal "$state: Not a directory"
}

@test "a place that cannot be trusted is told" {
  chmod a+w "$state"
  expect_refusal "$state: not trusted, as everybody may write to it"
  rmdir "$state"
  session_environment+=(ORVEX_LOCAL_STATE=state)
  expect_refusal 'ORVEX_LOCAL_STATE is no absolute path: state'
}

@test "a store that may not be searched, read or made is told" {
  do_silently 0 orvex_local scene off
  # Of an ordinary user's files user 600 is the owner here, so that the modes alone have to keep him out.
  [[ $EUID -ne 0 ]] || chown -R 0 "$state"
  chmod 0 "$state"
  as 0 orvex_local run --uid 600 orvex_policy enable
  expect_with_errors 255 "local_service: $state/orvex.db: Permission denied"$'\n' <<'END'
当前用户无权限执行, 请切换root用户执行!
END
  chmod 755 "$state"
  chmod 0 "$state/orvex.db"
  as 0 orvex_local run --uid 600 orvex_local restart
  expect_with_errors 1 "orvex_local: $state/orvex.db: Permission denied"$'\n' </dev/null
  rm -f "$state"/orvex.db*
  chmod 555 "$state"
  as 0 orvex_local run --uid 600 orvex_local restart
  expect_with_errors 1 "orvex_local: $state: the store cannot be made: Permission denied"$'\n' </dev/null
}

# shellcheck disable=SC2016
@test "a disk without room for a store keeps nothing of the attempt" {
  unshare --map-root-user --mount true 2>/dev/null || skip 'this machine allows no mounts'
  as 0 unshare --map-root-user --mount bash -ec '
    mount -t tmpfs -o size=40k,mode=755 state "$ORVEX_LOCAL_STATE"
    orvex_local scene on || true
    ls -A "$ORVEX_LOCAL_STATE"'
  expect_with_errors 0 "orvex_local: $state/orvex.db: cannot be made: No space left on device"$'\n' </dev/null
}

@test "a place that is no place, or that nothing tells, is told" {
  session_environment+=(ORVEX_LOCAL_STATE=/proc/nowhere)
  expect_refusal '/proc/nowhere: cannot be made: No such file or directory'
  session_environment+=(ORVEX_LOCAL_STATE= HOME=)
  expect_refusal 'no place for the store: neither ORVEX_LOCAL_STATE nor a home directory is known' 4242424
}
