#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what the build, the tests and the demonstration need, and nothing that is there already.
#
# usage: scripts/bootstrap.sh [--all]
#
#   --all   the tools of the checks and of the measurements as well
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/script.bash"

# One package a line: its name for apt-get, its name for dnf.
base_packages='
g++               gcc-c++
cmake             cmake
ninja-build       ninja-build
pkg-config        pkgconf-pkg-config
librpm-dev        rpm-devel
libpopt-dev       popt-devel
libglib2.0-dev    glib2-devel
libsqlitecpp-dev  sqlitecpp-devel
libcli11-dev      cli11-devel
nlohmann-json3-dev json-devel
libelf-dev        elfutils-libelf-devel
libgtest-dev      gtest-devel
libgmock-dev      gmock-devel
bats              bats
rpm               rpm-build
util-linux        util-linux
locales           glibc-locale-source
python3-jsonschema python3-jsonschema
xz-utils          xz
zstd              zstd
'
check_packages='
clang             clang
clang-format      clang-tools-extra
clang-tidy        clang-tools-extra
libclang-rt-dev   compiler-rt
cppcheck          cppcheck
iwyu              iwyu
shellcheck        ShellCheck
gcovr             gcovr
valgrind          valgrind
hyperfine         hyperfine
gnuplot-nox       gnuplot-minimal
kmod              kmod
libbenchmark-dev  google-benchmark-devel
nftables          nftables
man-db            man-db
mandoc            mandoc
po4a              po4a
bash-completion   bash-completion
zsh               zsh
fish              fish
python3-pexpect   python3-pexpect
python3-pyte      python3-pyte
rpmlint           rpmlint
ansible-core      ansible-core
ansible-lint      ansible-lint
yamllint          yamllint
pycodestyle       python3-pycodestyle
python3-pytest    python3-pytest
python3-pytest-forked python3-pytest-forked
python3-pytest-xdist python3-pytest-xdist
python3-voluptuous python3-voluptuous
chromium          chromium
chromium-driver   chromedriver
python3-selenium  python3-selenium
'

is_installed_by_apt() {
  [[ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

is_installed_by_dnf() {
  rpm -q --quiet "$1"
}

install_by_apt() {
  "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@"
}

install_by_dnf() {
  "${as_root[@]}" dnf install -y --setopt=install_weak_deps=False "$@"
}

answer_help "$@"
[[ $# -le 1 ]] || refuse_argument "$2"
case "${1-}" in
  '') wanted=$base_packages ;;
  --all) wanted=$base_packages$check_packages ;;
  *) refuse_argument "$1" ;;
esac

if command -v apt-get >/dev/null; then
  tool=apt
  install_command='apt-get install'
elif command -v dnf >/dev/null; then
  tool=dnf
  install_command='dnf install'
else
  fail "neither apt-get nor dnf is here. These packages (apt-get's name, dnf's name) are needed:$wanted"
fi

missing=()
while read -r apt_name dnf_name; do
  name=$apt_name
  if [[ $tool == dnf ]]; then
    name=$dnf_name
  fi
  if [[ -n $name ]] && ! "is_installed_by_$tool" "$name"; then
    missing+=("$name")
  fi
done <<<"$wanted"

if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

as_root=()
if [[ $EUID -ne 0 ]]; then
  command -v sudo >/dev/null ||
    fail "these packages are missing, and there is no sudo. As root, run: $install_command ${missing[*]}"
  as_root=(sudo)
fi
announce "installing ${missing[*]}"
"install_by_$tool" "${missing[@]}" ||
  fail "could not install these packages. As root, run: $install_command ${missing[*]}"
