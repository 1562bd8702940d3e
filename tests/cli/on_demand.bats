#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What a run loads: rpm and GIO only where it asks them, through the program's two modules, which are looked for beside
# the program and in no other place. The stand-in's part that reads files is loaded in the same way.

load support/session.bash
load support/packages.bash

setup() {
  start_package_session
}

# make_tree: the program and the libraries again in ./tree, where the test can change them.
make_tree() {
  mkdir -p tree/bin
  cp "$ORVEX_BIN_DIR/orvex_policy" tree/bin
  cp -R "$ORVEX_BIN_DIR/../lib" tree/lib
  modules=$PWD/tree/lib/orvex_policy
}

# expect_loaded NAMES UID COMMAND...: of the libraries that are loaded on demand the command loads just these.
expect_loaded() {
  mkdir -m 777 loading
  session_environment+=(LD_DEBUG=files "LD_DEBUG_OUTPUT=$PWD/loading/of")
  as "${@:2}"
  unset 'session_environment[-1]' 'session_environment[-1]'
  cat loading/* | sed -n 's|.*calling init: .*/\([^/]*\)\.so.*|\1|p' >loaded
  rm -r loading
  grep -qx liborvex loaded
  diff -u <(tr ' ' '\n' <<<"$1" | sed '/^$/d') \
    <(grep -xE 'lib(elf|rpm|rpmio|popt|gio-2\.0|gobject-2\.0|glib-2\.0)|orvex_(rpm|gio)|file_reader' loaded | LC_ALL=C sort -u)
}

# expect_refusal REASON COMMAND...: the command prints nothing but a line on standard error with the reason, a pattern, and
# ends like a program whose library is missing.
expect_refusal() {
  as 0 "$PWD/tree/bin/orvex_policy" "${@:2}"
  [[ ! -s $BATS_TEST_TMPDIR/output ]]
  [[ $(wc -l <"$BATS_TEST_TMPDIR/errors") -eq 1 ]]
  # shellcheck disable=SC2053
  [[ $(<"$BATS_TEST_TMPDIR/errors") == "orvex_policy: cannot load a part of the program: "$1 ]] || {
    cat "$BATS_TEST_TMPDIR/errors"
    return 1
  }
  [[ $exit_value -eq 127 ]]
}

@test "the global commands load neither rpm nor GIO" {
  expect_loaded '' 0 orvex_policy
  expect_loaded '' 0 orvex_policy --help
  expect_loaded '' 0 orvex_policy --version
  expect_loaded '' 0 orvex_policy status
  expect_loaded '' 0 orvex_policy enable
  restart
  expect_loaded '' 0 orvex_policy status
  expect_loaded '' 0 orvex_policy permissive
  expect_loaded '' 0 orvex_policy disable
  expect_loaded '' 0 orvex_policy import
}

@test "help, refusals and switches load neither rpm nor GIO" {
  make_store
  for module in exec net file proc kmod userid box; do
    expect_loaded '' 0 orvex_policy "$module" --help
    expect_loaded '' 1234 orvex_policy "$module" on
    expect_loaded '' 0 orvex_policy "$module" -L
    expect_loaded '' 0 orvex_policy "$module" on
    restart
    expect_loaded '' 0 orvex_policy "$module" --nonsense
    expect_loaded '' 0 orvex_policy "$module" off
  done
}

@test "modules of the kernel, protected files and whatever else is no package's load neither rpm nor GIO" {
  start_framework_with kmod
  expect_loaded '' 0 orvex_policy kmod -A -n nothing
  expect_loaded '' 0 orvex_policy kmod -L
  do_silently 0 orvex_policy file on
  echo >file
  expect_loaded '' 0 orvex_policy file -A -f "$PWD/file"
  expect_loaded '' 0 orvex_policy file -L
}

@test "a package loads rpm, and a program no GIO" {
  start_framework_with exec
  install_package orvex-player
  expect_loaded 'file_reader libelf libpopt librpm librpmio orvex_rpm' 0 orvex_policy exec -A -P orvex-player
  expect_loaded 'file_reader libelf libpopt librpm librpmio orvex_rpm' 0 orvex_policy exec -L -f "$root/orvex-player/bin/player"
}

@test "a desktop entry loads GIO as well, and a package without one does not" {
  start_framework_with net
  install_package orvex-player
  expect_loaded 'libgio-2.0 libglib-2.0 libgobject-2.0 libpopt librpm librpmio orvex_gio orvex_rpm' \
    0 orvex_policy net -A -P orvex-player
  install_package orvex-demo-tools
  expect_loaded 'libpopt librpm librpmio orvex_rpm' 0 orvex_policy net -A -P orvex-demo-tools
}

@test "a module that is missing is told where it is needed, and nowhere else" {
  make_tree
  start_framework_with net
  install_package orvex-player
  install_package orvex-demo-tools
  rm "$modules/orvex_gio.so"
  expect_refusal "$modules/orvex_gio.so is missing or cut short" net -A -P orvex-player
  do_silently 0 "$PWD/tree/bin/orvex_policy" net -A -P orvex-demo-tools
  rm "$modules/orvex_rpm.so"
  expect_refusal "$modules/orvex_rpm.so is missing or cut short" net -A -P orvex-player
  expect_refusal "$modules/orvex_rpm.so is missing or cut short" net -A -f "$root/orvex-player/bin/player"
  as 0 "$PWD/tree/bin/orvex_policy" status
  [[ $exit_value -eq 0 ]]
}

@test "what was printed before a module is missed is printed" {
  make_tree
  rm -r "$modules"
  start_framework_with exec
  as 0 "$PWD/tree/bin/orvex_policy" exec -L -f "$PWD/missing:$PWD/tree/bin/orvex_policy"
  diff -u - "$BATS_TEST_TMPDIR/output" <<<"文件路径[$PWD/missing]不存在!"
  [[ $exit_value -eq 127 ]]
}

@test "a broken module is told, whatever is broken" {
  make_tree
  start_framework_with exec
  module=$modules/orvex_rpm.so
  for content in '' text $'\x7fELF' "$(head -c 63 "$ORVEX_BIN_DIR/orvex_policy" | tr -d '\0')"; do
    printf '%s' "$content" >"$module"
    expect_refusal "$module*" exec -A -P orvex-player
  done
  # Cut short anywhere.
  whole=$ORVEX_BIN_DIR/../lib/orvex_policy/orvex_rpm.so
  size=$(stat -c %s "$whole")
  for cut in 1 63 64 65 1000 $((size / 4)) $((size / 2)) $((size - 4096)) $((size - 1)); do
    head -c "$cut" "$whole" >"$module"
    expect_refusal "$module*" exec -A -P orvex-player
  done
  # Another library, such as the module of a program of another version.
  cp "$ORVEX_BIN_DIR/../lib/orvex_policy/orvex_gio.so" "$module"
  expect_refusal "$module: undefined symbol: orvex_package_questions_*" exec -A -P orvex-player
  rm "$module"
  mkdir "$module"
  expect_refusal "$module*" exec -A -P orvex-player
  rmdir "$module"
  mkfifo "$module"
  expect_refusal "$module*" exec -A -P orvex-player
}

@test "modules are looked for beside the program alone, by whatever name and from wherever it is called" {
  make_tree
  start_framework_with exec
  # The real ones wait in all other places.
  mkdir -p here/lib
  mv "$modules" here/lib/orvex_policy
  cd here || return
  cp lib/orvex_policy/* .
  session_environment+=("LD_LIBRARY_PATH=$PWD:$PWD/lib/orvex_policy" "PATH=$PWD:$PATH" "LD_ORIGIN_PATH=$PWD/bin")
  ln -s ../tree/bin/orvex_policy link
  mkdir bin
  ln -s ../../tree/bin/orvex_policy bin/orvex_policy
  for name in "$BATS_TEST_TMPDIR/desk/tree/bin/orvex_policy" ./link bin/orvex_policy; do
    as 0 "$name" exec -A -P orvex-player
    [[ $exit_value -eq 127 ]]
    grep -qF "$modules/orvex_rpm.so is missing" "$BATS_TEST_TMPDIR/errors"
  done
  mv lib/orvex_policy "$modules"
  as 0 ./link exec -A -P orvex-player
  expect 0 <<<'不支持未安装的软件包[orvex-player]设置'
}

@test "without the part of the stand-in that reads files the calls that need it fail, and no others" {
  make_tree
  rm tree/lib/orvex_local/file_reader.so
  start_framework_with exec
  as 0 "$PWD/tree/bin/orvex_policy" exec -A -f "$PWD/tree/bin/orvex_policy"
  expect 0 <<<"无需管控的文件类型, 无需添加或删除执行管控!"
  expect_log <<END
18 local_service parse_file_type files cannot be read: $PWD/tree/lib/orvex_local/file_reader.so: cannot open shared object file: No such file or directory
END
}

@test "libraries put in front of rpm, popt and GIO serve the program, and reach those behind them" {
  if nm -D "$ORVEX_BIN_DIR/orvex_policy" | grep -q __asan_init; then
    skip 'the sanitizer wants to be the first library'
  fi
  "${CXX:-c++}" -shared -fPIC -x c++ -o front.so - <<'END'
#include <dlfcn.h>
#include <unistd.h>
template <class Function> Function* pass_on(const char* name, Function* /*own*/) {
    write(2, name, __builtin_strlen(name));
    write(2, "\n", 1);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
extern "C" {
void* rpmtsCreate() { return pass_on("rpmtsCreate", rpmtsCreate)(); }
const char** poptGetArgs(void* context) { return pass_on("poptGetArgs", poptGetArgs)(context); }
void* g_desktop_app_info_new_from_filename(const char* file) {
    return pass_on("g_desktop_app_info_new_from_filename", g_desktop_app_info_new_from_filename)(file);
}
void g_object_unref(void* object) { pass_on("g_object_unref", g_object_unref)(object); }
}
END
  start_framework_with net
  install_package orvex-player
  session_environment+=("LD_PRELOAD=$PWD/front.so")
  as 0 orvex_policy net -A -P orvex-player
  [[ $exit_value -eq 0 && ! -s $BATS_TEST_TMPDIR/output ]]
  for name in rpmtsCreate g_desktop_app_info_new_from_filename g_object_unref; do
    grep -qx "$name" "$BATS_TEST_TMPDIR/errors"
  done
  # The child asks with its standard error elsewhere.
  as 0 orvex_policy net -D -f "$root/orvex-player/bin/player"
  grep -qx rpmtsCreate "$BATS_TEST_TMPDIR/errors"
}

@test "packaging tools find the modules in the program, and what these need in the modules" {
  readelf --string-dump=.note.dlopen "$ORVEX_BIN_DIR/orvex_policy" >note
  note_text='[{"feature":"packages","description":"Questions to the package database","priority":"recommended",'
  note_text+='"soname":["orvex_rpm.so"]},'
  note_text+='{"feature":"desktop entries","description":"Names and icons of applications","priority":"recommended",'
  note_text+='"soname":["orvex_gio.so"]}]'
  grep -qF "$note_text" note
  # An older readelf takes a type that it does not know for an error.
  readelf --notes --wide "$ORVEX_BIN_DIR/orvex_policy" >notes 2>&1 || true
  grep -Eq '^ *FDO .*0x407c0c0a' notes
  run -1 grep -i corrupt notes
  for needed in 'orvex_rpm.so librpm.so' 'orvex_rpm.so libpopt.so' 'orvex_gio.so libgio-2.0.so'; do
    read -r module library <<<"$needed"
    readelf --dynamic "$ORVEX_BIN_DIR/../lib/orvex_policy/$module" | grep -q "(NEEDED).*\[$library"
  done
  readelf --dynamic "$ORVEX_BIN_DIR/orvex_policy" | grep '(NEEDED)' >needed
  run -1 grep -E 'lib(rpm|popt|gio|gobject|glib)' needed
}
