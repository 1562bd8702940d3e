#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What the documents tell their readers to type gives what stands there.
bats_require_minimum_version 1.5.0

play() {
  "$ORVEX_SOURCE_DIR/tests/scripts/play_document.sh" --programs "$ORVEX_BIN_DIR" "$1"
}

@test "the README's tour comes out as it stands there, in each language" {
  for readme in "$ORVEX_SOURCE_DIR"/README*.md; do
    play "$readme"
  done
}

@test "the stand-in's sessions come out as they stand there" {
  play "$ORVEX_SOURCE_DIR/docs/local-service.md"
}

@test "the tour of many hosts comes out as it stands there" {
  command -v ansible-playbook >/dev/null || skip 'ansible is not installed'
  play "$ORVEX_SOURCE_DIR/docs/fleet.md"
}

# A player that compares nothing would pass the tests above.
@test "an output that does not fit is told" {
  sed 's/^orvex status : enable$/orvex status : enabled/' "$ORVEX_SOURCE_DIR/README.md" >"$BATS_TEST_TMPDIR/wrong.md"
  run ! play "$BATS_TEST_TMPDIR/wrong.md"
  [[ $output == *'-orvex status : enabled'* && $output == *'+orvex status : enable'* ]]
}

@test "a document without a session is refused" {
  echo 'nothing to type' >"$BATS_TEST_TMPDIR/empty.md"
  run ! play "$BATS_TEST_TMPDIR/empty.md"
}

@test "every block of the README is either played or a shell command of its own, in each language" {
  for readme in "$ORVEX_SOURCE_DIR"/README*.md; do
    grep -E '^ *```.' "$readme" | sort -u | diff -u - <(printf '```%s\n' console sh)
  done
}

@test "every picture and document that the README leads to exists, in each language" {
  cd "$ORVEX_SOURCE_DIR"
  # shellcheck disable=SC2016
  grep -ohE '\]\([^)]+\)|`[A-Za-z0-9_./-]+\.(md|sh)`' README*.md | tr -d '`()]' | sort -u >"$BATS_TEST_TMPDIR/named"
  grep -q '^docs/session.svg$' "$BATS_TEST_TMPDIR/named"
  while read -r file; do
    [[ -e $file ]]
  done <"$BATS_TEST_TMPDIR/named"
}

# print_frame DOCUMENT: what does not depend on the language: the levels of the headings, the items, the rows and their cells,
# the blocks without the remarks in them, and all that is set as code.
print_frame() {
  awk '
    /^ *```/ { inside = !inside }
    inside { sub(/  +# .*/, ""); print; next }
    /^#+ / || /^- / { print $1 }
    /^\|/ { print "row of " gsub(/\|/, "|") }' "$1"
  # shellcheck disable=SC2016
  awk '/^ *```/ { inside = !inside } !inside' "$1" | grep -oE '`[^`]+`' | sort
}

@test "the README says the same in each language, and leads to the other" {
  cd "$ORVEX_SOURCE_DIR"
  [[ $(print_frame README.md | wc -l) -gt 200 ]]
  diff -u <(print_frame README.md) <(print_frame README.zh-CN.md)
  grep -q '^\[中文\](README.zh-CN.md)$' README.md
  grep -q '^\[English\](README.md)$' README.zh-CN.md
}
