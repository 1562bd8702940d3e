# SPDX-License-Identifier: Apache-2.0

import json

from ansible_collections.orvex.policy.plugins.modules import state

ADDED = "orvex_policy kmod -A -n ext4\n"
WAITING = "orvex_state: the framework works after a restart of the machine; apply the document again then\n"
DRIFT = json.dumps([
    {"change": "update", "place": "", "name": "framework", "host": "disabled", "document": "enabled"},
    {"change": "update", "place": "/net/packages", "name": "a", "host": "deny", "document": "allow"},
    {"change": "add", "place": "/kmod/modules", "name": "line\nbreak"},
    {"change": "remove", "place": "/kmod/modules", "name": "ext4"},
])


def test_sections_become_the_document_as_the_task_has_them(host):
    host.answers = {"apply": (0, "", "")}
    result = host.run(state, framework="permissive", modules={"exec script": True, "box": False},
                      exec={"whitelist": {"/a": "intact"}}, kmod={"exclusive": False, "modules": []})
    assert host.commands == ["/usr/bin/orvex_state apply --keep-others -"]
    assert host.documents == [{
        "version": 1,
        "framework": "permissive",
        "modules": {"exec script": "on", "box": "off"},
        "exec": {"whitelist": {"/a": "intact"}},
        "kmod": {"exclusive": False, "modules": []},
    }]
    assert result == {"changed": False, "commands": [], "messages": [], "remaining": [], "reboot_required": False}


def test_a_whole_document_is_taken_as_it_was_read(host):
    host.answers = {"apply": (0, "", "")}
    document = {"version": 1, "framework": "enabled", "modules": {"3adm": "off", "net": "warning"},
                "file": {"files": {"/a": {"excepted_files": ["/b"]}}}}
    host.run(state, document=document, purge=True)
    assert host.commands == ["/usr/bin/orvex_state apply -"]
    assert host.documents == [document]


def test_an_empty_list_is_declared_and_one_that_is_left_out_is_not(host):
    host.answers = {"apply": (0, "", "")}
    host.run(state, document={"kmod": {"modules": []}, "net": {}})
    assert host.documents == [{"version": 1, "kmod": {"modules": []}, "net": {}}]


def test_a_document_on_the_host_is_named(host):
    host.answers = {"apply": (0, "", "")}
    host.run(state, path="/etc/policy.json", executable="mine")
    assert host.commands == ["/usr/bin/mine apply --keep-others /etc/policy.json"]
    assert host.documents == [None]


def test_commands_and_what_the_host_says_to_them_are_told_apart(host):
    host.answers = {"apply": (3, "orvex_policy enable\n  orvex开启成功, 重启后生效!\n", WAITING)}
    assert host.run(state, framework="enabled") == {
        "changed": True,
        "commands": ["orvex_policy enable"],
        "messages": ["orvex开启成功, 重启后生效!"],
        "remaining": [],
        "reboot_required": True,
    }


def test_check_mode_asks_for_the_plan_and_runs_nothing(host):
    host.answers = {"plan": (3, ADDED, WAITING)}
    result = host.run(state, kmod={"modules": ["ext4"]}, _ansible_check_mode=True)
    assert host.commands == ["/usr/bin/orvex_state plan --keep-others -"]
    assert result["changed"] and result["reboot_required"]
    assert result["commands"] == ["orvex_policy kmod -A -n ext4"]


def test_a_name_with_an_odd_line_separator_stays_one_command(host):
    host.answers = {"plan": (0, "orvex_policy kmod -A -n 'a\u2028b'\n", "")}
    result = host.run(state, kmod={"modules": ["a\u2028b"]}, _ansible_check_mode=True)
    assert result["commands"] == ["orvex_policy kmod -A -n 'a\u2028b'"]


def test_a_change_that_did_not_come_about_fails_with_what_the_host_said(host):
    host.answers = {"apply": (1, ADDED + "  添加内核模块[ext4]防卸载失败!\n",
                              "orvex_state: this did not come about: + kmod modules: ext4\n")}
    result = host.run(state, kmod={"modules": ["ext4"]})
    assert result["failed"] and result["changed"]
    assert result["msg"] == "this did not come about: + kmod modules: ext4\n添加内核模块[ext4]防卸载失败!"
    assert result["remaining"] == ["+ kmod modules: ext4"]


def test_a_document_that_is_refused_fails_with_all_reasons(host):
    host.answers = {"apply": (2, "", "orvex_state: standard input: /a: one\norvex_state: standard input: /b: two\n")}
    assert host.run(state, kmod={}) == {"failed": True, "msg": "standard input: /a: one\nstandard input: /b: two"}


def test_missing_rights_fail_with_the_hosts_line_and_a_way_out(host):
    host.answers = {"apply": (2, "", "orvex_state: 当前用户无权限执行, 请切换root用户执行!\n")}
    assert host.run(state, kmod={})["msg"] == (
        "当前用户无权限执行, 请切换root用户执行!\nbecome root (become: true), or user 600 where the roles are separated")


def test_a_missing_program_is_told_with_the_package_that_has_it(host):
    host.has_program = False
    assert host.run(state, kmod={})["msg"] == (
        "orvex_state is not on this host: install the package orvex-policy, or name the program with 'executable'")


def test_a_program_that_breaks_off_is_a_failure(host):
    host.answers = {"apply": (-11, "", "")}
    assert host.run(state, kmod={})["msg"] == "orvex_state ended with -11"


def test_diff_mode_shows_the_host_before_and_the_document_after(host):
    host.answers = {"diff": (1, DRIFT, ""), "apply": (0, ADDED, "")}
    assert host.run(state, kmod={}, _ansible_diff=True)["diff"] == {
        "before_header": "host",
        "after_header": "document",
        "before": "framework: disabled\n/net/packages a: deny\n/kmod/modules ext4\n",
        "after": 'framework: enabled\n/net/packages a: allow\n/kmod/modules "line\\nbreak"\n',
    }


def test_a_fault_of_the_document_is_told_in_diff_mode_too(host):
    host.answers = {"diff": (2, "", "orvex_state: standard input: not JSON\n")}
    assert host.run(state, kmod={}, _ansible_diff=True)["msg"] == "standard input: not JSON"


def test_arguments_that_contradict_each_other_are_refused(host):
    assert "mutually exclusive" in host.run(state, kmod={}, document={})["msg"]
    assert "mutually exclusive" in host.run(state, path="/a", document={})["msg"]
    assert "one of the following is required" in host.run(state)["msg"]
    assert "kmod.module." in host.run(state, kmod={"module": []})["msg"]
    assert host.commands == []
