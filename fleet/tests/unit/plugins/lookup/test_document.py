# SPDX-License-Identifier: Apache-2.0

import pytest

from ansible.errors import AnsibleError
from ansible.plugins.loader import lookup_loader
from ansible.template import Templar


def compose(**variables):
    lookup = lookup_loader.get("orvex.policy.document", templar=Templar(loader=None, variables=variables))
    return lookup.run([], variables=variables)[0]


def test_a_host_without_variables_has_an_empty_document():
    assert compose(orvex_policy_documents={"framework": "enabled"}, other={}) == {}


def test_parts_are_merged_in_the_order_of_their_names():
    assert compose(
        orvex_policy_document_50_web={"framework": "permissive", "kmod": {"modules": ["b", "a"]}},
        orvex_policy_document_10_all={"framework": "enabled", "kmod": {"modules": ["a", "c"]}, "modules": {"box": "on"}},
        orvex_policy_document={"modules": {"kmod": "on"}},
    ) == {
        "framework": "permissive",
        "modules": {"box": "on", "kmod": "on"},
        "kmod": {"modules": ["c", "b", "a"]},
    }


def test_the_exceptions_of_one_object_may_come_from_several_groups():
    assert compose(
        orvex_policy_document_1={"file": {"files": {"/a": {"excepted_files": ["/b"]}}}},
        orvex_policy_document_2={"file": {"files": {"/a": {"excepted_packages": ["vim"]}, "/c": {}}}},
    ) == {"file": {"files": {"/a": {"excepted_files": ["/b"], "excepted_packages": ["vim"]}, "/c": {}}}}


def test_variables_in_a_part_are_filled_in():
    assert compose(place="/srv", orvex_policy_document={"exec": {"excepted_directories": ["{{ place }}/app"]}}) == {
        "exec": {"excepted_directories": ["/srv/app"]}}


def test_switches_without_quotes_come_out_as_words():
    assert compose(
        orvex_policy_document_1={"modules": {"kmod": True, "net": "on", "box": "off"}},
        orvex_policy_document_2={"modules": {"box": True, "net": False}},
    ) == {"modules": {"kmod": "on", "net": "off", "box": "on"}}
    assert compose(orvex_policy_document={"modules": "all"}) == {"modules": "all"}


def test_a_part_that_is_no_dictionary_is_refused_by_its_name():
    with pytest.raises(AnsibleError, match="orvex_policy_document_1 is no document"):
        compose(orvex_policy_document_1=["a"])


def test_a_part_with_an_unknown_variable_is_refused():
    with pytest.raises(AnsibleError):
        compose(orvex_policy_document={"framework": "{{ unknown }}"})
