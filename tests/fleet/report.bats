#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The report about all hosts, as the role writes it.

load support/fleet.bash

# make_unreachable HOST: what should lead to the host does not.
make_unreachable() {
  mkdir -p host_vars
  # It takes what it is given first, as Ansible would otherwise tell that it could not write.
  cat >ssh <<END
#!/bin/sh
timeout 10 cat >/dev/null
echo "ssh: connect to host $1 port 22: Connection refused" >&2
exit 255
END
  chmod +x ssh
  printf 'ansible_connection: ssh\nansible_ssh_executable: %s\n' "$PWD/ssh" >"host_vars/$1.yml"
}

# make_failing HOST: the program is not on the host.
make_failing() {
  mkdir -p host_vars
  echo 'orvex_policy_executable: /nowhere/orvex_state' >"host_vars/$1.yml"
}

play_report() {
  play "$@" <<<'roles: [orvex.policy.report]'
}

# expect_report: the page has just these hosts, a line each, in the order of the inventory.
expect_report() {
  /usr/bin/python3 -B "$ORVEX_SOURCE_DIR/tests/fleet/support/report_hosts.py" orvex-policy-report.html >hosts_of_report
  # What stands before it is Ansible's.
  sed -i '/: unreachable: /s/: unreachable: .*: /: unreachable: /' hosts_of_report
  diff -u --label expected --label report - hosts_of_report
}

@test "each host is in the report, with what differs, or with the reason why nobody knows" {
  start_fleet gone broken drifted fine waiting
  make_unreachable gone
  make_failing broken
  declare_for all <<<'{framework: enabled, modules: {kmod: "on"}, kmod: {modules: [ext4]}}'
  on fine orvex_policy kmod on
  on fine orvex_policy kmod -A -n ext4
  on fine orvex_policy kmod -A -n xfs
  on drifted orvex_policy exec on
  printf '#!/bin/sh\n' >start.sh
  on drifted orvex_policy exec -A -f start.sh
  echo 'exit 1' >>start.sh
  on waiting orvex_local reset
  play_report 0
  expect_report <<END
gone: unreachable: Connection refused
broken: failed: /nowhere/orvex_state is not on this host: install the package orvex-policy, or name the program with 'executable'
drifted: enabled, on: exec, tampered: $PWD/start.sh, kmod off on, add ext4
fine: enabled, on: kmod
waiting: disabled, on: , restart, framework disabled enabled, kmod off on, add ext4
END
  [[ $(stat -c %a orvex-policy-report.html) == 600 ]]
}

@test "where no host can be reached there still is a report" {
  start_fleet gone
  make_unreachable gone
  play_report 0
  expect_report <<<'gone: unreachable: Connection refused'
}

@test "hosts for which nothing is declared are not compared, and check mode writes no report" {
  start_fleet plain
  play_report 0 --check
  [[ ! -e orvex-policy-report.html ]]
  play_report 0 --extra-vars "orvex_policy_report_path=$PWD/page.html orvex_policy_report_language=en"
  mv page.html orvex-policy-report.html
  grep -q '"language":"en"' orvex-policy-report.html
  expect_report <<<'plain: enabled, on: , not compared'
}
