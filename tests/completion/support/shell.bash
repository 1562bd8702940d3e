# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Sessions with the shell in ORVEX_SHELL, typed into a terminal.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/scripts/lib/session.bash"
load "$ORVEX_SOURCE_DIR/scripts/lib/processes.bash"

# start_shell_session: a home of its own with the packages of the tests, and a desk. All that the programs do here is to write
# down their arguments.
start_shell_session() {
  require_tools
  home=$BATS_TEST_TMPDIR/home
  mkdir -p "$home/.local/share/bash-completion" "$BATS_TEST_TMPDIR"/{bin,desk}
  cp "$ORVEX_PACKAGES_DIR/home/.rpmmacros" "$home"
  ln -s "$ORVEX_COMPLETION_DIR" "$home/.local/share/bash-completion/completions"
  for program in orvex_policy orvex_state orvex_local; do
    printf '#!/bin/sh\nprintf "%%s\\n" "$@" >%s\n' "$BATS_TEST_TMPDIR/arguments" >"$BATS_TEST_TMPDIR/bin/$program"
    chmod +x "$BATS_TEST_TMPDIR/bin/$program"
  done
  cd "$BATS_TEST_TMPDIR/desk" || return
}

require_tools() {
  command -v "${ORVEX_SHELL%-completion}" >/dev/null || skip "$ORVEX_SHELL is not installed"
  [[ $ORVEX_SHELL != bash-completion || -e /usr/share/bash-completion/bash_completion ]] ||
    skip 'bash-completion is not installed'
  /usr/bin/python3 -c 'import pexpect, pyte' 2>/dev/null ||
    skip 'pexpect and pyte, which play the terminal, are not installed'
}

# replace_proc: /proc is the directory $proc in the session, and holds of the kernel's own files what a process needs of itself.
replace_proc() {
  can_start_namespace || skip 'this machine allows no mounts, which stand in for the files under /proc'
  proc=$BATS_TEST_TMPDIR/proc
  mkdir -p "$proc/kernel"
  ln -s kernel/self "$proc/self"
  terminal_prefix=("${enter_namespace[@]}" "$ORVEX_SOURCE_DIR/tests/completion/support/replace_proc.sh" "$proc")
}

# in_terminal TASK...
in_terminal() {
  "${terminal_prefix[@]}" env -i "HOME=$home" "PATH=$BATS_TEST_TMPDIR/bin:/usr/bin:/bin" TERM=xterm LC_ALL=C.UTF-8 \
    "ORVEX_COMPLETION_DIR=$ORVEX_COMPLETION_DIR" \
    "$ORVEX_SOURCE_DIR/tests/completion/support/terminal.py" "$ORVEX_SHELL" "$@"
}

# expect_offers: the shell offers just what the cases on standard input say.
expect_offers() {
  in_terminal offers
}

# expect_arguments KEYS: the program that is entered with these keys, in which <tab> completes, gets the arguments on
# standard input, one a line.
expect_arguments() {
  rm -f "$BATS_TEST_TMPDIR/arguments"
  in_terminal enters "$1"
  diff -u --label expected --label arguments - "$BATS_TEST_TMPDIR/arguments"
}
