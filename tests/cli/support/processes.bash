# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Sessions with running processes, which the commands of the session alone see.
load "$ORVEX_SOURCE_DIR/scripts/lib/processes.bash"

# start_process_session: a session whose commands run in the namespace of its processes. end_processes ends it.
start_process_session() {
  unshare --user --map-root-user --mount true 2>/dev/null || skip 'this machine allows no user namespaces'
  mkdir "$BATS_TEST_TMPDIR/attributes"
  start_namespace "$BATS_TEST_TMPDIR/attributes"
  start_session
}

# run_as UID COMMAND...: only root of the namespace may see which programs its processes run.
run_as() {
  if [[ $1 -eq 0 ]]; then
    in_namespace "${@:2}"
  else
    in_namespace unshare --user --map-user="$1" "${@:2}"
  fi
}
