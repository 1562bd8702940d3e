#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the test packages and enters them into scratch databases of their own. Of the machine nothing is changed.
#
# usage: make_packages.sh DIR [SPECS]
#
# The packages are those of the spec files next to this script, or in the directory SPECS.
# What an earlier run left in DIR is replaced. Afterwards DIR holds
#   DIR/home     a HOME whose .rpmmacros leads rpm to a database with the packages of specs/ or SPECS
#   DIR/other    a second such HOME, for the packages of other_specs/; missing with SPECS
#   DIR/root     the files of the packages of DIR/home, just where these say they are
#   DIR/rpms     the packages themselves
# The packages and the databases hold absolute paths to DIR: it cannot be moved.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../../scripts/lib/script.bash"

answer_help "$@"
[[ $# -ge 1 && $# -le 2 && $1 != -* ]] || refuse_call
mkdir -p "$1"
dir=$(cd "$1" && pwd)
specs=$(cd "${2:-$here/specs}" && pwd)
rm -rf "${dir:?}"/{home,other,root,rpms}

# rpmbuild cannot work in a directory with a blank in its name.
TMPDIR=/tmp make_scratch
# The builds see an empty HOME: what is set up for the caller's own packages has no place here.
mkdir "$scratch/home" "$scratch/rpms" "$dir/root"
export HOME=$scratch/home LC_ALL=C.UTF-8

# run_quietly COMMAND...: what the command says is of interest only if it fails.
run_quietly() {
  "$@" >"$scratch/log" 2>&1 || {
    cat "$scratch/log" >&2
    return 1
  }
}

# build_packages SPECS GROUP: builds the packages of the spec files into DIR/rpms/GROUP.
build_packages() {
  cd "$1"
  run_quietly rpmbuild -bb \
    --define "_topdir $scratch/build" --define "_tmppath $scratch" \
    --define "_rpmdir $scratch/rpms/$2" --define "_rpmfilename %%{NAME}-%%{VERSION}.rpm" \
    --define "debug_package %{nil}" --define "__os_install_post %{nil}" \
    --define "common_lines $scratch/common.inc" --define "files_root $dir/root" \
    -- *.spec
}

# enter_packages GROUP: makes DIR/GROUP a HOME with a database of the group's packages.
enter_packages() {
  mkdir "$dir/$1"
  echo "%_dbpath $dir/$1/db" >"$dir/$1/.rpmmacros"
  HOME=$dir/$1 run_quietly \
    rpm -i --justdb --nodeps --noorder --force --noscripts --nosignature "$scratch/rpms/$1"/*.rpm
}

# unpack_files PACKAGE: the paths in the package begin with the whole path of DIR/root.
unpack_files() {
  rpm2archive -n - <"$1" | tar -xf - -C "$scratch/files" --warning=no-unknown-keyword
}

cp "$here/common.inc" "$scratch"
build_packages "$specs" home
enter_packages home
if [[ $# -eq 1 ]]; then
  build_packages "$here/other_specs" other
  enter_packages other
fi
mkdir "$scratch/files"
for package in "$scratch"/rpms/home/*.rpm; do
  unpack_files "$package"
done
cp -R --preserve=mode,links "$scratch/files$dir/root/." "$dir/root"
cp -R "$scratch/rpms" "$dir/rpms"
