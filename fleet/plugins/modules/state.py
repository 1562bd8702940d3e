#!/usr/bin/python
# SPDX-License-Identifier: Apache-2.0

DOCUMENTATION = r"""
module: state
short_description: Bring a host to a declared policy
version_added: 0.1.0
description:
  - Makes what the orvex security framework enforces on a host what a document says, by one run of C(orvex_state) on the host.
  - The document, or parts of it, come as arguments, whole lists at once. A task for 500 objects is one task without a loop.
author:
  - The maintainers of orvex_policy (@orvex)
extends_documentation_fragment:
  - orvex.policy.document
attributes:
  check_mode:
    description: Tells exactly the C(changed), C(commands) and C(reboot_required) of the run, and refuses what the run would refuse.
      Who lacks the rights to change the policy is only refused by the run.
    support: full
  diff_mode:
    description: Shows each object that differs, as it is on the host and as it is declared.
    support: full
notes:
  - A policy on a disabled framework can only be changed after a restart. The module then enables the framework, as far as the
    document wants that, and returns C(reboot_required). After the restart a second run does the rest. Until then each run asks
    for it again and returns C(changed).
  - Nothing is ever restarted by this module.
seealso:
  - module: orvex.policy.state_info
"""

EXAMPLES = r"""
- name: Protect two kernel modules from being unloaded, and leave others as they are
  orvex.policy.state:
    modules:
      kmod: "on"
    kmod:
      modules: [ext4, xfs]
  become: true

- name: Let just these files run, and take all others off the whitelist
  orvex.policy.state:
    purge: true
    exec:
      whitelist:
        /opt/app/start.sh: intact
        /opt/app/stop.sh: intact
  become: true

- name: Bring the host to a document of the control node
  orvex.policy.state:
    document: "{{ lookup('ansible.builtin.file', 'policy.json') | from_json }}"
    purge: true
  become: true

- name: Bring the host to a document that lies on it
  orvex.policy.state:
    path: /etc/orvex/policy.json
  become: true
  register: policy

- name: Tell who has to restart it
  ansible.builtin.debug:
    msg: "{{ inventory_hostname }} needs a restart"
  when: policy.reboot_required
"""

RETURN = r"""
commands:
  description: The commands that brought the host to the document, or would, in order and quoted for the shell.
  returned: always, unless the document is refused
  type: list
  elements: str
  sample: ["orvex_policy kmod on", "orvex_policy kmod -A -n ext4"]
messages:
  description: What the host said to them, line by line. A run that succeeds is mostly silent; check mode runs nothing.
  returned: always, unless the document is refused
  type: list
  elements: str
  sample: ["添加内核模块[ext4]防卸载失败!"]
remaining:
  description: The differences that are still there after the run, one a line. Not empty only where the module fails.
  returned: always, unless the document is refused
  type: list
  elements: str
  sample: ["+ kmod modules: ext4"]
reboot_required:
  description: Whether the rest of the document waits for a restart of the host and a second run.
  returned: always, unless the document is refused
  type: bool
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.orvex.policy.plugins.module_utils.orvex_state import (
    EXCLUSIVE_ARGUMENTS, SECTIONS, Answer, OrvexState, make_arguments, show_drift, split_lines)

UNDONE = "this did not come about: "


def read_result(answer):
    """The return values of a run or of a plan. What a command said is indented below it."""
    lines = split_lines(answer.output)
    commands = [line for line in lines if not line.startswith("  ")]
    return dict(
        changed=bool(commands),
        commands=commands,
        messages=[line[2:] for line in lines if line.startswith("  ")],
        remaining=[line[len(UNDONE):] for line in answer.errors if line.startswith(UNDONE)],
        reboot_required=answer.reboot_required,
    )


def main():
    module = AnsibleModule(
        argument_spec=make_arguments(),
        mutually_exclusive=EXCLUSIVE_ARGUMENTS,
        required_one_of=[SECTIONS + ["document", "path"]],
        supports_check_mode=True,
    )
    host = OrvexState(module)
    difference = dict(diff=show_drift(host.diff())) if module._diff else {}
    answer = host.plan() if module.check_mode else host.apply()
    if answer.exit_value == Answer.REFUSED:
        host.fail(answer.reasons)
    result = dict(read_result(answer), **difference)
    if answer.exit_value not in (Answer.DONE, Answer.RESTART_NEEDED):
        host.fail(answer.reasons + result["messages"], **result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
