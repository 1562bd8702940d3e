#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Commands on the stand-in, by orvex_local.

load support/session.bash

setup() {
  start_session
}

@test "a command runs on the libraries that orvex_local runs on" {
  libraries=${programs%/bin}/lib
  as 0 orvex_local run printenv LD_LIBRARY_PATH
  expect 0 <<<"$libraries"
  as 0 env LD_LIBRARY_PATH=/one:/two orvex_local run printenv LD_LIBRARY_PATH
  expect 0 <<<"$libraries:/one:/two"
  as 0 env LD_LIBRARY_PATH= orvex_local run printenv LD_LIBRARY_PATH
  expect 0 <<<"$libraries"
}

@test "a program that knows no place of the libraries finds them, wherever they were put" {
  mkdir -p installed/bin installed/lib
  cp "$ORVEX_BIN_DIR"/orvex_{policy,local} installed/bin
  cp -P "$ORVEX_BUILD_DIR"/lib/lib* installed/lib
  # The tool has to find its own library too, which a package would arrange.
  as 0 env "LD_LIBRARY_PATH=$PWD/installed/lib" installed/bin/orvex_local run printenv LD_LIBRARY_PATH
  expect 0 <<<"$PWD/installed/lib:$PWD/installed/lib"
  as 0 env "LD_LIBRARY_PATH=$PWD/installed/lib" installed/bin/orvex_local run ldd installed/bin/orvex_policy
  [[ $(grep -c "=> $PWD/installed/lib/" "$BATS_TEST_TMPDIR/output") -eq 8 ]]
}

@test "a state directory of its own is made where it is missing" {
  as 0 orvex_local run --state other orvex_policy enable
  expect 0 <<<'orvex开启成功, 重启后生效!'
  [[ -e other/orvex.db ]]
  as 0 orvex_local run --state other printenv ORVEX_LOCAL_STATE
  expect 0 <<<"$PWD/other"
}

# as_ordinary_user COMMAND...: runs the command as a user without rights, and keeps what it printed and its exit value.
as_ordinary_user() {
  local become=()
  if [[ $EUID -eq 0 ]]; then
    become=(setpriv --reuid 1234 --regid 1234 --clear-groups)
  fi
  "${become[@]}" unshare --user true 2>/dev/null || skip 'this machine allows an ordinary user no user namespaces'
  exit_value=0
  "${become[@]}" env -i "${session_environment[@]}" "$@" \
    >"$BATS_TEST_TMPDIR/output" 2>"$BATS_TEST_TMPDIR/errors" || exit_value=$?
}

@test "an ordinary user runs a command as root or as the security administrator" {
  for user in 0 600; do
    as_ordinary_user orvex_local run --uid "$user" id -u
    expect 0 <<<"$user"
  done
}

@test "root runs a command as root or as the security administrator, who acts on the state that root has made" {
  for user in 0 600; do
    as 0 orvex_local run --uid "$user" id -ru
    expect 0 <<<"$user"
  done
  as 0 orvex_local run --state other orvex_policy kmod on
  as 0 orvex_local run --state other orvex_local restart
  as 0 orvex_local run --state other orvex_local roles on
  as 0 orvex_local run --state other orvex_policy kmod -A -n ext4
  expect 0 <<<'当前用户无权限执行, 请切换secadm用户执行!'
  as 0 orvex_local run --state other --uid 600 orvex_policy kmod -A -n ext4
  expect_silence
}

@test "behind -- stands a command, which takes its own" {
  as 0 orvex_local run -- printf '%s\n' -a -- b
  expect 0 <<'END'
-a
--
b
END
  do_silently 0 orvex_local blacklist add -- /opt/-program
}

@test "the exit value is the command's, or tells why there is none" {
  as 0 orvex_local run sh -c 'exit 7'
  [[ $exit_value -eq 7 ]]
  as 0 orvex_local run missing
  expect_with_errors 127 'orvex_local: cannot run missing: No such file or directory
' </dev/null
  touch plain
  as 0 orvex_local run ./plain
  expect_with_errors 126 'orvex_local: cannot run ./plain: Permission denied
' </dev/null
}
