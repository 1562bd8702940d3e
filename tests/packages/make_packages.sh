#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the test packages and enters them into scratch databases of their own. Nothing outside DIR is read or written.
#
#   make_packages.sh DIR [SPECS]
#
# The packages are those of the spec files next to this script, or in the directory SPECS.
# What an earlier run left in DIR is replaced. Afterwards DIR holds
#   DIR/home     a HOME whose .rpmmacros leads rpm to a database with the packages of specs/ or SPECS
#   DIR/other    a second such HOME, for the packages of other_specs/; missing with SPECS
#   DIR/root     the files of the packages of DIR/home, to be mounted where the packages want them (DIR/root/opt on /opt)
#   DIR/rpms     the packages themselves
# The databases hold absolute paths to DIR: it cannot be moved.
set -euo pipefail

if [[ $# -lt 1 || $# -gt 2 || $1 == -* ]]; then
  echo "usage: ${0##*/} DIR [SPECS]" >&2
  exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$1"
dir=$(cd "$1" && pwd)
rm -rf "${dir:?}"/{home,other,root,rpms,build}

# The builds see an empty HOME: what is set up for the caller's own packages has no place here.
mkdir -p "$dir/build/home" "$dir/root"
export HOME=$dir/build/home LC_ALL=C.UTF-8

# run_quietly COMMAND...: what the command says is of interest only if it fails.
run_quietly() {
  "$@" >"$dir/build/log" 2>&1 || {
    cat "$dir/build/log" >&2
    return 1
  }
}

# build_packages SPECS GROUP: builds the packages of the spec files into DIR/rpms/GROUP.
build_packages() {
  run_quietly rpmbuild -bb \
    --define "_topdir $dir/build" --define "_tmppath $dir/build" \
    --define "_rpmdir $dir/rpms/$2" --define "_rpmfilename %%{NAME}-%%{VERSION}.rpm" \
    --define "debug_package %{nil}" --define "__os_install_post %{nil}" \
    --define "common_lines $here/common.inc" \
    "$1"/*.spec
}

# enter_packages GROUP: makes DIR/GROUP a HOME with a database of the group's packages.
enter_packages() {
  mkdir "$dir/$1"
  echo "%_dbpath $dir/$1/db" >"$dir/$1/.rpmmacros"
  HOME=$dir/$1 run_quietly rpm -i --justdb --nodeps --noorder --force --noscripts --nosignature "$dir/rpms/$1"/*.rpm
}

build_packages "${2:-$here/specs}" home
enter_packages home
if [[ $# -eq 1 ]]; then
  build_packages "$here/other_specs" other
  enter_packages other
fi
for package in "$dir"/rpms/home/*.rpm; do
  rpm2archive -n - <"$package" | tar -xf - -C "$dir/root" --warning=no-unknown-keyword
done
rm -rf "$dir/build"
