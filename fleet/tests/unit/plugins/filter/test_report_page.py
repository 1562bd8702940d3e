# SPDX-License-Identifier: Apache-2.0

import base64
import hashlib
import json
import re

import pytest

from ansible.errors import AnsibleFilterError
from ansible.utils.unsafe_proxy import AnsibleUnsafe
from ansible_collections.orvex.policy.plugins.filter.report_page import FilterModule

make_page = FilterModule().filters()["report_page"]
TIME = "2030-01-31T12:00:00Z"
ADDED = {"change": "add", "place": "/kmod/modules", "name": "ext4"}
CHANGED = {"change": "update", "place": "/modules", "name": "kmod", "host": "off", "document": "on"}


def answer(**more):
    return dict(policy={"version": 1, "framework": "enabled", "modules": {"kmod": "on"}}, tampered=[], **more)


def read(page):
    return json.loads(re.search('<script type="application/json" id="data">(.*?)</script>', page, re.DOTALL).group(1))


def test_a_page_has_the_time_the_language_and_what_a_host_answered():
    data = read(make_page({"web1": answer(drift=[CHANGED], reboot_required=True, refused=["no"])}, TIME, "en"))
    assert data == {
        "language": "en",
        "time": TIME,
        "hosts": [{"name": "web1", "framework": "enabled", "modules": {"kmod": "on"}, "refused": ["no"], "tampered": [],
                   "restart": True, "drift": [0]}],
        "differences": [["update", "/modules", "kmod", "off", "on"]],
    }


def test_a_difference_of_many_hosts_stands_in_the_page_once():
    data = read(make_page({"a": answer(drift=[ADDED, CHANGED]), "b": answer(drift=[CHANGED]), "c": answer(drift=[])}, TIME))
    assert [difference[2] for difference in data["differences"]] == ["ext4", "kmod"]
    assert [host["drift"] for host in data["hosts"]] == [[0, 1], [1], []]


def test_a_host_without_a_document_has_no_list_of_differences():
    assert "drift" not in read(make_page({"a": answer()}, TIME))["hosts"][0]


@pytest.mark.parametrize("given, problem, message", [
    ({}, "unreachable", ""),
    ({"unreachable": True, "msg": "refused\n"}, "unreachable", "refused"),
    ({"failed": True, "msg": "no package"}, "failed", "no package"),
    ({"failed": True, "msg": ["no", "package"]}, "failed", "['no', 'package']"),
])
def test_a_host_that_gave_no_policy_has_its_reason(given, problem, message):
    assert read(make_page({"a": given}, TIME))["hosts"] == [{"name": "a", "problem": problem, "message": message}]


@pytest.mark.parametrize("strange", [
    {"policy": "none"}, {"policy": {}}, {"policy": {"framework": "enabled", "modules": []}}, {"tampered": None},
    {"tampered": "/a"}, {"refused": 5}, {"drift": 5}, {"drift": ["/a"]}, {"drift": [dict(ADDED, change="explode")]},
    {"drift": [{"change": "add"}]},
])
def test_a_host_with_a_strange_answer_fails_alone(strange):
    hosts = read(make_page({"bad": dict(answer(), **strange), "good": answer()}, TIME))["hosts"]
    assert [host.get("problem") for host in hosts] == ["failed", None]
    assert hosts[0]["message"] == "what the host answered is no answer of orvex.policy.state_info"


def test_what_should_be_a_text_becomes_one():
    strange = answer(drift=[dict(ADDED, name={"a": 1}, place=["/"])])
    strange["policy"]["framework"] = ["enabled"]
    data = read(make_page({"a": strange}, TIME))
    assert data["hosts"][0]["framework"] == "['enabled']"
    assert data["differences"] == [["add", "['/']", "{'a': 1}", None, None]]


def test_no_name_ends_the_element_of_the_data():
    name = "</script><!--<script>\u2028\ud800"
    page = make_page({name: answer()}, TIME)
    assert read(page)["hosts"][0]["name"] == name
    assert page.count("<script") == page.count("</script>") == 2


def test_a_name_that_looks_like_a_template_stays_a_name():
    page = make_page({"{{ 1 + 1 }}": answer()}, TIME)
    assert isinstance(page, AnsibleUnsafe)
    assert read(page)["hosts"][0]["name"] == "{{ 1 + 1 }}"


@pytest.mark.parametrize("tag, directive", [("style", "style-src"), ("script", "script-src")])
def test_the_policy_of_the_page_allows_its_own_parts_and_no_others(tag, directive):
    page = make_page({}, TIME)
    part = re.search("<{0}>(.*?)</{0}>".format(tag), page, re.DOTALL).group(1)
    digest = base64.b64encode(hashlib.sha256(part.encode()).digest()).decode()
    policy = re.search('Content-Security-Policy" content="([^"]*)"', page).group(1)
    assert "default-src 'none'" in policy
    assert "{0} 'sha256-{1}'".format(directive, digest) in policy.split("; ")


def test_an_unknown_language_is_refused():
    with pytest.raises(AnsibleFilterError, match="not fr"):
        make_page({}, TIME, "fr")


def test_anything_but_hosts_by_their_names_is_refused():
    with pytest.raises(AnsibleFilterError, match="by their names"):
        make_page([answer()], TIME)
