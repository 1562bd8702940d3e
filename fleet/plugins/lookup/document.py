# SPDX-License-Identifier: Apache-2.0
"""The declared document of a host, composed from its variables."""

DOCUMENTATION = r"""
name: document
short_description: Compose the declared document of a host from its variables
version_added: 0.1.0
author:
  - The maintainers of orvex_policy (@orvex)
description:
  - Merges the variable C(orvex_policy_document) and all whose names begin with C(orvex_policy_document_), in the order of their
    names.
  - Each group of hosts declares its part in a variable with a name of its own, as of variables with the same name only one counts.
  - Objects are merged field by field, lists are joined and name nothing twice, and of two words for one thing the later one
    counts.
  - C(on) and C(off) without quotes, which YAML takes for truth values, come out as the words.
options:
  _terms:
    description: There are none.
seealso:
  - module: orvex.policy.state
"""

EXAMPLES = r"""
# group_vars/all.yml has
#   orvex_policy_document_10_all: {framework: enabled, kmod: {modules: [ext4]}}
# and group_vars/databases.yml has
#   orvex_policy_document_50_databases: {kmod: {modules: [dm_crypt]}}
- name: Bring each host to what its groups say
  orvex.policy.state:
    document: "{{ lookup('orvex.policy.document') }}"
  become: true
"""

RETURN = r"""
_raw:
  description: The document, as the argument C(document) of M(orvex.policy.state) takes it.
  type: list
  elements: dict
"""

import re

from ansible.errors import AnsibleError
from ansible.plugins.lookup import LookupBase
from ansible.utils.vars import merge_hash

PART = re.compile(r"orvex_policy_document(_.*)?\Z")


SWITCHES = {True: "on", False: "off"}


def spell_switches(document):
    """The document with words where YAML has made truth values of them."""
    if not isinstance(document.get("modules"), dict):
        return document
    modules = {name: SWITCHES[word] if isinstance(word, bool) else word for name, word in document["modules"].items()}
    return dict(document, modules=modules)


class LookupModule(LookupBase):

    def run(self, terms, variables=None, **kwargs):
        if terms:
            raise AnsibleError("orvex.policy.document takes no terms")
        document = {}
        for name in sorted(filter(PART.match, variables)):
            part = self._templar.template(variables[name], fail_on_undefined=True)
            if not isinstance(part, dict):
                raise AnsibleError("{0} is no document: its value is no dictionary".format(name))
            document = merge_hash(document, part, recursive=True, list_merge="append_rp")
        return [spell_switches(document)]
