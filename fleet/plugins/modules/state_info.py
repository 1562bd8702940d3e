#!/usr/bin/python
# SPDX-License-Identifier: Apache-2.0

DOCUMENTATION = r"""
module: state_info
short_description: Tell the policy of a host, and what differs from a declared one
version_added: 0.1.0
description:
  - Reads what the orvex security framework enforces on a host, by C(orvex_state) on the host.
  - With a declared document, given as for M(orvex.policy.state), it also tells what differs. It changes nothing, and everybody may
    ask.
author:
  - The maintainers of orvex_policy (@orvex)
extends_documentation_fragment:
  - orvex.policy.document
attributes:
  check_mode:
    support: full
    description: Changes nothing anyway.
  diff_mode:
    support: none
    description: Tells what differs in C(drift).
seealso:
  - module: orvex.policy.state
"""

EXAMPLES = r"""
- name: Read the policy
  orvex.policy.state_info:
  register: host

- name: Keep it on the control node
  ansible.builtin.copy:
    content: "{{ host.policy | to_nice_json }}"
    dest: "policies/{{ inventory_hostname }}.json"
    mode: "0600"
  delegate_to: localhost

- name: Look for what was changed by hand
  orvex.policy.state_info:
    document: "{{ lookup('orvex.policy.document') }}"
    purge: true
  register: host
  failed_when: host.drift | length > 0 or host.tampered | length > 0
"""

RETURN = r"""
policy:
  description: The policy of the host, a document as M(orvex.policy.state) takes it.
  returned: success
  type: dict
  sample:
    version: 1
    framework: enabled
    modules: {kmod: "on"}
    kmod: {modules: [ext4]}
tampered:
  description: The whitelisted files that have been tampered with.
  returned: success
  type: list
  elements: str
  sample: [/opt/app/start.sh]
drift:
  description:
    - What differs between host and document. C(change) is C(add) for what the host lacks, C(remove) for what it has beyond the
      document, and C(update) for what is another; C(place) is a JSON pointer into the document.
    - Where words stand beside names, C(host) and C(document) are those.
  returned: when a document is declared
  type: list
  elements: dict
  sample:
    - {change: update, place: /modules, name: kmod, host: "off", document: "on"}
reboot_required:
  description: Whether the document can only come about with a restart of the host.
  returned: when a document is declared
  type: bool
refused:
  description: Why M(orvex.policy.state) would refuse the document on this host, one reason a line.
  returned: when a document is declared
  type: list
  elements: str
  sample: ["standard input: /file/files/~1gone: does not exist"]
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.orvex.policy.plugins.module_utils.orvex_state import (
    EXCLUSIVE_ARGUMENTS, Answer, OrvexState, list_tampered, make_arguments)


def compare(host):
    """What the declared document adds to the facts."""
    drift = host.diff()
    plan = host.plan() if drift else Answer(Answer.DONE, "", "")
    return dict(
        drift=drift,
        reboot_required=plan.reboot_required,
        refused=plan.errors if plan.exit_value == Answer.REFUSED else [],
    )


def main():
    module = AnsibleModule(
        argument_spec=make_arguments(),
        mutually_exclusive=EXCLUSIVE_ARGUMENTS,
        supports_check_mode=True,
    )
    host = OrvexState(module)
    policy = host.dump()
    result = compare(host) if host.has_document else {}
    module.exit_json(changed=False, policy=policy, tampered=list_tampered(policy), **result)


if __name__ == "__main__":
    main()
