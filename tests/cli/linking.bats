#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# How the program meets the service library: by plain dynamic symbols, so that whoever stands in front serves them.

load support/session.bash
load support/objects.bash
load support/service_functions.bash

setup() {
  start_session
  program=$ORVEX_BIN_DIR/orvex_policy
}

# print_symbols FILE NM_OPTION...: the names alone, sorted.
print_symbols() {
  nm --format=posix "${@:2}" "$1" | sed 's/[ @].*//' | sort -u
}

is_sanitized() {
  nm -D "$program" | grep -q __asan_init
}

# record UID COMMAND...: runs the command with the recording library in front.
record() {
  session_environment+=("LD_PRELOAD=$BATS_TEST_TMPDIR/recording.so")
  as "$@"
}

prepare_recording() {
  if is_sanitized; then
    skip 'the sanitizer wants to be the first library'
  fi
  make_recording_library "$BATS_TEST_TMPDIR/recording.so"
}

# answer NAME=VALUE...: what the recording library returns from now on.
answer() {
  session_environment+=("$@")
}

@test "the declarations are read in full" {
  # Each family's first and last function, so that the tests below cannot pass on an empty list.
  print_declared_functions >declared
  for name in orvex_log orvex_get_error orvex_scene_getstatus setModuleStatusReboot_dbus path_is_exist pathNormalize \
    orvex_scene_exectl_wlist_multi_add orvex_scene_filectl_exception_multi_remove orvex_netctl_remove \
    orvex_scene_taskctl_exception_multi_remove_by_pid orvex_scene_kmodctl_get_policy \
    orvex_scene_get_module_name_from_ko_path orvex_scene_admctl_get_user_policy; do
    grep -qx "$name" declared
  done
  [[ $(wc -l <declared) -ge 71 ]]
}

@test "every service function that the sources call is an undefined dynamic symbol, and no other one is" {
  print_called_functions >called
  grep -qx orvex_scene_getstatus called
  print_symbols "$program" --dynamic --undefined-only | grep -xF -f <(print_declared_functions) >undefined
  diff -u called undefined
}

@test "the program defines no service function" {
  print_symbols "$program" --defined-only >defined
  print_symbols "$program" --dynamic --defined-only >>defined
  grep -qx main defined
  run -1 grep -xF -f <(print_declared_functions) defined
}

@test "the eight libraries are needed by name" {
  diff -u - <(print_needed_service_libraries "$program") <<'END'
liborvex.so.0
liborvex_adv.so.0
liborvex_core.so.0
liborvex_extend.so.0
liborvex_log.so.0
liborvex_scene.so.0
liborvex_scene_c.so.0
libvemulabelmgr.so
END
}

@test "what is built finds the stand-in beside itself, and looks in no other place" {
  print_objects "$ORVEX_BIN_DIR" "$ORVEX_BIN_DIR/../lib" >objects
  for name in orvex_policy orvex_local unit_tests liborvex.so.0 libvemulabelmgr.so orvex_policy/orvex_rpm.so; do
    grep -q "/$name" objects
  done
  # shellcheck disable=SC2016
  diff -u - <(print_run_paths <objects) <<'END'
bin RUNPATH $ORIGIN/../lib
lib RUNPATH $ORIGIN
orvex_local RUNPATH $ORIGIN/..
orvex_policy and nowhere else
END
}

@test "a library in the current directory is not loaded" {
  for name in libpopt.so.0 librpm.so.9 liborvex.so.0 libc.so.6; do
    echo 'no library' >"$name"
  done
  as 0 orvex_policy status
  expect 0 <<<'orvex status : disable'
}

# The libraries of the stand-in pass for the framework's, which have the same names.
@test "a build against the framework's libraries installs the programs and their modules alone, which find them where the system does" {
  cp -R "$ORVEX_BIN_DIR/../lib" framework
  cmake -S "$ORVEX_SOURCE_DIR" -B build -G Ninja -DCMAKE_CXX_COMPILER="${CXX:-c++}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE=-O1 -DORVEX_SERVICE_DIR="$PWD/framework" >cmake.log
  cmake --build build >build.log || {
    cat build.log
    return 1
  }
  DESTDIR=$PWD/root cmake --install build >install.log
  print_objects root >installed
  diff -u - <(sed 's|.*/usr/local/||' installed | sort) <<'END'
bin/orvex_policy
bin/orvex_state
lib/orvex_policy/orvex_gio.so
lib/orvex_policy/orvex_rpm.so
END
  while read -r object; do
    [[ -z $(print_run_path "$object") ]]
    expect_hardened "$object"
  done <installed
  expect_checked root/usr/local/bin/orvex_policy
  session_environment+=("LD_LIBRARY_PATH=$PWD/framework")
  as 0 "$PWD/root/usr/local/bin/orvex_policy" exec on
  [[ $exit_value -eq 0 ]]
  restart
  as 0 "$PWD/root/usr/local/bin/orvex_policy" exec -A -P orvex-nothing
  expect 0 <<<'不支持未安装的软件包[orvex-nothing]设置'
}

@test "a library put in front serves every service function" {
  prepare_recording
  session_environment+=('LD_DEBUG=bindings' 'LD_BIND_NOW=1' "LD_DEBUG_OUTPUT=$PWD/bindings")
  record 0 orvex_policy --version
  sed -n "s|.*binding file .*orvex_policy \[0\] to .*/recording.so \[0\]: normal symbol .\([A-Za-z0-9_]*\)'.*|\1|p" \
    bindings.* | sort -u >bound
  diff -u <(print_called_functions) bound
}

@test "a library put in front is asked for the status" {
  prepare_recording
  answer orvex_scene_getstatus=4 orvex_scene_get_module_status=2
  record 1234 orvex_policy status
  expect_with_errors 0 'orvex_scene_getstatus
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
orvex_scene_get_module_status
' <<'END'
orvex status : permissive
    exec        : warning
    exec script : warning
    net         : warning
    kmod        : warning
    file        : warning
    proc        : warning
    3adm        : warning
    box         : warning
END
}

@test "a library put in front can invent any state" {
  prepare_recording
  answer orvex_scene_getstatus=3 orvex_scene_get_module_status=7
  record 1234 orvex_policy status
  [[ $exit_value -eq 0 ]]
  diff -u - "$BATS_TEST_TMPDIR/output" <<'END'
    exec        : unknown
    exec script : unknown
    net         : unknown
    kmod        : unknown
    file        : unknown
    proc        : unknown
    3adm        : unknown
    box         : unknown
END
}

@test "a library put in front is asked to change the global state" {
  prepare_recording
  record 0 orvex_policy enable
  expect_with_errors 0 'orvex_scene_get_sm_status
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
setModuleStatusReboot_dbus
' <<<'orvex开启成功, 重启后生效!'
}

@test "a library put in front can refuse the global state, and gets the log record" {
  prepare_recording
  answer setModuleStatusReboot_dbus=-1
  record 0 orvex_policy permissive
  expect_with_errors 0 'orvex_scene_get_sm_status
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
setModuleStatusReboot_dbus
orvex_get_error
orvex_log
' <<<'设置orvex状态失败! error: '
}

@test "a library put in front switches a module on from a disabled framework" {
  prepare_recording
  record 0 orvex_policy box on
  expect_with_errors 0 'orvex_scene_getstatus
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
setModuleStatusReboot_dbus
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
orvex_scene_set_multi_module_status
' <<'END'
正在开启orvex......
orvex开启成功, 安全模块[box]开启成功, 重启后生效!
END
}

@test "a library put in front can refuse a switch" {
  prepare_recording
  answer orvex_scene_getstatus=2 orvex_scene_set_module_status=-5
  record 0 orvex_policy box off
  expect_with_errors 0 'orvex_scene_getstatus
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
orvex_scene_set_module_status
orvex_log
' <<<'设置安全模块[box]状态失败!'
}

# A module status of 2 is on, and yet leaves the rights with root.
@test "a library put in front gets kernel modules by file" {
  prepare_recording
  answer orvex_scene_getstatus=2 orvex_scene_get_module_status=2 path_is_exist=1 get_absolute_path=/srv/a.ko \
    orvex_scene_get_module_name_from_ko_path=a
  record 0 orvex_policy kmod -A -f a.ko
  expect_with_errors 0 'orvex_scene_get_sm_status
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
orvex_scene_get_module_status
path_is_exist
path_is_dir
get_absolute_path
orvex_scene_get_module_name_from_ko_path
orvex_scene_kmodctl_get_policy
orvex_scene_kmodctl_add_by_path
' </dev/null
}

@test "a library put in front gets kernel modules by name" {
  prepare_recording
  answer orvex_scene_getstatus=2 orvex_scene_get_module_status=2 orvex_scene_kmodctl_add_by_name=9
  record 0 orvex_policy kmod -A -n a
  expect_with_errors 0 'orvex_scene_get_sm_status
orvex_scene_get_module_status
orvex_scene_getstatus
orvex_scene_getstatus
orvex_scene_get_module_status
orvex_scene_kmodctl_get_policy
orvex_scene_kmodctl_add_by_name
orvex_log
' <<<'添加内核模块[a]防卸载失败!'
}
