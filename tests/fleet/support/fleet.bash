# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# A fleet of hosts on this machine: local connections, each with a state of the stand-in of its own.
# exit_value is of the sessions, below which these are.
# shellcheck disable=SC2154
load "$ORVEX_SOURCE_DIR/tests/cli/support/session.bash"

# start_fleet HOST...: a session with hosts whose framework is enabled, with every module off.
start_fleet() {
  start_session
  make_fleet "$@"
}

# make_fleet HOST...: such hosts in the session. Ansible writes nothing beyond it.
make_fleet() {
  PATH=/usr/bin:/bin command -v ansible-playbook >/dev/null || skip 'ansible is not installed'
  mkdir -p ansible_collections/orvex
  ln -s "$ORVEX_SOURCE_DIR/fleet" ansible_collections/orvex/policy
  session_environment+=(
    "ANSIBLE_HOME=$PWD/ansible"
    "ANSIBLE_LOCAL_TEMP=$PWD/ansible/local"
    "ANSIBLE_REMOTE_TEMP=$PWD/ansible/remote"
    "ANSIBLE_COLLECTIONS_PATH=$PWD"
    ANSIBLE_STDOUT_CALLBACK=oneline
    ANSIBLE_NOCOLOR=1
    PYTHONDONTWRITEBYTECODE=1
    ANSIBLE_PIPELINING=1
    ANSIBLE_FORKS=10
    ANSIBLE_DEPRECATION_WARNINGS=0
  )
  mkdir hosts
  write_inventory "$@"
  local host
  for host; do
    on "$host" orvex_policy enable
    on "$host" orvex_local restart
  done
}

# write_inventory HOST...: their states are in the directory hosts, and what restarts a machine here is the stand-in.
write_inventory() {
  cat >inventory.yml <<END
all:
  vars:
    ansible_connection: local
    ansible_python_interpreter: /usr/bin/python3
    orvex_policy_restart_tasks: $PWD/restart.yml
  hosts: {$(printf '%s: , ' "$@")}
END
  cat >restart.yml <<'END'
- name: Restart the machine
  ansible.builtin.command: orvex_local restart
END
}

# on HOST COMMAND...: runs the command on the host by hand, and shows what it says.
on() {
  as 0 env "ORVEX_LOCAL_STATE=$PWD/hosts/$1" "${@:2}"
  cat "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/errors"
  return "$exit_value"
}

# dump_hosts DIR HOST...: writes the policy of each to a file.
dump_hosts() {
  local host
  mkdir "$1"
  for host in "${@:2}"; do
    on "$host" orvex_state dump >"$1/$host"
  done
}

# play EXIT [OPTION...]: plays the tasks, or the lines of a play, on standard input on all hosts. Ends with this exit value.
play() {
  {
    cat <<END
- hosts: all
  gather_facts: false
  environment:
    ORVEX_LOCAL_STATE: "$PWD/hosts/{{ inventory_hostname }}"
END
    sed 's/^/  /'
  } >play.yml
  as 0 ansible-playbook --inventory inventory.yml "${@:2}" play.yml
  cat "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/errors"
  [[ $exit_value -eq $1 ]]
}

# play_role EXIT [OPTION...]: plays the role that brings hosts to what is declared for them.
play_role() {
  play "$@" <<<'roles: [orvex.policy.host]'
}

# declare_for GROUP: standard input, as JSON or YAML, is declared for the group.
declare_for() {
  mkdir -p group_vars
  {
    echo "orvex_policy_document_$1:"
    sed 's/^/  /'
  } >>"group_vars/$1.yml"
}

# expect_results: what the modules answered in the last play, or why a host failed, sorted by host, is what stands on standard
# input.
expect_results() {
  print_results >results
  diff -u --label expected --label results - results
}

# print_results: a line for each, as HOST | STATE => RESULT.
print_results() {
  grep -E '"(commands|policy)": |^[^ ]+ \| (FAILED|UNREACHABLE)! => ' "$BATS_TEST_TMPDIR/output" |
    sed 's/,\(["{]\)/, \1/g' | LC_ALL=C sort --stable --key=1,1
}

# answer CHANGED COMMANDS [MESSAGES [RESTART]]: what a run that succeeds returns. The lists are JSON without their brackets.
answer() {
  printf '{"changed": %s, "commands": [%s], "messages": [%s], "reboot_required": %s, "remaining": []}' \
    "$1" "$2" "${3-}" "${4-false}"
}

# expect_unchanged HOST...: the last play found nothing to do on just these hosts, which stand in the order of their names.
expect_unchanged() {
  expect_results < <(printf "%s | SUCCESS => $(answer false '')\n" "$@")
}
