# SPDX-License-Identifier: Apache-2.0
"""Prints what a report page holds of each host, a line each."""

import json
import re
import sys
from pathlib import Path


def describe(host, differences):
    """Returns the words for a host that gave its policy."""
    yield host["framework"]
    yield "on: " + " ".join(name for name, word in host["modules"].items() if word == "on")
    if host["tampered"]:
        yield "tampered: " + " ".join(host["tampered"])
    if host["restart"]:
        yield "restart"
    if "drift" not in host:
        yield "not compared"
    for change, _, name, before, wanted in (differences[number] for number in host.get("drift", [])):
        yield f"{name} {before} {wanted}" if before and wanted else f"{change} {name}"


def main():
    page = Path(sys.argv[1]).read_text(encoding="utf-8")
    data = json.loads(re.search(r'id="data">(.*?)</script>', page).group(1))
    for host in data["hosts"]:
        if "problem" in host:
            print(f"{host['name']}: {host['problem']}: {host['message']}")
        else:
            print(f"{host['name']}: {', '.join(describe(host, data['differences']))}")


main()
