#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Hosts with random policies, and with names that mean something to Ansible or to a shell.

load "$ORVEX_SOURCE_DIR/tests/state/support/state.bash"
load support/fleet.bash

@test "check mode tells what the run does, and policies come whole from one host to another" {
  start_package_session
  install_package orvex-demo-tools
  install_package orvex-player
  make_random_world
  make_fleet host{1..8} model{1..8}
  for number in {1..8}; do
    make_random "host$number" "$number"
    make_random "model$number" "100$number"
  done
  play 0 <<'END'
vars:
  wanted: "{{ hostvars[inventory_hostname | replace('host', 'model')].read.policy }}"
tasks:
  - orvex.policy.state_info:
    register: read

  - meta: end_host
    when: inventory_hostname is match('model')

  - orvex.policy.state: {document: "{{ wanted }}", purge: true}
    register: first_predicted
    check_mode: true

  - orvex.policy.state: {document: "{{ wanted }}", purge: true}
    register: first

  - command: orvex_local restart
    when: first.reboot_required

  - orvex.policy.state: {document: "{{ wanted }}", purge: true}
    register: second_predicted
    check_mode: true

  - orvex.policy.state: {document: "{{ wanted }}", purge: true}
    register: second

  - orvex.policy.state_info: {document: "{{ wanted }}", purge: true}
    register: behind

  - assert:
      that:
        - first is changed
        - first.commands == first_predicted.commands
        - first.reboot_required == first_predicted.reboot_required
        - first.reboot_required or second is not changed
        - second.commands == second_predicted.commands
        - not second_predicted.reboot_required
        - behind.policy == wanted and behind.drift == []
END
  [[ $(grep -c 'All assertions passed' "$BATS_TEST_TMPDIR/output") -eq 8 ]]
  # Some of them waited for a restart, and some of the names stand for something else.
  grep -q '"reboot_required": true' "$BATS_TEST_TMPDIR/output"
  grep -qF '{{ 7 * 7 }}' "$BATS_TEST_TMPDIR/output"
}

# make_random HOST SEED: a random state, which the seed decides.
make_random() {
  as 0 make_state "$2" "$PWD" orvex-demo-tools orvex-player
  cp "$BATS_TEST_TMPDIR/output" state.json
  on "$1" orvex_local load state.json
}
