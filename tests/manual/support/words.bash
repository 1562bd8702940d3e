# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What a person can type, read out of the programs' own help texts. One line each: the module or command that it belongs to,
# or "-" for the program itself; a tab; the word or option.

# print_policy_words: of orvex_policy.
print_policy_words() {
  local module
  read_policy_help - orvex_policy
  for module in $(list_policy_modules); do
    read_policy_help "$module" orvex_policy "$module"
  done
}

# list_policy_modules: the words of its modules.
list_policy_modules() {
  orvex_policy | sed -nE '/^   module:/,/^   [a-z]/s/^       ([a-z]+):.*/\1/p'
}

# read_policy_help OWNER COMMAND...: the words of the help text that the command prints. Its examples hold none of its own.
read_policy_help() {
  "${@:2}" | awk -v owner="$1" '
    /^示例/ { exit }
    sub(/^.* orvex_policy /, "") || /^ +(-|[a-z]+(:| |$))/ {
      gsub(/<[^>]*>/, "")
      gsub(/[][|,:]/, " ")
      for (field = 1; field <= NF; ++field) {
        if ($field !~ /^(-[A-Za-z]|--[a-z]+|[a-z]+)$/) break
        if ($field != owner && $field != "module" && !seen[$field]++) print owner "\t" $field
      }
    }'
}

# print_tool_words TOOL: of a tool that answers --help with a list of its commands, such as orvex_local. What stands behind a
# command belongs to it, however deep.
print_tool_words() {
  local command
  read_tool_help - "$1"
  for command in $(list_tool_commands "$1"); do
    printf -- '-\t%s\n' "$command"
    read_tool_help "$command" "$1" "$command"
  done
}

# list_tool_commands COMMAND...: the commands that its help text lists.
list_tool_commands() {
  "$@" --help | sed -nE '/^Subcommands:$/,$s/^  ([a-z]+) .*/\1/p'
}

# read_tool_help OWNER COMMAND...: the words of the help text of the command, and of the commands that it lists.
read_tool_help() {
  local owner=$1 word
  shift
  "$@" --help | sed -n '/^Options:$/,/^$/p' | grep -oE '^  (-[a-z],)?--[a-z-]+' | tr -d ' ' | tr ',' '\n' |
    sed "s/^/$owner\t/"
  [[ $owner != - ]] || return 0
  for word in $(list_tool_commands "$@"); do
    printf '%s\t%s\n' "$owner" "$word"
    read_tool_help "$owner" "$@" "$word"
  done
}
