#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What is offered is what the help texts of the programs name, with the help's own descriptions where the shell shows some.

load support/shell.bash
load "$ORVEX_SOURCE_DIR/tests/support/help_words.bash"

setup() {
  start_shell_session
  PATH=$ORVEX_BIN_DIR:$PATH
}

# print_cases PROGRAM: a case for the words in each context of the rows on standard input, and one for the options.
print_cases() {
  awk -F '\t' -v program="$1" '
    {
      key = program " " ($1 == "" ? "" : $1 " ") ($2 ~ /^-/ ? "-" : "")
      if (!(key in rows)) order[++count] = key
      rows[key] = rows[key] $2 "\t" $3 "\n"
    }
    END { for (at = 1; at <= count; ++at) printf "? %s\n%s", order[at], rows[order[at]] }'
}

@test "the words and options of orvex_policy" {
  # The help of net promises --package; the program knows another spelling.
  print_policy_words | sed '/^net\t-P --package\t/ s/package/pakcage/' | print_cases orvex_policy >cases
  [[ $(grep -c '^?' cases) -ge 17 ]]
  expect_offers <cases
}

@test "the words and options of orvex_local" {
  # Below the second level only the help remains, which nobody types there.
  print_tool_words orvex_local | awk -F '\t' '$1 !~ / / && $1 != "fail"' | print_cases orvex_local >cases
  [[ $(grep -c '^?' cases) -ge 17 ]]
  expect_offers <cases
}

@test "the words and options of orvex_state" {
  print_tool_words orvex_state | print_cases orvex_state >cases
  [[ $(grep -c '^?' cases) -eq 6 ]]
  expect_offers <cases
}

@test "the options of orvex_local fail" {
  # The service functions that it takes are no words of the help.
  print_tool_words orvex_local | awk -F '\t' '$1 == "fail"' | print_cases orvex_local >cases
  expect_offers <cases
}
