# SPDX-License-Identifier: Apache-2.0
"""What the hosts of an invented fleet answer, and the page of it."""

import importlib.util
import random
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[3]
MODULES = ("exec", "exec script", "net", "kmod", "file", "proc", "3adm", "box")


def load_builder():
    """Returns the module that makes pages."""
    file = SOURCES / "fleet/plugins/filter/report_page.py"
    found = importlib.util.spec_from_file_location("report_page", file)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


def write_page(file, answers, language="en"):
    """Writes the page of these answers to the file."""
    page = load_builder().report_page(answers, time="2030-01-31T12:00:00Z", language=language)
    Path(file).write_text(page, encoding="utf-8")


def answer(drift=(), tampered=(), refused=(), restart=False, framework="enabled", **states):
    """Returns what a host answers; states are those of modules that are not on."""
    modules = {} if framework == "disabled" else {name: states.get(name, "on") for name in MODULES}
    policy = {"version": 1, "framework": framework, "modules": modules}
    return {"policy": policy, "drift": list(drift), "tampered": list(tampered), "refused": list(refused),
            "reboot_required": restart}


def change(place, name, host=None, document=None):
    """Returns a difference as `orvex_state diff --json` tells it."""
    words = {key: word for key, word in (("host", host), ("document", document)) if word}
    kind = "update" if host and document else "remove" if host == "" else "add"
    return {"change": kind, "place": place, "name": name, **words}


def small_fleet():
    """Three hosts: one that is as it should be, one that is not, and one that cannot be reached."""
    return {
        "db1": answer(box="off"),
        "web1": answer(
            drift=[
                change("/modules", "kmod", "off", "on"),
                change("/exec/whitelist", "/usr/local/bin/deploy", "tampered", "intact"),
                change("/file/files", "/etc/hosts"),
                change("/file/files/~1etc~1ssh~1sshd_config/excepted_packages", "vim"),
                change("/kmod/modules", "ext4", ""),
            ],
            tampered=["/usr/local/bin/deploy"],
            kmod="off",
        ),
        "web2": {"unreachable": True, "msg": "Failed to connect to the host via ssh: Connection refused"},
    }


def invented_host(chance, number):
    """Returns the answer of one host of a large fleet."""
    luck = chance.random()
    if luck < 0.02:
        return {"unreachable": True, "msg": f"Failed to connect to the host via ssh: 10.0.0.{number % 250}: No route"}
    if luck < 0.03:
        return {"failed": True, "msg": "orvex_state: the package orvex-policy is not installed"}
    if luck < 0.06:
        return answer(framework="disabled", restart=True, drift=[change("", "framework", "disabled", "enabled")])
    if luck < 0.2:
        drift = [change("/file/files", f"/etc/app/{chance.randrange(40)}.conf") for _ in range(chance.randrange(1, 12))]
        return answer(drift=[change("/modules", "net", "off", "on"), *drift], net="off", box="off")
    if luck < 0.24:
        files = [f"/opt/app/bin/tool{chance.randrange(90)}" for _ in range(chance.randrange(1, 4))]
        drift = [change("/exec/whitelist", file, "tampered", "intact") for file in files]
        return answer(drift=drift, tampered=files, box="off")
    return answer(framework="enabled" if luck < 0.95 else "permissive", box="off", file="warning" if luck > 0.9 else "on")


def large_fleet(count=1000):
    """Returns the answers of many hosts, the same ones each time."""
    chance = random.Random(1)
    return {f"host{number}": invented_host(chance, number) for number in range(1, count + 1)}


HOSTILE_NAMES = (
    "</script><script>document.title = 'taken'</script>",
    "<img src=x onerror=\"document.title = 'taken'\">",
    "<!--<script>",
    "{{ lookup('pipe', 'id') }}",
    "two\nlines\tand a bell\a",
    "/tmp/\u202egnp.exe",
    "/opt/\\xff",
    "\ud800 \u2028 \ufeff",
    "'\"`${title}$$",
    "文件 " + "long " * 60,
)


def hostile_fleet():
    """Two hosts that are full of names which would do something, or hide, if a page let them."""
    drift = [change("/file/files/" + name.replace("~", "~0").replace("/", "~1"), name) for name in HOSTILE_NAMES]
    return {
        HOSTILE_NAMES[0]: answer(drift=drift, tampered=HOSTILE_NAMES),
        HOSTILE_NAMES[1]: {"failed": True, "msg": "\n".join(HOSTILE_NAMES)},
    }
