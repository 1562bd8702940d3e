#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What orvex_local says about itself.

load "$ORVEX_SOURCE_DIR/tests/support/help_words.bash"

setup() {
  PATH=$ORVEX_BIN_DIR:$PATH
  cd "$BATS_TEST_TMPDIR" || return
}

# print_help_lines PATTERN: the lines of all help texts that match, with one blank between two words.
print_help_lines() {
  local command
  for command in '' show load restart reset scene roles label 'label add' 'label remove' blacklist 'blacklist add' \
    'blacklist remove' log fail run trace; do
    # shellcheck disable=SC2086
    orvex_local $command --help | sed -nE "/$1/ s/ +/ /gp"
  done
}

@test "the help tells what each command and option is for" {
  diff -u - <(print_tool_words orvex_local | grep -v -- '--help' | tr '\t' '|') <<'ROWS'
|--version|Display program version information and exit
|show|Print all states and lists
|load|Put a document of 'show --json' in place of all states and lists
|restart|Simulate a restart of the machine
|reset|Bring the store back to what it holds when new
|scene|Switch the secret scene mode, which forbids changes of state
|roles|Separate the administrator roles (3adm), so that user 600 acts
|label|Give a file the label of an administrator role, or take it away
|blacklist|Programs that process kill protection refuses to protect
|log|Print the log: time, level, tag, function and message of each record
|fail|Let the next calls of a service function fail
|run|Run a command on the stand-in
|trace|Run a command on the stand-in and print its service calls
show|--json|Print them as one JSON document
reset|--force|Drop also what is no store that can be read
scene|on|Switch it on
scene|off|Switch it off
roles|on|Put the separation in force
roles|off|End it
label|add|Give PATH the label of ROLE
label|remove|Take the label of ROLE away from PATH
blacklist|add|Put PATH on the list
blacklist|remove|Take PATH off the list
log|-f --follow|Go on printing records as they come
fail|--times|How many calls fail; without it all do
fail|--after|How many calls work before
fail|--error|What orvex_get_error says then
fail|--list|Print what is still to fail
fail|--clear|Let nothing fail any more
run|--state|The state directory, made where it is missing
run|--uid|The user to run it as: 0 or 600
trace|--json|Print each call as a JSON object
trace|-o --output|Write to FILE instead of standard error
ROWS
}

@test "the help tells what each argument is" {
  diff -u - <(print_help_lines '^  [A-Z]+ TEXT') <<'ROWS'
 FILE TEXT REQUIRED The document; - is standard input
 ROLE TEXT REQUIRED root, secadm or auditadm
 PATH TEXT REQUIRED The file, which need not exist
 ROLE TEXT REQUIRED root, secadm or auditadm
 PATH TEXT REQUIRED The file, which need not exist
 PATH TEXT REQUIRED The program, which need not exist
 PATH TEXT REQUIRED The program, which need not exist
 CALL TEXT The function
 RESULT TEXT What it returns: a number, or null for a pointer
ROWS
}

@test "the help tells where the store lies, and how a command is run" {
  orvex_local --help >help.txt
  [[ $(head -n 3 help.txt) == "Plays the part of the security framework for the stand-in of its service library.
The store lies in \$ORVEX_LOCAL_STATE, else in /var/lib/orvex-local (root and user 600), else in
\$XDG_STATE_HOME/orvex-local, which is ~/.local/state/orvex-local by default." ]]
  for command in run trace; do
    [[ $(orvex_local "$command" --help) == *'COMMAND... follows the options: a command with its arguments.' ]]
  done
}
