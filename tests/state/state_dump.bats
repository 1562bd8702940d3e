#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The policy of a host, printed as a document.

load support/state.bash

setup() {
  start_state_session
}

@test "a dump holds all states and all lists" {
  fill_host
  as 0 orvex_state dump
  expect 0 <<END
{
  "version": 1,
  "framework": "enabled",
  "modules": {
    "exec": "on",
    "exec script": "on",
    "net": "on",
    "kmod": "on",
    "file": "on",
    "proc": "on",
    "3adm": "off",
    "box": "on"
  },
  "exec": {
    "whitelist": {
      "$PWD/a.sh": "intact",
      "$PWD/b.sh": "intact",
      "$PWD/tampered.sh": "tampered"
    },
    "excepted_files": [
      "$PWD/a.sh"
    ],
    "excepted_directories": [
      "$PWD/tools"
    ],
    "excepted_packages": [
      "orvex-demo-tools"
    ]
  },
  "net": {
    "packages": {
      "orvex-demo-tools": "allow"
    },
    "programs": {
      "$PWD/fetch": "deny"
    }
  },
  "file": {
    "files": {
      "$PWD/notes.txt": {
        "excepted_files": [
          "$PWD/editor"
        ],
        "excepted_packages": [
          "orvex-demo-tools"
        ]
      }
    },
    "directories": {
      "$PWD/records": {}
    },
    "packages": {
      "orvex-demo-tools": {}
    }
  },
  "proc": {
    "programs": {
      "$PWD/server": {
        "excepted_files": [
          "$PWD/editor"
        ],
        "excepted_directories": [
          "$PWD/tools"
        ],
        "excepted_packages": [
          "orvex-demo-tools"
        ]
      }
    }
  },
  "kmod": {
    "modules": [
      "a:b",
      "ext4"
    ]
  }
}
END
}

@test "anybody may dump, and gets the same bytes, to a file as well" {
  fill_host
  dump mine.json
  for user in 600 1234; do
    as "$user" orvex_state dump
    expect 0 <mine.json
  done
}

@test "the order in which a policy came about does not show" {
  switch_on kmod
  for modules in 'a b c' 'c a b'; do
    for module in $modules; do
      do_silently 0 orvex_policy kmod -A -n "$module"
    done
    dump "$modules.json"
    for module in a b c; do
      do_silently 0 orvex_policy kmod -D -n "$module"
    done
  done
  cmp 'a b c.json' 'c a b.json'
}

@test "a dump fits the schema, whatever the names" {
  fill_host
  write_script $'odd\xff\\"\n\x1b.sh' 执行.sh
  do_silently 0 orvex_policy exec -A -d .
  dump all.json
  grep -qF 'odd\\xff\\\\\"\n\u001b.sh' all.json
  validate all.json
  as 0 orvex_local reset
  dump nothing.json
  validate nothing.json
}

@test "the schema refuses what the program refuses" {
  for document in '{}' '{"version": 2}' '{"version": 1, "other": 1}' '{"version": 1, "exec": {"files": []}}' \
    '{"version": 1, "kmod": {"modules": ["a", "a"]}}' '{"version": 1, "kmod": {"modules": ["a\\b"]}}' \
    '{"version": 1, "kmod": {"modules": [""]}}' '{"version": 1, "modules": {"net": true}}'; do
    echo "$document" >wrong.json
    run ! validate wrong.json
    as 0 orvex_state dump
    [[ $exit_value -eq 0 ]]
  done
}

@test "the modules of a disabled framework have no state" {
  switch_on kmod
  do_silently 0 orvex_policy disable
  as 0 orvex_state dump
  head -n 4 "$BATS_TEST_TMPDIR/output" | diff -u - <(printf '{\n  "version": 1,\n  "framework": "disabled",\n  "exec": {\n')
}

@test "exceptions of what is not protected are left out, as in the listing" {
  cat >store.json <<END
{"version": 1, "file": {"path_exceptions": [{"path": "/gone", "exceptions": [{"kind": "file", "text": "/x"}]}]}}
END
  do_silently 0 orvex_local load store.json
  as 0 orvex_state dump
  run ! grep gone "$BATS_TEST_TMPDIR/output"
}

@test "a state that cannot be read is an error, and no document" {
  do_silently 0 orvex_local fail orvex_scene_getstatus 7 --times 1
  as 0 orvex_state dump
  expect_error "the framework's state cannot be read, it answered 7"
  do_silently 0 orvex_local fail orvex_scene_get_module_status -1 --times 1
  as 0 orvex_state dump
  expect_error "the state of the module 'exec' cannot be read, it answered -1"
  do_silently 0 orvex_local fail orvex_scene_exectl_wlist_load_all -1 --times 1
  as 0 orvex_state dump
  expect_error 'the whitelist cannot be read, the service library answered -1'
}

@test "a file that cannot be written is an error, and keeps what it holds when the policy cannot be read" {
  as 0 orvex_state dump -o nowhere/policy.json
  expect_error 'nowhere/policy.json: No such file or directory'
  as 0 sh -c 'orvex_state dump >/dev/full'
  expect_error 'standard output cannot be written'
  as 0 orvex_state dump -o /dev/full
  expect_error '/dev/full: No space left on device'
  echo precious >old.json
  do_silently 0 orvex_local fail orvex_scene_getstatus 7 --times 1
  as 0 orvex_state dump -o old.json
  [[ $exit_value -eq 2 && $(<old.json) == precious ]]
}

@test "a command line that is wrong is told" {
  as 0 orvex_state
  expect_error 'A subcommand is required'
  for words in frob 'dump --frob' 'dump -o' 'dump extra'; do
    # shellcheck disable=SC2086
    as 0 orvex_state $words
    [[ $exit_value -eq 2 && ! -s $BATS_TEST_TMPDIR/output ]]
    grep -q '^orvex_state: ' "$BATS_TEST_TMPDIR/errors"
  done
}

@test "help and version are told without a look at the host" {
  for words in --help --version 'dump --help'; do
    # shellcheck disable=SC2086
    as 0 env ORVEX_LOCAL_STATE=relative orvex_state $words
    [[ $exit_value -eq 0 && -s $BATS_TEST_TMPDIR/output && ! -s $BATS_TEST_TMPDIR/errors ]]
  done
}
