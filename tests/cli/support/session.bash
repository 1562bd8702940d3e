# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Plays sessions of the built program on the stand-in and compares the whole of what comes out. CTest names the place of
# the programs in ORVEX_BIN_DIR and the source tree in ORVEX_SOURCE_DIR.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/scripts/lib/session.bash"
load "$ORVEX_SOURCE_DIR/tests/cli/support/texts.bash"

# start_session: gives the test a home, a state and a working directory of its own, all empty, and no input. The programs
# lie in $programs, where all its users can run them.
start_session() {
  can_run_as 600 || skip 'this machine allows an ordinary user no user namespaces'
  # Other users of the session have to come by.
  chmod go+rx "$BATS_RUN_TMPDIR"
  mkdir -p "$BATS_TEST_TMPDIR"/{home,desk}
  make_state "$BATS_TEST_TMPDIR/state"
  cd "$BATS_TEST_TMPDIR/desk" || return
  exec </dev/null
  programs=$(reach_programs "$ORVEX_BIN_DIR" "$BATS_TEST_TMPDIR/programs")
  session_environment=(
    "HOME=$BATS_TEST_TMPDIR/home"
    "PATH=$programs:/usr/bin:/bin"
    'LC_ALL=C.UTF-8'
    "ORVEX_LOCAL_STATE=$BATS_TEST_TMPDIR/state"
  )
}

# as UID COMMAND...: runs the command in the session and keeps what it printed and its exit value.
as() {
  exit_value=0
  run_as "$1" env -i "${session_environment[@]}" "${@:2}" \
    >"$BATS_TEST_TMPDIR/output" 2>"$BATS_TEST_TMPDIR/errors" || exit_value=$?
}

# expect EXIT: the last command printed just what stands on standard input, nothing on standard error, and ended with
# this exit value.
expect() {
  expect_with_errors "$1" ''
}

# expect_with_errors EXIT ERRORS: the same, with these lines on standard error.
expect_with_errors() {
  diff -u --label expected --label output - "$BATS_TEST_TMPDIR/output"
  diff -u --label expected --label errors <(printf '%s' "$2") "$BATS_TEST_TMPDIR/errors"
  if [[ $exit_value -ne $1 ]]; then
    printf 'exit value %s instead of %s\n' "$exit_value" "$1"
    return 1
  fi
}

# expect_bad_option MODULE COMPLAINT: the last command met an option that the module does not know: the C library's own
# complaint, the module's line and its help.
expect_bad_option() {
  expect_with_errors 0 "orvex_policy: $2"$'\n' < <(
    echo '无效的参数'
    "print_$1_help"
  )
}

# expect_silence: the last command printed nothing and ended with 0.
expect_silence() {
  expect 0 </dev/null
}

# do_silently UID COMMAND...: a step on the way that has to work.
do_silently() {
  as "$@"
  expect_silence
}

# make_store: the store is there, which a user without rights could not make.
make_store() {
  as 0 orvex_policy status
  [[ $exit_value -eq 0 ]]
}

# make_long_path DIR: makes below the directory a file whose whole path, in $path, has the 4095 bytes that the system opens
# at most.
make_long_path() {
  local piece inside
  # Sixteen pieces of 254 bytes, each behind a slash, behind the directory.
  piece=/$(printf 'p%.0s' {1..254})
  path=$1$(printf "$piece%.0s" {1..16})
  path=${path:0:4094}p
  # A full path to it from elsewhere is too long.
  inside=${path#"$1"/}
  (cd "$1" && mkdir -p "${inside%/*}" && touch "$inside")
  [[ $(printf '%s' "$path" | wc -c) -eq 4095 ]]
}

# restart: the simulated restart of the machine.
restart() {
  as 0 orvex_local restart
  [[ $exit_value -eq 0 ]]
}

# start_framework_with MODULE: the framework, disabled before, is enabled with this module alone.
start_framework_with() {
  as 0 orvex_policy "$1" on
  expect 0 <<END
正在开启orvex......
orvex开启成功, 安全模块[$1]开启成功, 重启后生效!
END
  restart
}

# separate_roles: the security administrator, user 600, acts in place of root. The framework has to be on.
separate_roles() {
  do_silently 0 orvex_local roles on
}

# expect_status STATE MODULE...: the status report shows this state, these modules on and all others off.
expect_status() {
  as 1234 orvex_policy status
  expect 0 < <(print_status "$@")
}

# expect_log: the framework's log holds just the records on standard input, given without their time.
expect_log() {
  as 0 orvex_local log
  sed -i 's/^[0-9-]* [0-9:.]* //' "$BATS_TEST_TMPDIR/output"
  expect 0
}
