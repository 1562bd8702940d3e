#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing, builds the program and plays a session with it, in a place of its own that is gone afterwards.
#
# usage: scripts/demo.sh [--programs DIR]
#
#   --programs DIR   play with the programs in DIR instead of building them
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/script.bash
source scripts/lib/session.bash
source scripts/lib/packages.bash
source scripts/lib/processes.bash
source scripts/lib/playground.bash

# print_typed COMMAND...: the command as root would type it.
print_typed() {
  printf '\n#'
  printf ' %q' "$@"
  printf '\n'
}

# show COMMAND...: prints the command and runs it as root.
show() {
  print_typed "$@"
  run_as 0 "$@"
}

# show_with_processes COMMAND...: the same, where the demonstration's processes are to be seen.
show_with_processes() {
  print_typed "$@"
  in_namespace "$@"
}

chapter() {
  printf '\n== %s\n' "$*"
}

show_global_state() {
  chapter 'The framework is switched on'
  show orvex_policy status
  show orvex_policy enable
  show orvex_policy status
  chapter 'It works after a restart, which orvex_local only pretends'
  show orvex_local restart
  show orvex_policy status
}

show_kmod() {
  chapter 'A kernel module is protected from unloading'
  make_kernel_module watchdog.ko watchdog
  show orvex_policy kmod on
  show orvex_policy kmod -A -f watchdog.ko
  show orvex_policy kmod -A -n ext4
  show orvex_policy kmod -L
  show orvex_policy kmod -A -n watchdog
  chapter 'It is released; the other policy stays, each command being a process of its own'
  show orvex_policy kmod -D -f watchdog.ko
  show orvex_policy kmod -L
}

show_userid() {
  chapter 'With the administrator roles separated root may look, but not act; the security administrator is user 600'
  show orvex_local roles on
  show orvex_policy kmod -D -n ext4
  show orvex_local run --uid 600 orvex_policy kmod -D -n ext4
  show orvex_policy kmod -L
  chapter 'Files carry the labels of the roles'
  show orvex_local label add secadm "$root/orvex-demo/bin/hello"
  show orvex_local label add auditadm "$root/orvex-demo/bin/hello"
  show orvex_policy userid -L -P orvex-demo-tools
  show orvex_policy userid -L -d "$root/orvex-demo/bin"
  show orvex_policy userid -L -f "$root/orvex-demo/bin/hello"
  show orvex_local roles off
}

show_exec() {
  chapter 'A script may run from now on, until it is tampered with'
  printf '#!/bin/sh\necho hello\n' >hello.sh
  show orvex_policy exec on
  show orvex_policy exec -A -f hello.sh
  show orvex_policy exec -L -f hello.sh
  show sed -i s/hello/hallo/ hello.sh
  show orvex_policy exec -L -f hello.sh
  show orvex_policy exec -L --tampered
  show orvex_policy exec -D -f hello.sh
  chapter 'All programs of a package are added'
  show orvex_policy exec -A -P orvex-demo-tools
  show orvex_policy exec -L -P orvex-demo-tools
  chapter 'Exceptions are not controlled at all: a directory, and a package'
  show orvex_policy exec -A -e -d "$root/orvex-demo/share"
  show orvex_policy exec -A -e -P orvex-demo-tools
  show orvex_policy exec -L
  show orvex_policy exec -L -f "$root/orvex-demo/bin/hello"
}

show_net() {
  chapter 'A program may not use the network; a file of a package stands for its package'
  touch fetch
  show orvex_policy net on
  show orvex_policy net -A -f fetch
  show orvex_policy net -A -f "$root/orvex-demo/bin/hello"
  show orvex_policy net -L
  show orvex_policy net -U -f "$root/orvex-demo/bin/hello" -v allow
  drop_package orvex-player
  chapter 'Another program belongs to no package as yet'
  show orvex_policy net -A -f "$root/orvex-player/bin/player"
  show orvex_policy net -L
  enter_package "$scratch/rpms/home/orvex-player-1.0.rpm"
  chapter 'Its package is installed: with the next command the policy moves there'
  show orvex_policy net -U -f "$root/orvex-player/bin/player" -v allow
  show orvex_policy net -L
  show orvex_policy net -D -P orvex-player
  show orvex_policy net -D -f "$root/orvex-demo/bin/hello"
  show orvex_policy net -L
}

show_file() {
  chapter 'A file, the files of a directory and a package may only be read from now on'
  echo text >notes.txt
  mkdir records
  touch editor
  show orvex_policy file on
  show orvex_policy file -A -f notes.txt
  show orvex_policy file -A -d records
  show orvex_policy file -A -P orvex-demo-tools
  chapter 'One program, and one package, may write to them all the same'
  show orvex_policy file -A -f notes.txt -e -f editor
  show orvex_policy file -A -d records -e -P orvex-demo-tools
  show orvex_policy file -A -f editor -e -f notes.txt
  show orvex_policy file -L
  chapter 'What is gone from the disk is released by its whole path, and its exceptions with it'
  show rm notes.txt
  show orvex_policy file -D -f notes.txt
  show orvex_policy file -D -f "$PWD/notes.txt"
  show orvex_policy file -L
}

show_proc() {
  chapter 'A program may not be killed, but by one other and by those of a directory'
  touch server stopper
  mkdir tools
  show orvex_policy proc on
  show orvex_policy proc -A -f server
  show orvex_policy proc -A -f server -e -f stopper
  show orvex_policy proc -A -f server -e -d tools
  show orvex_policy proc -L
  chapter 'Some programs cannot be protected at all'
  show orvex_local blacklist add "$PWD/stopper"
  show orvex_policy proc -A -f stopper
  chapter 'A process stands for its program'
  if can_start_namespace; then
    show_processes
  else
    printf '\nLeft out: this machine allows no mounts, which stand in for the attribute files of processes under /proc.\n'
  fi
}

show_processes() {
  mkdir attributes
  start_namespace "$PWD/attributes"
  start_program "$PWD/server"
  show_with_processes orvex_policy proc -A -p "$pid"
  show_with_processes orvex_policy proc -D -p "$pid" -e -d tools
  show_with_processes orvex_policy proc -L
}

# show_elsewhere COMMAND...: the same on another host, which is another state of the stand-in.
show_elsewhere() {
  show orvex_local run --state twin "$@"
}

show_state() {
  chapter 'Everything is one document, in which a person can make changes'
  show orvex_state dump -o policy.json
  show sed -i 's/"excepted_packages"/"excepted_package"/' policy.json
  show orvex_state diff policy.json || true
  show sed -i 's/"excepted_package"/"excepted_packages"/; s/"kmod": "on"/"kmod": "off"/' policy.json
  show orvex_state diff policy.json || true
  chapter 'Another host is to be the same: its framework is enabled, and it takes a restart to go on'
  mkdir twin
  show_elsewhere orvex_state apply policy.json || true
  show_elsewhere orvex_local restart
  show_elsewhere orvex_state apply policy.json
  chapter 'A second time there is nothing to do'
  show_elsewhere orvex_state apply policy.json
  show_elsewhere orvex_state diff policy.json
}

# clean_up: ends the processes that live in the demonstration's place.
clean_up() {
  end_processes
}

read_arguments "$@"
[[ ${#operands[@]} -eq 0 ]] || refuse_argument "${operands[0]}"
check_users
build_programs
make_scratch
prepare_playground "$scratch"
root=$scratch/root
mkdir "$scratch/desk"
cd "$scratch/desk"

show_global_state
show_kmod
show_userid
show_exec
show_net
show_file
show_proc
show_state
