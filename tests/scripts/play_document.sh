#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Types what a document tells its reader to type, and compares what comes out with what stands there.
#
# usage: play_document.sh --programs DIR DOCUMENT
#
# Only blocks marked "console" are played, all of a document in one shell of scripts/play.sh. A line that begins with "# " is
# a command, the lines below it up to the next one are its output. The document's place to play in is /tmp/demo. A block that
# is marked with its kind and the name of a file, as in "yaml hosts.yml", is that file, there from the start.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
source "$top/scripts/lib/script.bash"

# print_sessions DOCUMENT: the blocks, without the fences. The end of a block ends the output of its last command.
print_sessions() {
  awk '
    /^ *```console$/ { inside = 1; next }
    /^ *```$/ { inside = 0; next }
    inside' "$1"
}

# print_files DOCUMENT: commands that write the files.
print_files() {
  awk -v end=END_OF_THE_FILE '
    /^```[a-z]+ [^ ]+$/ { inside = 1; printf "mkdir -p \"$(dirname %s)\"; cat >%s <<\"%s\"\n", $2, $2, end; next }
    /^```$/ && inside { inside = 0; print end; next }
    inside' "$1"
}

# print_input SESSIONS: the commands, each behind a command that prints it as the document does.
print_input() {
  local line
  while IFS= read -r line; do
    if [[ $line == '# '* ]]; then
      printf "printf '%%s\\\\n' %q\n%s\n" "$line" "${line#\# }"
    fi
  done <"$1"
}

answer_help "$@"
[[ $# -eq 3 && $1 == --programs && -f $3 ]] || refuse_call
make_scratch
place=$scratch/place
print_sessions "$3" | sed "s|/tmp/demo|$place|g" >"$scratch/expected"
grep -q '^# ' "$scratch/expected" || fail "nothing to play in $3"
{
  print_files "$3" | sed "s|/tmp/demo|$place|g"
  print_input "$scratch/expected"
} >"$scratch/input"
"$top/scripts/play.sh" --programs "$2" "$place" <"$scratch/input" >"$scratch/output" 2>&1
# What play.sh says of itself comes first.
sed -i '0,/building packages to play with$/d' "$scratch/output"
diff -u --ignore-trailing-space --label "$3" --label 'what came out' <(sed "s|$place|/tmp/demo|g" "$scratch/expected") \
  <(sed "s|$place|/tmp/demo|g" "$scratch/output")
