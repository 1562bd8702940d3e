#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` of a build with the stand-in puts where.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/tests/support/elf_files.bash"

setup() {
  cd "$BATS_TEST_TMPDIR" || return
}

# install_into ROOT [OPTION...]
install_into() {
  DESTDIR=$1 cmake --install "$ORVEX_BUILD_DIR" --prefix /usr "${@:2}" >install.log
}

# print_installed: the files, from their prefix on.
print_installed() {
  find root -not -type d -printf '%P\n' | LC_ALL=C sort
}

@test "every file lies where a distribution expects it" {
  install_into "$PWD/root"
  diff -u - <(print_installed) <<'END'
usr/bin/orvex_local
usr/bin/orvex_policy
usr/bin/orvex_state
usr/lib/orvex-policy-local/liborvex.so.0
usr/lib/orvex-policy-local/liborvex_adv.so.0
usr/lib/orvex-policy-local/liborvex_core.so.0
usr/lib/orvex-policy-local/liborvex_extend.so.0
usr/lib/orvex-policy-local/liborvex_log.so.0
usr/lib/orvex-policy-local/liborvex_scene.so.0
usr/lib/orvex-policy-local/liborvex_scene_c.so.0
usr/lib/orvex-policy-local/libvemulabelmgr.so
usr/lib/orvex-policy-local/orvex_local/file_reader.so
usr/lib/orvex_policy/orvex_gio.so
usr/lib/orvex_policy/orvex_rpm.so
usr/share/bash-completion/completions/orvex_local
usr/share/bash-completion/completions/orvex_policy
usr/share/bash-completion/completions/orvex_state
usr/share/fish/vendor_completions.d/orvex_local.fish
usr/share/fish/vendor_completions.d/orvex_policy.fish
usr/share/fish/vendor_completions.d/orvex_state.fish
usr/share/man/man8/orvex_local.8
usr/share/man/man8/orvex_policy.8
usr/share/man/man8/orvex_state.8
usr/share/man/zh_CN/man8/orvex_local.8
usr/share/man/zh_CN/man8/orvex_policy.8
usr/share/man/zh_CN/man8/orvex_state.8
usr/share/orvex_policy/orvex_state.schema.json
usr/share/zsh/site-functions/_orvex_local
usr/share/zsh/site-functions/_orvex_policy
usr/share/zsh/site-functions/_orvex_state
END
}

@test "program and stand-in are installed apart" {
  install_into "$PWD/root" --component orvex-policy
  [[ $(print_installed | grep -c .) -eq 15 ]]
  [[ $(print_installed | grep -ic local) -eq 0 ]]
  rm -r root
  install_into "$PWD/root" --component orvex-policy-local
  [[ $(print_installed | grep -c .) -eq 15 ]]
  [[ $(print_installed | grep -ic local) -eq 15 ]]
}

@test "the installed programs look for libraries where the system does, and the stand-in beside itself" {
  install_into "$PWD/root"
  rm root/usr/bin/orvex_local
  # shellcheck disable=SC2016
  diff -u - <(print_objects root | print_run_paths) <<'END'
bin and nowhere else
orvex-policy-local RUNPATH $ORIGIN
orvex_local RUNPATH $ORIGIN/..
orvex_policy and nowhere else
END
  install_into "$PWD/root"
  # shellcheck disable=SC2016
  [[ $(print_run_path root/usr/bin/orvex_local) == 'RUNPATH $ORIGIN/../lib/orvex-policy-local' ]]
}

@test "the installed programs meet the stand-in by orvex_local alone" {
  install_into "$PWD/root"
  for command in 'orvex_policy status' 'orvex_state dump'; do
    # shellcheck disable=SC2086
    run --separate-stderr -127 root/usr/bin/$command
    [[ -z $output && $stderr == *'liborvex'*'cannot open shared object file'* ]]
  done
  run -0 root/usr/bin/orvex_local run --state state root/usr/bin/orvex_policy status
  [[ $output == 'orvex status : disable' ]]
}

@test "what is installed can be moved as a whole" {
  install_into "$PWD/root"
  mv root/usr 'another place'
  run -0 'another place/bin/orvex_local' run --state state --uid 0 'another place/bin/orvex_policy' exec on
  run -0 'another place/bin/orvex_local' run --state state 'another place/bin/orvex_local' restart
  run -0 'another place/bin/orvex_local' run --state state --uid 0 'another place/bin/orvex_policy' exec -A -P orvex-nothing
  [[ $output == '不支持未安装的软件包[orvex-nothing]设置' ]]
}
