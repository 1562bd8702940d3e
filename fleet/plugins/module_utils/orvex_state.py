# SPDX-License-Identifier: Apache-2.0
"""What the modules share: the declared document, and runs of orvex_state on the host."""

import json

NOT_INSTALLED = "{0} is not on this host: install the package orvex-policy, or name the program with 'executable'"
NO_RIGHTS = "无权限执行"
RIGHTS_HINT = "become root (become: true), or user 600 where the roles are separated"

MODULES = ["exec", "exec script", "net", "kmod", "file", "proc", "3adm", "box"]


def make_section(sets=(), lists=()):
    """A section of the document: sets have a word or exceptions beside each name, lists have names alone."""
    fields = {name: dict(type="dict") for name in sets}
    fields.update({name: dict(type="list", elements="str") for name in lists})
    return dict(type="dict", options=dict(fields, exclusive=dict(type="bool")))


def make_sections():
    """The document's sections as arguments, in its own words. What stands in a set is left to orvex_state."""
    switch = dict(type="str", choices=["on", "off", "warning"])
    return {
        "framework": dict(type="str", choices=["disabled", "enabled", "permissive"]),
        "modules": dict(type="dict", options={name: switch for name in MODULES}),
        "exec": make_section(["whitelist"], ["excepted_files", "excepted_directories", "excepted_packages"]),
        "net": make_section(["packages", "programs"]),
        "file": make_section(["files", "directories", "packages"]),
        "proc": make_section(["programs"]),
        "kmod": make_section(lists=["modules"]),
    }


def make_arguments():
    """The arguments of both modules."""
    return dict(
        make_sections(),
        document=dict(type="dict", options=dict(make_sections(), version=dict(type="int", choices=[1]))),
        path=dict(type="path"),
        purge=dict(type="bool", default=False),
        executable=dict(type="str", default="orvex_state"),
    )


SECTIONS = list(make_sections())
EXCLUSIVE_ARGUMENTS = [("document", "path", section) for section in SECTIONS]


def drop_unset(value):
    """The value without what nobody set. An argument that is left out arrives as null."""
    if not isinstance(value, dict):
        return value
    return {name: drop_unset(inner) for name, inner in value.items() if inner is not None}


def split_lines(text):
    """The lines of a text. A name may hold what else would count as the end of a line."""
    return [line for line in text.split("\n") if line]


def list_tampered(policy):
    """The whitelisted files of a dump that were tampered with."""
    return sorted(name for name, word in policy["exec"]["whitelist"].items() if word == "tampered")


def show_drift(drift):
    """What differs, for a difference between two texts: as it is on the host, and as the document has it."""

    def show(difference, word):
        name = difference["name"]
        line = " ".join(filter(None, [difference["place"], name if name.isprintable() else json.dumps(name)]))
        return line + ": " + difference[word] if word in difference else line

    return dict(
        before_header="host",
        after_header="document",
        before="".join(show(each, "host") + "\n" for each in drift if each["change"] != "add"),
        after="".join(show(each, "document") + "\n" for each in drift if each["change"] != "remove"),
    )


class Answer:
    """What a run of orvex_state said and how it ended."""

    # Its exit values.
    DONE = 0
    DIFFERENT = 1
    REFUSED = 2
    RESTART_NEEDED = 3

    def __init__(self, exit_value, output, errors):
        self.exit_value = exit_value
        self.output = output
        self.errors = [line[len("orvex_state: "):] if line.startswith("orvex_state: ") else line
                       for line in split_lines(errors)]

    @property
    def reboot_required(self):
        return self.exit_value == self.RESTART_NEEDED

    @property
    def reasons(self):
        """Why the run failed. A program that breaks off says nothing."""
        return self.errors or ["orvex_state ended with {0}".format(self.exit_value)]


class OrvexState:
    """Runs orvex_state on the host, with the declared document on its standard input."""

    def __init__(self, module):
        self.module = module
        wanted = module.params["executable"]
        self.program = module.get_bin_path(wanted)
        if self.program is None:
            module.fail_json(msg=NOT_INSTALLED.format(wanted))
        self.document = self._read_document()

    def _read_document(self):
        params = self.module.params
        if params["document"] is not None:
            return drop_unset(params["document"])
        return drop_unset({section: params[section] for section in SECTIONS})

    @property
    def has_document(self):
        """Whether the task declares anything; an empty document declares nothing and is one."""
        return any(self.module.params[name] is not None for name in SECTIONS + ["document", "path"])

    def dump(self):
        """The policy of the host."""
        return json.loads(self._expect([Answer.DONE], "dump").output)

    def diff(self):
        """What differs between host and document."""
        return json.loads(self._expect([Answer.DONE, Answer.DIFFERENT], "diff", "--json").output)

    def plan(self):
        """What a run would do."""
        return self._run("plan")

    def apply(self):
        """A run, which changes the host."""
        return self._run("apply")

    def fail(self, lines, **result):
        """Ends the module with what the host said."""
        hints = [RIGHTS_HINT] if NO_RIGHTS in "".join(lines) else []
        self.module.fail_json(msg="\n".join(lines + hints), **result)

    def _expect(self, exit_values, *words):
        answer = self._run(*words)
        if answer.exit_value not in exit_values:
            self.fail(answer.reasons)
        return answer

    def _run(self, *words):
        command = [self.program] + list(words)
        if words[0] == "dump":
            return Answer(*self.module.run_command(command))
        if not self.module.params["purge"]:
            command.append("--keep-others")
        path = self.module.params["path"]
        if path is not None:
            return Answer(*self.module.run_command(command + [path]))
        document = json.dumps(dict(self.document, version=1))
        return Answer(*self.module.run_command(command + ["-"], data=document))
