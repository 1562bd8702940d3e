# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# The words and options that the help texts of the programs name. The programs have to be in PATH. Each row is
#   CONTEXT <tab> WORDS <tab> TEXT
# where CONTEXT is what stands between the program and the words, and WORDS are names of one thing: "-A --add".

# print_policy_words: those of orvex_policy.
print_policy_words() {
  local module
  orvex_policy --help | read_policy_help ''
  for module in $(orvex_policy --help | sed -nE '/^   module:/,/^   [a-z]/ s/^       ([a-z]+):.*/\1/p'); do
    orvex_policy "$module" --help | read_policy_help "$module"
  done
}

# read_policy_help MODULE: a row for each entry of the help on standard input.
read_policy_help() {
  awk -v module="$1" -v OFS='\t' '
    # text_behind(NAME): what the line says behind this name.
    function text_behind(name) {
      line = $0
      sub(/^ */, "", line)
      line = substr(line, length(name) + 1)
      sub(/^ */, "", line)
      return line
    }
    BEGIN { context = module }
    /^示例:/ { exit }
    # Two words in one: "script [on|off]".
    / script \[on\|off\]/ { print module, "script", $NF }
    /^ +\[/ { context = module; next }
    /^ +exec( script)?$/ { context = $1 ($2 == "" ? "" : " " $2); next }
    /^ +-[a-zA-Z], --/ {
      print module, substr($1, 1, 2) " " $2, text_behind($1 " " $2)
      option = substr($1, 1, 2)
    }
    /^ +--/ { print module, $1, text_behind($1) }
    /^ +(on|off) / { print context, $1, text_behind($1) }
    # A value stands below its option, a global word below nothing.
    /^ +[a-z]+:/ && $0 !~ /^ +module:/ && $1 != module ":" {
      print module == "" ? "" : module " " option, substr($1, 1, length($1) - 1), text_behind($1)
    }'
}

# print_tool_words TOOL [COMMAND...]: those of a tool that lists its commands in its help, such as orvex_local, and of what
# these take in turn.
print_tool_words() {
  local command
  "$@" --help | read_tool_help "${*:2}"
  for command in $("$@" --help | sed -n '/^Subcommands:/,$ s/^  \([a-z]*\) .*/\1/p'); do
    print_tool_words "$@" "$command"
  done
}

# read_tool_help CONTEXT: a row for each entry of the help on standard input, in which the texts stand in a column of their own.
read_tool_help() {
  awk -v context="$1" -v OFS='\t' '
    /^[A-Z]/ { is_list = /^(Options|Subcommands):/ }
    is_list && /^  [-a-z]/ {
      words = $1
      sub(/,/, " ", words)
      print context, words, substr($0, 31)
    }'
}
