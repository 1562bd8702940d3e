# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the sessions of orvex_state share.
load "$ORVEX_SOURCE_DIR/tests/cli/support/session.bash"
load "$ORVEX_SOURCE_DIR/tests/cli/support/packages.bash"

# start_state_session: a session with the framework enabled and every module off, and with packages.
start_state_session() {
  start_package_session
  install_package orvex-demo-tools
  as 0 orvex_policy enable
  restart
}

# switch_on MODULE...
switch_on() {
  local module
  for module; do
    do_silently 0 orvex_policy "$module" on
  done
}

# write_script FILE...
write_script() {
  local file
  for file; do
    printf '#!/bin/sh\nexit 0\n' >"$file"
  done
}

# make_random_world: what random states choose from.
make_random_world() {
  local name
  mkdir scripts files directories
  for name in plain 'two words' "it's" '%s' '-dash' 'back\slash' 执行 $'new\nline' $'\xff\xfe' $'\e[2J' '~' 'star*' '{{ 7 * 7 }}'; do
    write_script "scripts/$name"
    touch "files/$name"
    mkdir "directories/$name"
  done
}

# fill_host: something on every list.
fill_host() {
  switch_on exec net file proc kmod box
  do_silently 0 orvex_policy exec script on
  write_script a.sh b.sh tampered.sh
  mkdir tools records
  touch notes.txt editor server fetch
  do_silently 0 orvex_policy exec -A -f b.sh:a.sh:tampered.sh
  echo '# changed' >>tampered.sh
  do_silently 0 orvex_policy exec -A -e -f a.sh
  do_silently 0 orvex_policy exec -A -e -d tools
  do_silently 0 orvex_policy exec -A -e -P orvex-demo-tools
  do_silently 0 orvex_policy net -A -P orvex-demo-tools
  do_silently 0 orvex_policy net -U -P orvex-demo-tools -v allow
  do_silently 0 orvex_policy net -A -f fetch
  do_silently 0 orvex_policy file -A -f notes.txt
  do_silently 0 orvex_policy file -A -d records
  do_silently 0 orvex_policy file -A -P orvex-demo-tools
  do_silently 0 orvex_policy file -A -f notes.txt -e -f editor
  do_silently 0 orvex_policy file -A -f notes.txt -e -P orvex-demo-tools
  do_silently 0 orvex_policy proc -A -f server
  do_silently 0 orvex_policy proc -A -f server -e -f editor
  do_silently 0 orvex_policy proc -A -f server -e -d tools
  do_silently 0 orvex_policy proc -A -f server -e -P orvex-demo-tools
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod -A -n 'a:b'
}

# want FIELDS: writes the document with these fields beside its version.
want() {
  echo "{\"version\": 1, $1}" >wanted.json
}

# remove_files: takes away what fill_host has put into the working directory.
remove_files() {
  rm -r ./*.sh tools records notes.txt editor server fetch
}

# expect_error LINE...: the last command said just these lines on standard error, nothing else, and ended with 2.
expect_error() {
  expect_with_errors 2 "$(printf 'orvex_state: %s\n' "$@")"$'\n' </dev/null
}

# dump FILE: writes the host's policy to the file.
dump() {
  do_silently 0 orvex_state dump -o "$1"
}

# empty_host: nothing on any list, all modules off, and the framework enabled.
empty_host() {
  as 0 orvex_local reset
  as 0 orvex_policy enable
  restart
}

# validate FILE...: the documents fit the schema.
validate() {
  /usr/bin/python3 -W ignore -m jsonschema "${@/#/--instance=}" "$ORVEX_SOURCE_DIR/state/orvex_state.schema.json"
}
