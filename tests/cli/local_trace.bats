#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The stand-in tells the calls of a command.

load support/session.bash

setup() {
  start_session
  start_framework_with file
  touch notes.txt
}

# print_ladder MODULE: the calls of a module's run up to its options, as root asks.
print_ladder() {
  cat <<END
orvex_scene_get_sm_status() = 0
orvex_scene_get_module_status(module=4) = 0
orvex_scene_getstatus() = 2
orvex_scene_getstatus() = 2
orvex_scene_get_module_status(module=$1) = 1
END
}

@test "a trace has each call with its arguments and its result, in order" {
  as 0 orvex_local trace orvex_policy file -A -f notes.txt
  expect_with_errors 0 "$(
    print_ladder 2
    cat <<END
path_is_exist(path="notes.txt") = 1
path_is_dir(path="$PWD/notes.txt") = 0
orvex_scene_filectl_get_policy(count=0) = []
orvex_scene_filectl_multi_add_by_path(paths=["$PWD/notes.txt"], count=1) = 0
END
  )"$'\n' </dev/null
}

@test "a trace shows the records of a list with all their fields" {
  cat >wanted.json <<'END'
{"version": 1, "framework": {"now": "enabled"}, "modules": {"net": {"now": true, "after_restart": true}},
 "net": {"packages": [{"name": "bash", "uid": 0, "status": 2, "tag": 2, "icon": "an icon", "desktop": "an entry"}],
         "programs": [{"path": "/a", "uid": 0, "status": 1, "tag": 7, "label": "one", "text1": "two", "text2": "three"}]}}
END
  as 0 orvex_local load wanted.json
  as 0 orvex_local trace -o calls orvex_policy net -L
  diff -u - <(grep '^orvex_netctl' calls) <<'END'
orvex_netctl_pkg_read_all_data_with_uid(uid=0, count=1) = [{"name": "bash", "status": 2, "icon": "an icon", "desktop": "an entry", "tag": 2}]
orvex_netctl_ext_read_all_data_with_uid(uid=0, count=1) = [{"path": "/a", "status": 1, "label": "one", "text1": "two", "text2": "three", "tag": 7}]
END
}

@test "a trace in JSON has one object a line" {
  as 0 orvex_local trace --json orvex_policy kmod -h
  expect_with_errors 0 '{"call": "orvex_scene_get_sm_status", "arguments": {}, "result": 0}
{"call": "orvex_scene_get_module_status", "arguments": {"module": 4}, "result": 0}
{"call": "orvex_scene_getstatus", "arguments": {}, "result": 2}
{"call": "orvex_scene_getstatus", "arguments": {}, "result": 2}
{"call": "orvex_scene_get_module_status", "arguments": {"module": 3}, "result": 0}
' < <(print_kmod_help)
}

@test "a trace goes into a file, and the command's own output stays as it is" {
  as 0 orvex_local trace -o calls orvex_policy file -L
  expect_silence
  [[ $(<calls) == "$(
    print_ladder 2
    cat <<'END'
orvex_scene_filectl_get_policy(count=0) = []
orvex_scene_filectl_get_pkg_policy(count=0) = []
orvex_scene_filectl_exception_get_policy(count=0) = []
orvex_scene_filectl_exception_policy_free(records=[], count=0)
END
  )" ]]
}

@test "a trace covers what the command starts, up to the exit value" {
  # shellcheck disable=SC2016
  as 0 orvex_local trace -o calls sh -c 'orvex_policy status >/dev/null; orvex_policy status >/dev/null; exit 7'
  [[ $exit_value -eq 7 ]]
  [[ $(grep -c '^orvex_scene_getstatus() = 2$' calls) -eq 2 ]]
}

@test "a trace holds any name, as JSON does" {
  as 0 orvex_local trace -o calls switch_module 2 1
  as 0 orvex_local trace -o calls orvex_policy file -A -f $'a "name"\nwith\x01all'
  grep -F 'path_is_exist(path="a \"name\"\nwith\u0001all") = 0' calls
  as 0 orvex_local trace --json -o calls orvex_policy file -A -f $'no\xff\xfeutf8'
  grep -F '"arguments": {"path": {"hex": "6e6ffffe75746638"}}' calls
}

@test "a file that cannot be written is a failure before the command runs" {
  as 0 orvex_local trace -o missing/calls touch ran
  expect_with_errors 1 'orvex_local: cannot write missing/calls: No such file or directory
' </dev/null
  [[ ! -e ran ]]
  as 0 bash -c 'ulimit -n 64; orvex_local trace true'
  expect_with_errors 1 'orvex_local: cannot trace to standard error: Invalid argument
' </dev/null
  as 0 bash -c 'ulimit -n 64; orvex_local trace -o calls true'
  expect_with_errors 1 'orvex_local: cannot trace to calls: Invalid argument
' </dev/null
}
