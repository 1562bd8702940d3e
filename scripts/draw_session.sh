#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Draws the first chapters of the demonstration as a picture of a terminal, in SVG on standard output.
#
# usage: scripts/demo.sh | scripts/draw_session.sh
#
# A change of what the demonstration prints there needs a new docs/session.svg.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/script.bash"

answer_help "$@"
[[ $# -eq 0 ]] || refuse_argument "$1"

# Up to the chapter about what is released, without the headings.
awk '
  /^== The framework is switched on/ { inside = 1; next }
  /^== It is released/ { exit }
  /^== / || !inside { next }
  # Commands stand apart as far as their output does.
  /^$/ { next }
  { gsub(/&/, "\\&amp;"); gsub(/</, "\\&lt;"); gsub(/>/, "\\&gt;"); line[++count] = $0 }
  END {
    if (count == 0) exit 1
    height = 20
    top = 52
    total = top + count * height + 8
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"720\" height=\"%d\" viewBox=\"0 0 720 %d\" role=\"img\">\n", total, total
    print "<title>A session of orvex_policy</title>"
    printf "<rect width=\"720\" height=\"%d\" rx=\"8\" fill=\"#1d2330\"/>\n", total
    print "<circle cx=\"20\" cy=\"18\" r=\"6\" fill=\"#ef6b73\"/>"
    print "<circle cx=\"40\" cy=\"18\" r=\"6\" fill=\"#e5b567\"/>"
    print "<circle cx=\"60\" cy=\"18\" r=\"6\" fill=\"#8cc570\"/>"
    printf "<g font-family=\"DejaVu Sans Mono, Menlo, Consolas, Noto Sans Mono CJK SC, Noto Sans CJK SC, "
    print "PingFang SC, Microsoft YaHei, monospace\" font-size=\"14\" xml:space=\"preserve\">"
    for (i = 1; i <= count; ++i)
      printf "<text x=\"20\" y=\"%d\" fill=\"%s\">%s</text>\n", top + (i - 1) * height,
        line[i] ~ /^# / ? "#8cc570" : "#e6e9f0", line[i]
    print "</g>"
    print "</svg>"
  }'
