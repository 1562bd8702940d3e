# SPDX-License-Identifier: Apache-2.0
"""A host on which orvex_state answers what a test gives it."""

import json

import pytest

from ansible.module_utils import basic


class Host:
    """Runs a module. The answers have a word of orvex_state each, and what it ends with, prints and complains."""

    def __init__(self, monkeypatch, capsys):
        self.monkeypatch = monkeypatch
        self.capsys = capsys
        self.has_program = True
        self.answers = {}
        self.commands = []
        self.documents = []

    def run(self, module, **arguments):
        request = json.dumps({"ANSIBLE_MODULE_ARGS": arguments}).encode()
        self.monkeypatch.setattr(basic, "_ANSIBLE_ARGS", request)
        self.monkeypatch.setattr(basic.AnsibleModule, "get_bin_path", self._find)
        self.monkeypatch.setattr(basic.AnsibleModule, "run_command", self._run_command)
        with pytest.raises(SystemExit):
            module.main()
        result = json.loads(self.capsys.readouterr().out)
        result.pop("invocation", None)
        return result

    def _find(self, name):
        return "/usr/bin/" + name if self.has_program else None

    def _run_command(self, command, data=None):
        self.commands.append(" ".join(command))
        self.documents.append(data and json.loads(data))
        return self.answers[command[1]]


@pytest.fixture
def host(monkeypatch, capsys):
    return Host(monkeypatch, capsys)
