#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The packages as rpm sees them, and on a machine of their own.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/tests/support/elf_files.bash"

setup() {
  cd "$BATS_TEST_TMPDIR" || return
  export HOME=$PWD
  program=$(print_package orvex-policy)
  stand_in=$(print_package orvex-policy-local)
}

# print_package NAME: its file.
print_package() {
  find "$ORVEX_BUILT_PACKAGES" -name "$1-[0-9]*.rpm"
}

# print_service_libraries: the libraries of the service among the dependencies on standard input.
print_service_libraries() {
  sed -n 's/^\(lib\(orvex\|vemu\)[a-z_.0]*\)().*/\1/p' | LC_ALL=C sort
}

@test "orvex-policy needs the service libraries that the program is linked with" {
  rpm2archive -n - <"$program" | tar -x ./usr/bin/orvex_policy
  print_needed_service_libraries usr/bin/orvex_policy >needed
  [[ $(wc -l <needed) -eq 8 ]]
  diff -u needed <(rpm -qp --requires "$program" | print_service_libraries)
}

@test "the stand-in neither gives nor needs a library of that name" {
  [[ -z $(rpm -qp --provides "$program" "$stand_in" | print_service_libraries) ]]
  [[ -z $(rpm -qp --requires "$stand_in" | print_service_libraries) ]]
  diff -u - <(rpm -qp --provides "$stand_in" | sed 's/[ (].*//' | sort -u) <<<'orvex-policy-local'
}

@test "the stand-in needs all else that it is linked with" {
  for library in libsqlite3 librpmio libelf libstdc++ libc; do
    rpm -qp --requires "$stand_in" | grep -q "^$library\\.so"
  done
}

@test "the stand-in does not help to install the program without the framework" {
  run rpm -i --test --dbpath "$PWD/db" "$program" "$stand_in"
  [[ $(grep -cE '^	lib(orvex|vemu).* is needed by orvex-policy-[0-9]' <<<"$output") -eq 8 ]]
}

@test "version and licence are the tree's" {
  grep -q "^project(orvex_policy VERSION $(rpm -qp --queryformat '%{VERSION}' "$program") " "$ORVEX_SOURCE_DIR/CMakeLists.txt"
  for package in "$program" "$stand_in"; do
    [[ $(rpm -qp --queryformat '%{LICENSE}' "$package") == Apache-2.0 ]]
    rpm -qp --licensefiles "$package" | grep -q /LICENSE$
  done
}

@test "the Chinese manuals are marked as such" {
  for package in "$program" "$stand_in"; do
    rpm -qp --queryformat '[%{FILELANGS} %{FILENAMES}\n]' "$package" | grep '/man/zh_CN/' >manuals
    [[ $(grep -vc '^zh_CN ' manuals) -eq 0 ]]
  done
}

# on_machine COMMAND...: runs a command as root of the machine in the directory root, or of a user namespace.
on_machine() {
  local become=()
  [[ $EUID -eq 0 ]] || become=(unshare --user --map-root-user)
  "${become[@]}" "$@"
}

# manage_packages ARGUMENT...: rpm on that machine. What the packages need of the system it does not have.
manage_packages() {
  on_machine rpm --root "$PWD/root" --dbpath /var/lib/rpm --nodeps "$@"
}

# print_own_files: what is there beyond the directories that several packages share.
print_own_files() {
  find root -path root/var/lib/rpm -prune -o \( -not -type d -o -name '*orvex*' \) -print | sort
}

print_linker_cache() {
  on_machine ldconfig -r "$PWD/root"
  on_machine ldconfig -r "$PWD/root" -p
}

@test "installed they work, the system's linker sees nothing of the stand-in, and erased they leave nothing" {
  mkdir -p root/{etc,lib,usr/lib,var/lib/rpm}
  on_machine chroot root /none 2>&1 | grep -q 'No such file' || skip 'this machine allows no other root directory'
  print_linker_cache >cache
  print_own_files >before

  manage_packages --install "$program" "$stand_in"
  diff -u cache <(print_linker_cache)
  manage_packages --verify orvex-policy orvex-policy-local
  run -0 root/usr/bin/orvex_local run --state state root/usr/bin/orvex_policy status
  [[ $output == 'orvex status : disable' ]]
  run -0 root/usr/bin/orvex_local run --state state root/usr/bin/orvex_state dump
  [[ $output == *'"framework": "disabled"'* ]]
  run -0 root/usr/bin/orvex_local run --state state --uid 0 root/usr/bin/orvex_policy exec on
  run -0 root/usr/bin/orvex_local run --state state root/usr/bin/orvex_local restart
  run -0 root/usr/bin/orvex_local run --state state --uid 0 root/usr/bin/orvex_policy exec -A -P orvex-nothing
  [[ $output == '不支持未安装的软件包[orvex-nothing]设置' ]]

  manage_packages --erase orvex-policy orvex-policy-local
  diff -u before <(print_own_files)
}

@test "rpmlint finds nothing but what packaging/rpmlint.toml gives a reason for" {
  command -v rpmlint >/dev/null || skip 'rpmlint is not installed'
  run -0 rpmlint --config "$ORVEX_SOURCE_DIR/packaging/rpmlint.toml" "$program" "$stand_in" \
    "$ORVEX_SOURCE_DIR/packaging/orvex-policy.spec"
  [[ $output == *' 0 errors, 0 warnings,'* ]]
}
