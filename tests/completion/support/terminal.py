#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Types into an interactive shell, in a terminal of its own, and looks at the screen.

usage: terminal.py SHELL offers <CASES
       terminal.py SHELL enters KEYS
       terminal.py SHELL times KEYS RESULT

SHELL   bash, bash-completion (bash with the package of that name), zsh or fish
offers  asks for the completion of each case and compares what the shell offers. A case is a line "? KEYS", and behind it the
        lines that are offered: words and, after a tab, their description, which bash does not show.
enters  types KEYS, with <tab> for the tabulator, and the enter key. Stops as soon as the command that was entered has ended.
times   prints in how many milliseconds KEYS become RESULT after the tabulator: the least of many times, the first left out.

The home is in HOME, the completions of the build tree are in ORVEX_COMPLETION_DIR.
"""
import os
import pathlib
import re
import sys
import time

import pexpect
import pyte

COMPLETIONS = os.environ["ORVEX_COMPLETION_DIR"]
HOME = pathlib.Path(os.environ["HOME"])
PATIENCE_SECONDS = 20
COLUMNS, ROWS = 200, 60

# A list of all that fits shows at the first tabulator.
BASH = "PS1='$ '\nbind 'set bell-style none' 'set show-all-if-ambiguous on'\n"
ZSH = "PS1='$ '\nunsetopt beep list_ambiguous\nautoload -U compinit\ncompinit -u -D\n"
CONFIGURATIONS = {
    "bash": (".bashrc", f"{BASH}for file in '{COMPLETIONS}'/*.bash; do source \"$file\"; done\n"),
    "bash-completion": (".bashrc", f"{BASH}source /usr/share/bash-completion/bash_completion\n"),
    "zsh": (".zshrc", f"fpath=('{COMPLETIONS}' $fpath)\n{ZSH}"),
    "fish": (
        ".config/fish/config.fish",
        "set -g fish_greeting\nset -g fish_autosuggestion_enabled 0\nfunction fish_prompt; echo -n '$ '; end\n"
        f"set -p fish_complete_path '{COMPLETIONS}'\n",
    ),
}
COMMANDS = {
    "bash": ["bash", "--noprofile", "--rcfile", str(HOME / ".bashrc"), "-i"],
    "zsh": ["zsh", "-i"],
    "fish": ["fish", "-i"],
}


class Terminal:
    """A shell at its prompt."""

    def __init__(self, name):
        self.family = name.partition("-")[0]
        file, text = CONFIGURATIONS[name]
        configuration = HOME / file
        configuration.parent.mkdir(parents=True, exist_ok=True)
        configuration.write_text(text)
        self.screen = pyte.Screen(COLUMNS, ROWS)
        self.stream = pyte.ByteStream(self.screen)
        command, *arguments = COMMANDS[self.family]
        self.shell = pexpect.spawn(command, arguments, dimensions=(ROWS, COLUMNS))
        self.shell.delaybeforesend = None
        self.wait_for(lambda: self.lines() == ["$"])

    def lines(self):
        """What stands on the screen."""
        return [line.rstrip() for line in self.screen.display if line.strip()]

    def wait_for(self, is_reached):
        """Follows the screen until that is so, and tells whether it came to be."""
        end = time.monotonic() + PATIENCE_SECONDS
        while not is_reached():
            if time.monotonic() > end:
                return False
            try:
                self.stream.feed(self.shell.read_nonblocking(65536, 0.02))
            except pexpect.TIMEOUT:
                pass
        return True

    def type(self, keys):
        self.shell.send(keys)

    def clear(self):
        """An empty line on an empty screen."""
        self.type("\x15\x0c")
        self.wait_for(lambda: self.lines() == ["$"])

    def offered(self):
        """Pairs of a word and its description, as the lines below the prompt show them."""
        rows = [line for line in self.lines()[1:] if not line.startswith("$")]
        if self.family == "bash":
            return {(word, "") for row in rows for word in row.split()}
        if self.family == "zsh":
            parts = [row.partition(" -- ")[::2] for row in rows]
        else:
            # Names, then the description in brackets, which may hold brackets; several times in a row.
            entry = r"((?:[^\s(]+ +)+)\(((?:[^()]|\([^()]*\))*)\)|(\S+)"
            parts = [
                (words or word, text) for row in rows for words, text, word in re.findall(entry, row)
            ]
        return {(word, text.strip()) for words, text in parts for word in words.split()}


def read_cases():
    """Pairs of the keys and the set of what is to be offered."""
    cases = []
    for line in sys.stdin.read().splitlines():
        if line.startswith("? "):
            cases.append((line[2:], set()))
        else:
            words, _, text = line.partition("\t")
            cases[-1][1].update((word, text) for word in words.split())
    return cases


def check_offers(terminal):
    has_failed = False
    for keys, expected in read_cases():
        has_texts = terminal.family != "bash" and any(text for _, text in expected)

        def shown(pairs):
            return sorted(pairs if has_texts else {(word, "") for word, _ in pairs})

        terminal.clear()
        terminal.type(keys + "\t")
        if not terminal.wait_for(lambda: shown(terminal.offered()) == shown(expected)):
            has_failed = True
            print(f"offered for: {keys}", *terminal.lines(), "expected:", *shown(expected), sep="\n")
    return has_failed


def enter(terminal, keys):
    terminal.type(keys.replace("<tab>", "\t") + "\r")
    return not terminal.wait_for(lambda: len(terminal.lines()) > 1 and terminal.lines()[-1] == "$")


def measure(terminal, keys, result):
    times = []
    for _ in range(20):
        terminal.clear()
        terminal.type(keys)
        terminal.wait_for(lambda: terminal.lines() == ["$ " + keys])
        start = time.monotonic()
        terminal.type("\t")
        if not terminal.wait_for(lambda: terminal.lines() == ["$ " + result]):
            sys.exit("\n".join(["not completed:", *terminal.lines()]))
        times.append(time.monotonic() - start)
    print(f"{min(times[1:]) * 1000:.1f}")
    return False


TASKS = {"offers": check_offers, "enters": enter, "times": measure}


def main():
    shell, task, *keys = sys.argv[1:]
    terminal = Terminal(shell)
    has_failed = TASKS[task](terminal, *keys)
    terminal.shell.close(force=True)
    return has_failed


sys.exit(main())
