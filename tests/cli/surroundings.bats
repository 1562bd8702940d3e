#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What surrounds a run and belongs to somebody else: its variables, its standard output, the files that it walks over, the
# service that answers it.

load support/session.bash
load support/exec.bash

setup() {
  start_session
  program=$ORVEX_BIN_DIR/orvex_policy
}

# make_front: builds a library, from the source on standard input, to stand in front of the service library.
make_front() {
  if nm -D "$program" | grep -q __asan_init; then
    skip 'the sanitizer wants to be the first library'
  fi
  "${CXX:-c++}" -shared -fPIC -x c++ -o front.so -
}

# with_output UID REDIRECTION COMMAND...: runs the command with its standard output redirected as the shell reads it.
with_output() {
  # shellcheck disable=SC2016
  as "$1" sh -c 'redirection=$1; shift; eval "exec \"\$@\" $redirection"' sh "${@:2}"
}

@test "the program's own variables are HOME and no other" {
  grep -rhoE 'getenv\([^)]*\)' "$ORVEX_SOURCE_DIR/src" | sort -u >asked
  diff -u - asked <<<'getenv("HOME")'
}

@test "where options have to stand in front, by POSIXLY_CORRECT, a module gets none, and prints its help" {
  start_framework_with kmod
  session_environment+=(POSIXLY_CORRECT=1)
  for arguments in -L '-A -n ext4' '-D -n ext4'; do
    # shellcheck disable=SC2086
    as 0 orvex_policy kmod $arguments
    expect 0 < <(print_kmod_help)
  done
  do_silently 0 orvex_policy kmod off
  expect_status enable
}

@test "variables that claim to be another user's give no rights" {
  start_framework_with kmod
  session_environment+=(HOME=/root USER=root LOGNAME=root SUDO_UID=0 UID=0 EUID=0)
  as 1234 orvex_policy kmod -A -n ext4
  expect 0 <<<'当前用户无权限执行, 请切换root用户执行!'
}

@test "run with another user's rights the program is loaded from nowhere that the caller names, and runs nothing of his" {
  [[ $EUID -eq 0 ]] || skip 'only root makes a program that runs with his rights'
  make_front <<'END'
#include <unistd.h>
__attribute__((constructor)) static void break_in() { write(1, "broken in\n", 10); }
END
  mkdir tree
  cp -R "$ORVEX_BIN_DIR/../lib" tree/lib
  mkdir tree/bin
  cp "$program" tree/bin
  session_environment+=("LD_PRELOAD=$PWD/front.so" "LD_LIBRARY_PATH=$PWD/tree/lib" "LD_AUDIT=$PWD/front.so")
  as 1234 "$PWD/tree/bin/orvex_policy" status
  grep -qx 'broken in' "$BATS_TEST_TMPDIR/output"
  chmod u+s tree/bin/orvex_policy
  as 1234 "$PWD/tree/bin/orvex_policy" status
  [[ $exit_value -eq 127 && ! -s $BATS_TEST_TMPDIR/output ]]
  grep -q 'error while loading shared libraries: liborvex' "$BATS_TEST_TMPDIR/errors"
}

@test "what cannot be printed is lost, and what was to be done is done" {
  start_framework_with kmod
  for redirection in '>/dev/full' '>&-' '>&- 2>&-' '<&- >&-'; do
    with_output 0 "$redirection" orvex_policy kmod -A -n ext4
    expect_silence
    with_output 0 "$redirection" orvex_policy kmod -A -n ext4
    expect_silence
    with_output 0 "$redirection" orvex_policy status
    expect_silence
    with_output 1234 "$redirection" orvex_policy kmod -D -n ext4
    expect_silence
    # With its output closed a program's files take its place: none of them may get the texts.
    as 0 orvex_policy kmod -L
    expect 0 < <(print_kmod_list ext4)
    expect_log </dev/null
    do_silently 0 orvex_policy kmod -D -n ext4
  done
}

@test "a reader that goes away ends the list, and changes nothing" {
  start_framework_with kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod -A -n xfs
  # shellcheck disable=SC2016
  as 0 bash -c 'orvex_policy kmod -L | true; [[ ${PIPESTATUS[0]} -eq 0 || ${PIPESTATUS[0]} -eq 141 ]]'
  expect_silence
  as 0 orvex_policy kmod -L
  expect 0 < <(print_kmod_list ext4 xfs)
}

@test "a service that answers slowly is waited for" {
  make_front <<'END'
#include <unistd.h>
extern "C" int orvex_scene_getstatus() {
    sleep(2);
    return 0;
}
END
  session_environment+=("LD_PRELOAD=$PWD/front.so")
  SECONDS=0
  as 0 orvex_policy status
  expect 0 <<<'orvex status : disable'
  [[ $SECONDS -ge 1 ]]
}

@test "a service that takes the process along leaves no half of a change" {
  start_framework_with kmod
  make_front <<'END'
#include <csignal>
extern "C" int orvex_scene_kmodctl_add_by_name(const char*) { return std::raise(SIGKILL); }
END
  session_environment+=("LD_PRELOAD=$PWD/front.so")
  as 0 orvex_policy kmod -A -n ext4
  [[ $exit_value -eq 137 && ! -s $BATS_TEST_TMPDIR/output ]]
  unset 'session_environment[-1]'
  do_silently 0 orvex_policy kmod -L
}

@test "a directory that goes away under a walk ends it with a line" {
  use_no_packages
  start_framework_with exec
  mkdir -p d/{1..20}
  for place in d/*; do
    write_script "$place/a.sh"
  done
  make_front <<'END'
#include <dlfcn.h>
#include <cstdlib>
extern "C" int parse_file_type(const char* path) {
    std::system("rm -rf d/*");
    return reinterpret_cast<int (*)(const char*)>(dlsym(RTLD_NEXT, "parse_file_type"))(path);
}
END
  session_environment+=("LD_PRELOAD=$PWD/front.so")
  as 0 orvex_policy exec -L -d d
  expect 0 <<<'文件系统错误: filesystem error: cannot increment recursive directory iterator: No such file or directory'
  expect_log <<<'18 exec get_whlist_status_by_dir recursive dir failed, path: d'
}

@test "a directory that changes all the time under walks does no harm" {
  use_no_packages
  start_framework_with exec
  mkdir d
  (
    until [[ -e enough ]]; do
      mkdir -p d/{1..9}/{1..9}
      touch d/{1..9}/{1..9}/file
      rm -rf d/[1-5] d/7
      ln -s . d/7
      rm -rf d/*
    done
  ) 2>/dev/null 3>&- &
  churn=$!
  for _ in {1..40}; do
    as 0 orvex_policy exec -L -d d
    [[ $exit_value -eq 0 && ! -s $BATS_TEST_TMPDIR/errors ]]
    run -1 grep -vE "^$PWD/d/|^文件系统错误: " "$BATS_TEST_TMPDIR/output"
    as 0 orvex_policy exec -A -d d
    [[ $exit_value -eq 0 && ! -s $BATS_TEST_TMPDIR/errors ]]
  done
  touch enough
  wait "$churn"
}
