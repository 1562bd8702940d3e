#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the program and plays a session with it, in a state directory of its own that is gone afterwards.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/lib/session.bash
source scripts/lib/packages.bash
source scripts/lib/processes.bash

# show COMMAND...: prints a command as root would type it, and runs it as root.
show() {
  printf '\n# %s\n' "$*"
  run_as 0 "$@"
}

# show_with_packages COMMAND...: the same, where the files of the demonstration's packages lie in /opt.
show_with_packages() {
  printf '\n# %s\n' "$*"
  with_opt "$packages/root/opt" "$@"
}

# show_with_processes COMMAND...: the same, where the demonstration's processes are to be seen.
show_with_processes() {
  printf '\n# %s\n' "$*"
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
  chapter 'With the administrator roles separated root may look, but not act'
  show orvex_local roles on
  show orvex_policy kmod off
  chapter 'Files carry the labels of the roles'
  show orvex_local label add secadm /opt/orvex-demo/bin/hello
  show orvex_local label add auditadm /opt/orvex-demo/bin/hello
  show_with_packages orvex_policy userid -L -P orvex-demo-tools
  show_with_packages orvex_policy userid -L -d /opt/orvex-demo/bin
  show_with_packages orvex_policy userid -L -f /opt/orvex-demo/bin/hello
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
  show_with_packages orvex_policy exec -A -P orvex-demo-tools
  show_with_packages orvex_policy exec -L -P orvex-demo-tools
  chapter 'Exceptions are not controlled at all: a directory, and a package'
  show_with_packages orvex_policy exec -A -e -d /opt/orvex-demo/share
  show_with_packages orvex_policy exec -A -e -P orvex-demo-tools
  show_with_packages orvex_policy exec -L
  show_with_packages orvex_policy exec -L -f /opt/orvex-demo/bin/hello
}

show_net() {
  chapter 'A program may not use the network; a file of a package stands for its package'
  touch "$packages/root/opt/fetch"
  show orvex_policy net on
  show_with_packages orvex_policy net -A -f /opt/fetch
  show_with_packages orvex_policy net -A -f /opt/orvex-demo/bin/hello
  show orvex_policy net -L
  show_with_packages orvex_policy net -U -f /opt/orvex-demo/bin/hello -v allow
  drop_package orvex-player
  chapter 'Another program belongs to no package as yet'
  show_with_packages orvex_policy net -A -f /opt/orvex-player/bin/player
  show orvex_policy net -L
  enter_package "$packages/rpms/home/orvex-player-1.0.rpm"
  chapter 'Its package is installed: with the next command the policy moves there'
  show_with_packages orvex_policy net -U -f /opt/orvex-player/bin/player -v allow
  show orvex_policy net -L
  show orvex_policy net -D -P orvex-player
  show_with_packages orvex_policy net -D -f /opt/orvex-demo/bin/hello
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
  chapter 'A process stands for its program'
  mkdir attributes
  start_namespace "$PWD/attributes"
  start_program "$PWD/server"
  show_with_processes orvex_policy proc -A -p "$pid"
  show_with_processes orvex_policy proc -D -p "$pid" -e -d tools
  show_with_processes orvex_policy proc -L
  chapter 'Some programs cannot be protected at all'
  show orvex_local blacklist add "$PWD/stopper"
  show orvex_policy proc -A -f stopper
}

scripts/bootstrap.sh
cmake --preset release
cmake --build --preset release

can_run_as 0 || {
  echo 'demo: run it as root, or as a user who may make user namespaces' >&2
  exit 1
}
PATH="$PWD/build/release/bin:$PATH"
place=$(mktemp -d)
trap 'end_processes; rm -rf "$place"' EXIT
export ORVEX_LOCAL_STATE="$place/state"
mkdir "$ORVEX_LOCAL_STATE"
packages="$place/packages"
tests/packages/make_packages.sh "$packages"
# There rpm finds the demonstration's packages, and not the machine's.
export HOME="$packages/home"
cd "$place"

show_global_state
show_kmod
show_userid
show_exec
show_net
show_file
show_proc
