#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# docs/messages.tsv has every text that the program prints, and what is made of it is in step.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/scripts/lib/messages.bash"

setup() {
  cd "$ORVEX_SOURCE_DIR" || return
  export LC_ALL=C
  table=docs/messages.tsv
  # What stands in a message for what the program puts there.
  placeholders='FILES?|DIRS?|PATH|PACKAGES?|OBJECT|PROGRAM|PID|NAME|MODULE|EXCEPTIONS?|LIST'
  placeholders+='|TEXT|REASON|ERROR|NUMBER|STATE|ROLE|LABEL|TIME'
}

# print_chinese: of the lines on standard input those that hold a letter beyond ASCII.
print_chinese() {
  grep -P '[\x80-\xff]'
}

# print_literals: the Chinese texts of the sources.
print_literals() {
  find src -name '*.cpp' -o -name '*.h' | sort | xargs sed 's|//.*||' |
    grep -oP '"(?:[^"\\]|\\.)*"' | sed 's/^"//; s/"$//' | print_chinese | sort -u
}

# print_pieces: the Chinese texts of the table, without what the program puts between them.
print_pieces() {
  tail -n +2 "$table" | cut -f 2 | sed -E "s/$placeholders/\n/g" | print_chinese | sort -u
}

# print_patterns: the Chinese messages of the table as regular expressions.
print_patterns() {
  tail -n +2 "$table" | cut -f 2 | print_chinese | sed -E "s/[][\\.*^$+?(){}|]/\\\\&/g; s/$placeholders/.*/g"
}

# print_expected_lines: what the sessions of the tests expect on the screen, but for rows in which only a name is Chinese.
print_expected_lines() {
  awk '
    /^END$/ { inside = 0 }
    inside
    /<<.?END/ { inside = 1 }' tests/cli/*.bats tests/cli/support/*.bash |
    print_chinese | grep -vE ': (root|secadm|auditadm|none)$' | sort -u
}

@test "each Chinese text of the program is in the table, and none that is gone" {
  [[ $(print_literals | wc -l) -gt 200 ]]
  diff -u <(print_literals) <(print_pieces)
}

@test "each message is listed once, with its class, its meaning and what to do" {
  head -n 1 "$table" | diff -u - <(printf 'class\ttext\tmeaning\twhat to do\n')
  [[ -z $(cut -f 2 "$table" | sort | uniq -d) ]]
  classes=$(printf 'help\n%s\n' "$message_classes" | cut -d '|' -f 1)
  tail -n +2 "$table" | cut -f 1 | sort -u | diff -u <(sort <<<"$classes") -
  awk -F '\t' 'NF != 4 || $2 == "" || $3 == "" || $4 == "" || /^(refused|failed|question)/ && $4 == "-" { print; wrong = 1 }
    END { exit wrong }' "$table"
}

@test "what the sessions expect on the screen is in the table" {
  [[ $(print_expected_lines | wc -l) -gt 100 ]]
  print_expected_lines | grep -vxE -f <(print_patterns) | diff -u /dev/null -
}

@test "the page of messages is in step with the table and the help texts" {
  print_message_page "$table" src | diff -u docs/messages.md -
}

@test "a line of a help text without its English is told" {
  run ! print_help_in_english <(grep -v '示例' "$table") src/modules/box/box_module.cpp
  [[ $output == *'no English for: 示例:'* ]]
}
