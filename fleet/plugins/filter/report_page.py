# SPDX-License-Identifier: Apache-2.0
"""Makes one HTML page of what the hosts of a fleet answered."""

DOCUMENTATION = r"""
name: report_page
short_description: Makes a page of the answers of a fleet
version_added: 0.1.0
description:
  - Makes one HTML page of what the hosts answered to M(orvex.policy.state_info).
  - The page needs no network, and asks for none. Names in it may hold any characters.
positional: _input
options:
  _input:
    description: The answer of each host, as registered, by the name of the host. An empty one is a host that gave none.
    type: dict
    required: true
  time:
    description: When the hosts were asked, as in C(2030-01-31T12:00:00Z).
    type: str
    required: true
  language:
    description: The language that the page opens in. It has a switch for the other one.
    type: str
    choices: [zh, en]
    default: zh
author:
  - The maintainers of orvex_policy (@orvex)
"""

EXAMPLES = r"""
- name: Write a page about two hosts
  ansible.builtin.copy:
    content: "{{ answers | orvex.policy.report_page(time=now(utc=true, fmt='%Y-%m-%dT%H:%M:%SZ'), language='en') }}"
    dest: report.html
    mode: "0600"
  vars:
    answers:
      web1: "{{ hostvars.web1.answer }}"
      web2: "{{ hostvars.web2.answer }}"
"""

RETURN = r"""
_value:
  description: The page.
  type: str
"""

import base64
import hashlib
import json
import string
from collections.abc import Mapping
from pathlib import Path

from ansible.errors import AnsibleFilterError
from ansible.utils.unsafe_proxy import wrap_var

PARTS = Path(__file__).parent.parent / "plugin_utils" / "report_page"


CHANGES = ("add", "remove", "update")
NO_ANSWER = "what the host answered is no answer of orvex.policy.state_info"


def read_texts(values):
    """Returns the values of a list as texts."""
    if not isinstance(values, list):
        raise TypeError("no list")
    return [str(value) for value in values]


def number_difference(difference, numbers):
    """Returns the number of a difference. Each stands in the page once, as a fleet mostly differs alike."""
    if difference["change"] not in CHANGES:
        raise ValueError("no change")
    words = (str(difference[key]) if key in difference else None for key in ("host", "document"))
    fields = (difference["change"], str(difference["place"]), str(difference["name"]), *words)
    return numbers.setdefault(fields, len(numbers))


def describe_policy(answer, numbers):
    """Returns what the page shows of a host that answered, with the numbers of its differences."""
    policy = answer["policy"]
    host = {
        "framework": str(policy["framework"]),
        "modules": {str(name): str(word) for name, word in policy.get("modules", {}).items()},
        "refused": read_texts(answer.get("refused", [])),
        "tampered": read_texts(answer["tampered"]),
        "restart": bool(answer.get("reboot_required")),
    }
    if "drift" in answer:
        host["drift"] = [number_difference(difference, numbers) for difference in answer["drift"]]
    return host


def describe_host(name, answer, numbers):
    """Returns what the page shows of a host. One with a strange answer must not take the others from the page."""
    if not answer or answer.get("unreachable") or answer.get("failed"):
        problem = "failed" if answer.get("failed") else "unreachable"
        return {"name": name, "problem": problem, "message": str(answer.get("msg", "")).strip()}
    try:
        return {"name": name, **describe_policy(answer, numbers)}
    except (AttributeError, KeyError, TypeError, ValueError):
        return {"name": name, "problem": "failed", "message": NO_ANSWER}


def write_data(value):
    """Returns the value as JSON that cannot end the script element it stands in."""
    return json.dumps(value, separators=(",", ":")).replace("<", "\\u003c")


def make_digest(text):
    """Returns the word by which the page's security policy names a style or a script."""
    digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
    return f"'sha256-{digest}'"


def report_page(answers, time, language="zh"):
    """Returns the page as text."""
    if not isinstance(answers, Mapping):
        raise AnsibleFilterError("report_page needs the answers of the hosts by their names")
    if language not in ("zh", "en"):
        raise AnsibleFilterError(f"report_page knows the languages zh and en, not {language}")
    numbers = {}
    hosts = [describe_host(name, answer, numbers) for name, answer in answers.items()]
    data = {"language": language, "time": time, "hosts": hosts, "differences": list(numbers)}
    style = (PARTS / "page.css").read_text(encoding="utf-8")
    script = (PARTS / "page.js").read_text(encoding="utf-8")
    page = string.Template((PARTS / "page.html").read_text(encoding="utf-8")).substitute(
        style_digest=make_digest(style),
        script_digest=make_digest(script),
        style=style,
        script=script,
        data=write_data(data),
    )
    # What looks like a template in a name must stay a name.
    return wrap_var(page)


class FilterModule:
    """The filter, by its name."""

    def filters(self):
        return {"report_page": report_page}
