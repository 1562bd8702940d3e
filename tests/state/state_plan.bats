#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The commands that a host needs, and what is refused before the first one.

load support/state.bash

setup() {
  start_state_session
  switch_on exec net file proc kmod
}

# expect_refusal FIELDS LINE...: what the document wants is refused with these lines, by plan and by apply, and nothing
# changes.
expect_refusal() {
  want "$1"
  dump before.json
  for command in plan apply; do
    as 0 orvex_state "$command" wanted.json
    expect_error "${@:2}"
  done
  do_silently 0 orvex_state diff before.json
}

@test "commands are printed in order and quoted for the shell, which brings the host there" {
  write_script "it's a.sh" b.sh
  want "\"framework\": \"permissive\", \"exec\": {\"whitelist\": {\"$PWD/it's a.sh\": \"intact\", \"$PWD/b.sh\": \"intact\"}},
    \"kmod\": {\"modules\": [\"ext4\"]}"
  as 1234 orvex_state plan wanted.json
  expect 0 <<END
orvex_policy permissive
orvex_policy exec -A -f '$PWD/b.sh:$PWD/it'\\''s a.sh'
orvex_policy kmod -A -n ext4
END
  cp "$BATS_TEST_TMPDIR/output" plan.sh
  do_silently 0 bash plan.sh
  do_silently 0 orvex_state diff wanted.json
  do_silently 0 orvex_state plan wanted.json
}

@test "a name that no command can hold is refused" {
  write_script a:b.sh
  expect_refusal "\"exec\": {\"whitelist\": {\"$PWD/a:b.sh\": \"intact\"}}" \
    "wanted.json: /exec/whitelist/${PWD//\//~1}~1a:b.sh: a name with ':' cannot be told from two names"
  expect_refusal '"file": {"packages": {"a:b": {}}}' \
    "wanted.json: /file/packages/a:b: a name with ':' cannot be told from two names"
}

@test "a name with ':' that is on the host is kept, and refused only where it has to go" {
  mkdir odd
  write_script odd/a:b.sh
  do_silently 0 orvex_policy exec -A -d odd
  dump mine.json
  do_silently 0 orvex_state apply mine.json
  expect_refusal '"exec": {"whitelist": {}}' \
    "wanted.json: /exec/whitelist: the host's $PWD/odd/a:b.sh: a name with ':' cannot be told from two names"
}

@test "a name with a line break fakes no line of its own" {
  expect_refusal '"exec": {"excepted_packages": ["a\norvex_state: all is well"]}' \
    'wanted.json: /exec/excepted_packages/a\x0aorvex_state: all is well: a name with '"':' cannot be told from two names"
}

@test "a relative path is refused" {
  write_script a.sh
  expect_refusal '"exec": {"whitelist": {"a.sh": "intact"}, "excepted_files": ["~/a.sh"]}' \
    'wanted.json: /exec/whitelist/a.sh: a relative path' \
    'wanted.json: /exec/excepted_files/~0~1a.sh: a relative path'
}

@test "a path under which the framework would keep another one is refused" {
  mkdir d
  touch real
  write_script a.sh
  ln -s real link
  ln -s d linked
  expect_refusal "\"file\": {\"files\": {\"$PWD/link\": {\"excepted_files\": [\"$PWD/link\"]}},
      \"directories\": {\"$PWD/linked\": {}, \"$PWD/d/\": {}}},
    \"proc\": {\"programs\": {\"$PWD/link\": {\"excepted_directories\": [\"$PWD/linked\"]}}},
    \"exec\": {\"whitelist\": {\"$PWD/d/../a.sh\": \"intact\"}, \"excepted_directories\": [\"$PWD/d/\"]}" \
    "wanted.json: /exec/whitelist/${PWD//\//~1}~1d~1..~1a.sh: the framework keeps this path as $PWD/a.sh" \
    "wanted.json: /exec/excepted_directories/${PWD//\//~1}~1d~1: the framework keeps this path as $PWD/d" \
    "wanted.json: /file/files/${PWD//\//~1}~1link: the framework keeps this path as $PWD/real" \
    "wanted.json: /file/files/${PWD//\//~1}~1link/excepted_files/${PWD//\//~1}~1link: the framework keeps this path as $PWD/real" \
    "wanted.json: /file/directories/${PWD//\//~1}~1d~1: the framework keeps this path as $PWD/d" \
    "wanted.json: /file/directories/${PWD//\//~1}~1linked: the framework keeps this path as $PWD/d" \
    "wanted.json: /proc/programs/${PWD//\//~1}~1link: the framework keeps this path as $PWD/real" \
    "wanted.json: /proc/programs/${PWD//\//~1}~1link/excepted_directories/${PWD//\//~1}~1linked: the framework keeps this path as $PWD/d"
}

@test "a link is whitelisted as such" {
  write_script a.sh
  ln -s a.sh link.sh
  want "\"exec\": {\"whitelist\": {\"$PWD/link.sh\": \"intact\"}}"
  as 0 orvex_state apply wanted.json
  expect 0 <<<"orvex_policy exec -A -f $PWD/link.sh"
}

@test "what does not exist, or is of another kind, is refused" {
  touch file
  mkdir dir
  expect_refusal "\"exec\": {\"whitelist\": {\"/gone\": \"intact\", \"$PWD/dir\": \"intact\"}, \"excepted_files\": [\"/*\"]},
    \"net\": {\"programs\": {\"/gone\": \"deny\"}},
    \"file\": {\"files\": {\"$PWD/dir\": {}}, \"directories\": {\"$PWD/file\": {}}},
    \"proc\": {\"programs\": {\"/gone\": {}}}" \
    'wanted.json: /exec/whitelist/~1gone: does not exist' \
    "wanted.json: /exec/whitelist/${PWD//\//~1}~1dir: a directory" \
    'wanted.json: /exec/excepted_files/~1*: a file that cannot be told from a directory' \
    'wanted.json: /net/programs/~1gone: does not exist' \
    "wanted.json: /file/files/${PWD//\//~1}~1dir: a directory" \
    "wanted.json: /file/directories/${PWD//\//~1}~1file: no directory" \
    'wanted.json: /proc/programs/~1gone: does not exist'
}

@test "a package that is not installed is refused" {
  touch file
  expect_refusal "\"exec\": {\"excepted_packages\": [\"nowhere\"]}, \"net\": {\"packages\": {\"nowhere\": \"deny\"}},
    \"file\": {\"files\": {\"$PWD/file\": {\"excepted_packages\": [\"nowhere\"]}}, \"packages\": {\"nowhere\": {}}}" \
    'wanted.json: /exec/excepted_packages/nowhere: a package that is not installed' \
    'wanted.json: /net/packages/nowhere: a package that is not installed' \
    "wanted.json: /file/files/${PWD//\//~1}~1file/excepted_packages/nowhere: a package that is not installed" \
    'wanted.json: /file/packages/nowhere: a package that is not installed'
}

@test "a program that a package owns has no policy of its own" {
  expect_refusal "\"net\": {\"programs\": {\"$root/orvex-demo/bin/hello\": \"deny\"}}" \
    "wanted.json: /net/programs/${root//\//~1}~1orvex-demo~1bin~1hello: the package orvex-demo-tools owns it, and is what counts"
}

@test "a state that no command makes is refused" {
  write_script a.sh
  expect_refusal "\"modules\": {\"3adm\": \"on\", \"net\": \"warning\"},
    \"exec\": {\"whitelist\": {\"$PWD/a.sh\": \"tampered\"}}, \"net\": {\"packages\": {\"orvex-demo-tools\": \"unknown\"}}" \
    'wanted.json: /modules/3adm: no command switches the separation of the roles' \
    "wanted.json: /modules/net: no command makes it 'warning'" \
    "wanted.json: /exec/whitelist/${PWD//\//~1}~1a.sh: no command makes it 'tampered'" \
    "wanted.json: /net/packages/orvex-demo-tools: no command makes it 'unknown'"
}

@test "what the framework does not protect is refused" {
  touch server
  do_silently 0 orvex_local blacklist add "$PWD/server"
  expect_refusal "\"proc\": {\"programs\": {\"$PWD/server\": {}}}" \
    "wanted.json: /proc/programs/${PWD//\//~1}~1server: on the framework's blacklist"
}

@test "a directory is no exception of file protection" {
  touch notes
  mkdir tools
  expect_refusal "\"file\": {\"files\": {\"$PWD/notes\": {\"excepted_directories\": [\"$PWD/tools\"]}}}" \
    "wanted.json: /file/files/${PWD//\//~1}~1notes/excepted_directories: file protection knows no such exceptions"
}

@test "what has left the disk is refused where only what exists can go" {
  write_script a.sh
  touch excepted fetch notes server stopper
  do_silently 0 orvex_policy exec -A -f a.sh
  do_silently 0 orvex_policy exec -A -e -f excepted
  do_silently 0 orvex_policy net -A -f fetch
  do_silently 0 orvex_policy file -A -f notes
  do_silently 0 orvex_policy proc -A -f server
  do_silently 0 orvex_policy proc -A -f server -e -f stopper
  rm a.sh excepted fetch notes server stopper
  expect_refusal '"exec": {"whitelist": {}, "excepted_files": []}, "proc": {"programs": {}}' \
    "wanted.json: /exec/whitelist: the host's $PWD/a.sh: does not exist" \
    "wanted.json: /exec/excepted_files: the host's $PWD/excepted: does not exist" \
    "wanted.json: /proc/programs: the host's $PWD/server: does not exist"
  expect_refusal "\"proc\": {\"programs\": {\"$PWD/server\": {}}}" \
    "wanted.json: /proc/programs/${PWD//\//~1}~1server/excepted_files: the host's $PWD/stopper: does not exist" \
    "wanted.json: /proc/programs/${PWD//\//~1}~1server: does not exist"
  want '"net": {"programs": {}}, "file": {"files": {}}'
  as 0 orvex_state apply wanted.json
  expect 0 <<END
orvex_policy net -D -f $PWD/fetch
orvex_policy file -D -f $PWD/notes
END
}

@test "packages that are gone go where the program lets them" {
  install_package orvex-player
  do_silently 0 orvex_policy exec -A -e -P orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  do_silently 0 orvex_policy file -A -P orvex-player
  remove_package orvex-player
  expect_refusal '"exec": {"excepted_packages": []}' \
    "wanted.json: /exec/excepted_packages: the host's orvex-player: a package that is not installed"
  want '"net": {"packages": {}}, "file": {"packages": {}}'
  as 0 orvex_state apply wanted.json
  expect 0 <<END
orvex_policy net -D -P orvex-player
orvex_policy file -D -P orvex-player
END
}

@test "a module that is off is switched on only by a document that says how to leave it" {
  do_silently 0 orvex_policy kmod off
  expect_refusal '"kmod": {"modules": ["ext4"]}' \
    'wanted.json: /kmod: the module is off, and the document does not say what it is to be'
  want '"modules": {"kmod": "off"}, "kmod": {"modules": ["ext4"]}'
  as 0 orvex_state apply wanted.json
  expect 0 <<END
orvex_policy kmod on
orvex_policy kmod -A -n ext4
orvex_policy kmod off
END
}

@test "a disabled framework is enabled only by a document that says what it is to be" {
  do_silently 0 orvex_policy disable
  expect_refusal '"modules": {"kmod": "off"}, "kmod": {"modules": ["ext4"]}' \
    'wanted.json: /kmod: the framework is disabled, and the document does not say what it is to be'
  expect_refusal '"modules": {"kmod": "on"}' \
    'wanted.json: /modules: the framework is disabled, and the document does not say what it is to be'
}

@test "script control is not switched on without execution control" {
  do_silently 0 orvex_policy exec off
  expect_refusal '"modules": {"exec script": "on"}' \
    'wanted.json: /modules/exec script: execution control is off, and script control with it'
}

@test "a machine is never restarted: disabling with the roles separated is refused" {
  separate_roles
  expect_refusal '"framework": "disabled"' \
    'wanted.json: /framework: disabling it restarts the machine at once while the roles are separated'
}

@test "a document with a fault is refused" {
  expect_refusal '"kmod": {"module": []}' 'wanted.json: /kmod/module: unknown field'
  expect_refusal '"kmod": {"modules": ["a", "a"]}' 'wanted.json: /kmod/modules/1: stands there twice'
}
