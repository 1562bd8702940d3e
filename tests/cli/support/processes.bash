# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Sessions with running processes, which the commands of the session alone see.
load "$ORVEX_SOURCE_DIR/scripts/lib/processes.bash"

# start_process_session: a session whose commands run in the namespace of its processes. end_processes ends it.
start_process_session() {
  can_start_namespace || skip 'this machine allows no mounts, which stand in for the attribute files under /proc'
  mkdir "$BATS_TEST_TMPDIR/attributes"
  start_namespace "$BATS_TEST_TMPDIR/attributes"
  start_session
}

# run_as UID COMMAND...
run_as() {
  become "$1"
  if [[ $1 -eq 0 ]]; then
    user_prefix=()
  fi
  in_namespace "${user_prefix[@]}" "${@:2}"
}
