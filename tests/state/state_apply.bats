#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# A host is made what a document says.

load support/state.bash

setup() {
  start_state_session
}

@test "a policy is put back on an emptied host, and a second time there is nothing to do" {
  fill_host
  # A file that was tampered with cannot be had by any command.
  do_silently 0 orvex_policy exec -D -f tampered.sh
  dump mine.json
  empty_host
  as 0 orvex_state apply mine.json
  expect 0 <<END
orvex_policy exec on
orvex_policy exec script on
orvex_policy exec -A -f $PWD/a.sh:$PWD/b.sh
orvex_policy exec -A -e -f $PWD/a.sh
orvex_policy exec -A -e -d $PWD/tools
orvex_policy exec -A -e -P orvex-demo-tools
orvex_policy net on
orvex_policy net -A -P orvex-demo-tools
orvex_policy net -U -P orvex-demo-tools -v allow
orvex_policy net -A -f $PWD/fetch
orvex_policy file on
orvex_policy file -A -f $PWD/notes.txt
orvex_policy file -A -f $PWD/notes.txt -e -f $PWD/editor
orvex_policy file -A -f $PWD/notes.txt -e -P orvex-demo-tools
orvex_policy file -A -d $PWD/records
orvex_policy file -A -P orvex-demo-tools
orvex_policy proc on
orvex_policy proc -A -f $PWD/server
orvex_policy proc -A -f $PWD/server -e -f $PWD/editor
orvex_policy proc -A -f $PWD/server -e -d $PWD/tools
orvex_policy proc -A -f $PWD/server -e -P orvex-demo-tools
orvex_policy kmod on
orvex_policy kmod -A -n a:b
orvex_policy kmod -A -n ext4
orvex_policy box on
END
  do_silently 0 orvex_state apply mine.json
  dump again.json
  cmp mine.json again.json
}

@test "a host is emptied too" {
  fill_host
  empty_host
  dump empty.json
  remove_files
  fill_host
  as 0 orvex_state apply empty.json
  expect 0 <<END
orvex_policy exec -D -f $PWD/a.sh:$PWD/b.sh:$PWD/tampered.sh
orvex_policy exec -D -e -f $PWD/a.sh
orvex_policy exec -D -e -d $PWD/tools
orvex_policy exec -D -e -P orvex-demo-tools
orvex_policy exec off
orvex_policy net -D -P orvex-demo-tools
orvex_policy net -D -f $PWD/fetch
orvex_policy net off
orvex_policy file -D -f $PWD/notes.txt
orvex_policy file -D -d $PWD/records
orvex_policy file -D -P orvex-demo-tools
orvex_policy file off
orvex_policy proc -D -f $PWD/server
orvex_policy proc off
orvex_policy kmod -D -n a:b
orvex_policy kmod -D -n ext4
orvex_policy kmod off
orvex_policy box off
END
  dump again.json
  cmp empty.json again.json
}

@test "names that are too many for one argument come in several commands" {
  switch_on file
  mkdir many
  local name
  name=$(printf 'long%.0s' {1..60})
  touch "many/$name"{1..600}
  want "\"file\": {\"files\": {$(printf "\"%s\": {}," "$PWD/many/"* | sed 's/,$//')}}"
  as 0 orvex_state apply wanted.json
  [[ $exit_value -eq 0 && $(wc -l <"$BATS_TEST_TMPDIR/output") -eq 2 ]]
  as 0 orvex_policy file -L
  [[ $(wc -l <"$BATS_TEST_TMPDIR/output") -eq 600 ]]
}

@test "others stay where that is wanted" {
  fill_host
  want '"kmod": {"modules": ["xfs"]}, "file": {"files": {}}'
  as 0 orvex_state apply --keep-others wanted.json
  expect 0 <<<'orvex_policy kmod -A -n xfs'
  want '"kmod": {"modules": ["dm"], "exclusive": false}'
  as 0 orvex_state apply wanted.json
  expect 0 <<<'orvex_policy kmod -A -n dm'
  as 0 orvex_policy kmod -L
  [[ $(wc -l <"$BATS_TEST_TMPDIR/output") -eq 4 ]]
}

@test "a file that was tampered with is whitelisted anew where it is wanted intact" {
  fill_host
  want "\"exec\": {\"exclusive\": false, \"whitelist\": {\"$PWD/tampered.sh\": \"intact\"}}"
  as 0 orvex_state apply wanted.json
  expect 0 <<<"orvex_policy exec -A -f $PWD/tampered.sh"
}

@test "a host that is not to be changed may be one of anybody" {
  fill_host
  dump mine.json
  do_silently 1234 orvex_state apply mine.json
}

@test "who may not act is refused before the first command" {
  want '"modules": {"kmod": "on"}'
  as 1234 orvex_state apply wanted.json
  expect_error '当前用户无权限执行, 请切换root用户执行!'
  separate_roles
  as 0 orvex_state apply wanted.json
  expect_error '当前用户无权限执行, 请切换secadm用户执行!'
  as 600 orvex_state apply wanted.json
  expect 0 <<<'orvex_policy kmod on'
}

@test "what a command says stands below it, and a change that did not come about is named" {
  switch_on kmod
  do_silently 0 orvex_local fail orvex_scene_kmodctl_add_by_name -5 --times 1
  want '"kmod": {"modules": ["ext4", "xfs"]}'
  as 0 orvex_state apply wanted.json
  expect_with_errors 1 $'orvex_state: this did not come about: + kmod modules: ext4\n' <<END
orvex_policy kmod -A -n ext4
  添加内核模块[ext4]防卸载失败!
orvex_policy kmod -A -n xfs
END
  as 0 orvex_state apply wanted.json
  expect 0 <<<'orvex_policy kmod -A -n ext4'
}

@test "whichever call fails in between, the run says so and a second one finishes" {
  fill_host
  do_silently 0 orvex_policy exec -D -f tampered.sh
  dump mine.json
  for function in orvex_scene_set_module_status orvex_scene_exectl_wlist_multi_add \
    orvex_scene_exectl_multi_add_file_in_permissive orvex_scene_exectl_multi_add_package_in_permissive \
    orvex_netctl_pkg_add orvex_netctl_pkg_update orvex_netctl_ext_add orvex_scene_filectl_multi_add_by_path \
    orvex_scene_filectl_multi_add_by_pkg orvex_scene_filectl_exception_multi_add \
    orvex_scene_taskctl_multi_add_by_path orvex_scene_taskctl_exception_multi_add orvex_scene_kmodctl_add_by_name; do
    empty_host
    do_silently 0 orvex_local fail "$function" -7 --times 1
    as 0 orvex_state apply mine.json
    echo "$function: $exit_value"
    [[ $exit_value -eq 1 ]]
    grep -q '^orvex_state: this did not come about: ' "$BATS_TEST_TMPDIR/errors"
    as 0 orvex_state apply mine.json
    [[ $exit_value -eq 0 ]]
    do_silently 0 orvex_state diff mine.json
  done
}

@test "a removal that fails is named, whichever it is" {
  empty_host
  dump empty.json
  fill_host
  for function in orvex_scene_exectl_wlist_multi_delete orvex_scene_exectl_multi_remove_file_from_permissive \
    orvex_scene_exectl_multi_remove_package_from_permissive orvex_netctl_pkg_remove orvex_netctl_remove \
    orvex_scene_filectl_multi_remove_by_path orvex_scene_filectl_multi_remove_by_pkg \
    orvex_scene_taskctl_multi_remove_by_path orvex_scene_kmodctl_remove_by_name; do
    do_silently 0 orvex_local fail "$function" -7 --times 1
    as 0 orvex_state apply empty.json
    echo "$function: $exit_value"
    [[ $exit_value -eq 1 ]]
    as 0 orvex_state apply empty.json
    [[ $exit_value -eq 0 ]]
    remove_files
    fill_host
  done
}

@test "a disabled framework is enabled, and the rest waits for the restart" {
  fill_host
  do_silently 0 orvex_policy exec -D -f tampered.sh
  dump mine.json
  as 0 orvex_local reset
  waiting=$'orvex_state: the framework works after a restart of the machine; apply the document again then\n'
  as 0 orvex_state plan mine.json
  expect_with_errors 3 "$waiting" <<<'orvex_policy enable'
  as 0 orvex_state apply mine.json
  expect_with_errors 3 "$waiting" <<END
orvex_policy enable
  orvex开启成功, 重启后生效!
END
  as 0 orvex_local show
  grep -q 'Restarts: *0 simulated' "$BATS_TEST_TMPDIR/output"
  restart
  as 0 orvex_state apply mine.json
  [[ $exit_value -eq 0 ]]
  dump again.json
  cmp mine.json again.json
}

@test "policies of a host that is to be disabled are changed while it only logs" {
  switch_on kmod
  do_silently 0 orvex_policy kmod -A -n ext4
  do_silently 0 orvex_policy kmod off
  do_silently 0 orvex_policy disable
  dump mine.json
  as 0 orvex_local reset
  as 0 orvex_state apply mine.json
  [[ $exit_value -eq 3 ]]
  restart
  as 0 orvex_state apply mine.json
  expect 0 <<END
orvex_policy kmod on
orvex_policy kmod -A -n ext4
orvex_policy kmod off
orvex_policy disable
END
  do_silently 0 orvex_state diff mine.json
}

@test "a framework that cannot be enabled is told" {
  as 0 orvex_local reset
  do_silently 0 orvex_local fail setModuleStatusReboot_dbus 1 --times 1 --error 'the service is away'
  want '"framework": "enabled"'
  as 0 orvex_state apply wanted.json
  expect_with_errors 1 $'orvex_state: this did not come about: the framework works after a restart\n' <<END
orvex_policy enable
  设置orvex状态失败! error: the service is away
END
}

@test "the secret scene keeps its rules" {
  switch_on kmod
  do_silently 0 orvex_local scene on
  want '"kmod": {"modules": ["ext4"]}'
  as 0 orvex_state apply wanted.json
  expect_with_errors 1 $'orvex_state: this did not come about: + kmod modules: ext4\n' <<END
orvex_policy kmod -A -n ext4
  涉密场景下禁止使用通用命令行工具!
END
}

@test "names do not reach the terminal as commands, and not the shell" {
  switch_on kmod file
  name=$'x\e[2J\n$(touch hit)'
  touch "$name"
  want "\"kmod\": {\"modules\": [\"\\u001b[2J\"]}, \"file\": {\"files\": {\"$PWD/x\\u001b[2J\\n\$(touch hit)\": {}}}"
  do_silently 0 orvex_local fail orvex_scene_kmodctl_add_by_name -5 --times 1
  as 0 orvex_state apply wanted.json
  expect_with_errors 1 'orvex_state: this did not come about: + kmod modules: $'\''\033[2J'\'$'\n' <<END
orvex_policy file -A -f \$'$PWD/x\\033[2J\\012\$(touch hit)'
orvex_policy kmod -A -n \$'\\033[2J'
  添加内核模块[\\x1b[2J]防卸载失败!
END
  [[ ! -e hit ]]
}

@test "a package whose name is also a directory where the caller stands is no trouble" {
  switch_on file
  mkdir orvex-demo-tools
  touch notes
  for packages in '["orvex-demo-tools"]' '[]'; do
    want "\"file\": {\"files\": {\"$PWD/notes\": {\"excepted_packages\": $packages}}}"
    as 0 orvex_state apply wanted.json
    [[ $exit_value -eq 0 ]]
  done
}

@test "exceptions that are left of an earlier protection do not come back with it" {
  switch_on proc
  touch server old new
  do_silently 0 orvex_policy proc -A -f server
  do_silently 0 orvex_policy proc -A -f server -e -f old
  do_silently 0 orvex_local fail orvex_scene_taskctl_exception_clear_resource_policy -5 --times 1
  as 0 orvex_policy proc -D -f server
  want "\"proc\": {\"programs\": {\"$PWD/server\": {\"excepted_files\": [\"$PWD/new\"]}}}"
  as 0 orvex_state apply wanted.json
  expect 0 <<END
orvex_policy proc -A -f $PWD/server
orvex_policy proc -A -f $PWD/server -e -f $PWD/new
orvex_policy proc -D -f $PWD/server -e -f $PWD/old
END
}

@test "a program's policy that a package took over goes without the package's" {
  switch_on net
  player=$root/orvex-player/bin/player
  for policies in '{}' '{"orvex-player": "deny"}'; do
    do_silently 0 orvex_policy net -A -f "$player"
    install_package orvex-player
    if [[ $policies != '{}' ]]; then
      do_silently 0 orvex_policy net -A -P orvex-player
    fi
    want "\"net\": {\"packages\": $policies, \"programs\": {}}"
    as 0 orvex_state apply wanted.json
    cat "$BATS_TEST_TMPDIR/output"
    [[ $exit_value -eq 0 ]]
    remove_package orvex-player
  done
  as 0 orvex_policy net -L
  expect 0 <<END
软件包:
   阻止: orvex-player

END
}

@test "progress is counted on a terminal alone" {
  want '"modules": {"kmod": "on", "box": "on"}'
  as 0 script -qec 'orvex_state apply wanted.json' /dev/null
  tr -d '\r' <"$BATS_TEST_TMPDIR/output" | diff -u - <(printf '[1/2] orvex_policy kmod on\n[2/2] orvex_policy box on\n')
}

@test "without its sibling the program says what is missing" {
  mkdir -p moved/bin
  cp "$programs/orvex_state" moved/bin
  ln -s "$programs/../lib" moved/lib
  want '"modules": {"kmod": "on"}'
  as 0 moved/bin/orvex_state apply wanted.json
  [[ $exit_value -eq 2 ]]
  grep -qF "orvex_state: $PWD/moved/bin/orvex_policy: " "$BATS_TEST_TMPDIR/errors"
}
