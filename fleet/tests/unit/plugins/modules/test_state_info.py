# SPDX-License-Identifier: Apache-2.0

import json

from ansible_collections.orvex.policy.plugins.modules import state_info

POLICY = {"version": 1, "exec": {"whitelist": {"/c": "tampered", "/b": "intact", "/a": "tampered"}}}
DUMP = (0, json.dumps(POLICY), "")
MISSING = {"change": "add", "place": "/kmod/modules", "name": "ext4"}
DRIFT = (1, json.dumps([MISSING]), "")


def test_without_a_document_it_tells_the_policy_and_what_was_tampered_with(host):
    host.answers = {"dump": DUMP}
    assert host.run(state_info) == {"changed": False, "policy": POLICY, "tampered": ["/a", "/c"]}
    assert host.commands == ["/usr/bin/orvex_state dump"]


def test_with_a_document_it_tells_what_differs(host):
    host.answers = {"dump": DUMP, "diff": DRIFT, "plan": (0, "orvex_policy kmod -A -n ext4\n", "")}
    result = host.run(state_info, kmod={"modules": ["ext4"]})
    assert result["drift"] == [MISSING]
    assert not result["changed"] and not result["reboot_required"] and result["refused"] == []
    assert host.commands[1] == "/usr/bin/orvex_state diff --json --keep-others -"


def test_a_document_that_waits_for_a_restart_says_so(host):
    host.answers = {"dump": DUMP, "diff": DRIFT, "plan": (3, "orvex_policy enable\n", "orvex_state: later\n")}
    result = host.run(state_info, framework="enabled", purge=True)
    assert result["reboot_required"] and result["refused"] == []


def test_a_document_that_would_be_refused_is_compared_all_the_same(host):
    host.answers = {"dump": DUMP, "diff": DRIFT, "plan": (2, "", "orvex_state: a: one\norvex_state: b: two\n")}
    result = host.run(state_info, document={})
    assert result["drift"] == [MISSING] and result["refused"] == ["a: one", "b: two"]


def test_where_nothing_differs_no_plan_is_made(host):
    host.answers = {"dump": DUMP, "diff": (0, "[]", "")}
    result = host.run(state_info, document={})
    assert result["drift"] == [] and not result["reboot_required"]


def test_a_host_that_does_not_tell_fails_with_its_line(host):
    host.answers = {"dump": (2, "", "orvex_state: no answer\n")}
    assert host.run(state_info) == {"failed": True, "msg": "no answer"}
