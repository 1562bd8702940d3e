#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# A run that is interrupted at any moment leaves nothing that a second one does not finish.

load support/state.bash

setup() {
  start_state_session
  switch_on exec net file
  write_script a.sh
  touch notes.txt editor
  do_silently 0 orvex_policy exec -A -f a.sh
  do_silently 0 orvex_policy net -A -P orvex-demo-tools
  do_silently 0 orvex_policy net -U -P orvex-demo-tools -v allow
  do_silently 0 orvex_policy file -A -f notes.txt
  do_silently 0 orvex_policy file -A -f notes.txt -e -f editor
  do_silently 0 orvex_policy net off
  dump mine.json
  mkdir -p trial/bin
  cp "$programs/orvex_state" trial/bin
  ln -s "$(readlink -f "$programs/../lib")" trial/lib
}

# make_sibling ACTION: in place of orvex_policy the copy of orvex_state runs a script. It counts its calls, and takes the
# action, a piece of shell, at the one whose number is in the file "moment".
make_sibling() {
  cat >trial/bin/orvex_policy <<END
#!/bin/bash
cd "$PWD" || exit
calls=\$((\$(<calls) + 1))
echo "\$calls" >calls
policy() { "$programs/orvex_policy" "\$@"; }
if [[ \$calls -eq \$(<moment) ]]; then
  $1
else
  policy "\$@"
fi
END
  chmod +x trial/bin/orvex_policy
}

# interrupt_at_each_command: from an emptied host and back to one, with one interruption at each command in turn.
interrupt_at_each_command() {
  local moment=0 is_interrupted=true
  while $is_interrupted; do
    moment=$((moment + 1))
    echo 0 >calls
    echo "$moment" >moment
    empty_host
    as 0 trial/bin/orvex_state apply mine.json
    is_interrupted=false
    if [[ $(<calls) -ge $moment ]]; then
      is_interrupted=true
      echo "interrupted at $moment: $exit_value"
      [[ $exit_value -ne 0 ]]
    fi
    as 0 orvex_state apply mine.json
    [[ $exit_value -eq 0 ]]
    dump again.json
    cmp mine.json again.json
  done
  [[ $moment -eq 10 ]]
}

@test "a run that is killed before a command is finished by the next" {
  # shellcheck disable=SC2016
  make_sibling 'kill -KILL $PPID'
  interrupt_at_each_command
}

@test "a run that is killed behind a command is finished by the next" {
  # shellcheck disable=SC2016
  make_sibling 'policy "$@"; kill -KILL $PPID'
  interrupt_at_each_command
}

@test "a command that is killed ends the run, which says so, and the next finishes" {
  # shellcheck disable=SC2016
  make_sibling 'kill -KILL $$'
  interrupt_at_each_command
  echo 0 >calls
  echo 2 >moment
  empty_host
  as 0 trial/bin/orvex_state apply mine.json
  [[ $exit_value -eq 1 && $(<calls) -eq 2 ]]
  tail -n 1 "$BATS_TEST_TMPDIR/output" | grep -qx '  (Child process killed by signal 9)'
}
