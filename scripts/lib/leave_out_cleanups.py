#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Leaves out of gcovr's JSON, from standard input to standard output, what only an exception of the standard library reaches.

gcovr knows the ways into a clean-up and leaves them out. The tests inside one, of what has to be destroyed, have no mark in
what gcov tells: they stand as pairs of branches, neither the one that is fallen through to, on a line that runs and in a
block that never does. A condition of the source always has one that is fallen through to.
"""

import json
import sys


def is_cleanup(pair):
    return len(pair) == 2 and all(branch["count"] == 0 and not branch["fallthrough"] for branch in pair)


def leave_out_cleanups(branches):
    kept = []
    while branches:
        step = 2 if is_cleanup(branches[:2]) else 1
        if step == 1:
            kept.append(branches[0])
        branches = branches[step:]
    return kept


report = json.load(sys.stdin)
for file in report["files"]:
    for line in file["lines"]:
        if line["count"] > 0:
            line["branches"] = leave_out_cleanups(line["branches"])
json.dump(report, sys.stdout)
