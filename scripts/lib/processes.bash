# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Running processes, and the file in which the framework's kernel part would say which program each of them runs. They
# live in a mount namespace of their own, as the commands that are to see them so have to.

# Who is not root is root of a user namespace.
if [[ $EUID -eq 0 ]] && is_mapped 600; then
  enter_namespace=(unshare --mount)
  join_namespace=(--mount)
else
  enter_namespace=(unshare --user --map-root-user --mount)
  join_namespace=(--preserve-credentials --user --mount)
fi

# The processes that end_processes ends.
processes=()

# can_start_namespace: tells whether this machine allows it. Most containers do not.
can_start_namespace() {
  "${enter_namespace[@]}" true 2>/dev/null
}

# start_namespace DIR: a namespace for processes. DIR, which exists, is for what stands for their attribute files.
start_namespace() {
  attributes=$1
  keep_running "${enter_namespace[@]}"
  keeper=$pid
}

# in_namespace COMMAND [ARGUMENT...]: runs the command as root of the namespace.
in_namespace() {
  nsenter "${join_namespace[@]}" --target "$keeper" --wd="$PWD" "$@"
}

# start_process: a process of the namespace, whose attribute files do not exist. Its id is in $pid.
start_process() {
  keep_running nsenter "${join_namespace[@]}" --target "$keeper"
  mkdir "$attributes/$pid"
  in_namespace mount --bind "$attributes/$pid" "/proc/$pid/attr"
}

# start_program TEXT: a process whose attribute file holds the text.
start_program() {
  start_process
  mkdir "$attributes/$pid/vemu"
  printf '%s' "$1" >"$attributes/$pid/vemu/path"
}

# end_processes: ends them all, and the namespace with them.
end_processes() {
  [[ ${#processes[@]} -eq 0 ]] || kill "${processes[@]}"
}

# keep_running COMMAND...: a process that does nothing, started by a command that takes the rest of its command line.
keep_running() {
  # A descriptor that bats waits for must not be inherited.
  "$@" sleep 600 3>&- >/dev/null 2>&1 &
  pid=$!
  processes+=("$pid")
  # Until it is what it was started for it is not in the namespace.
  until [[ $(<"/proc/$pid/comm") == sleep ]]; do
    sleep 0.01
  done
}
