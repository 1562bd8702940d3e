#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Execution control: its switches, and the whitelist and the exceptions by file and by directory.

load support/session.bash
load support/exec.bash

setup() {
  start_session
  use_no_packages
}

# expect_exec_help_for ARGUMENT...
expect_exec_help_for() {
  as 0 orvex_policy exec "$@"
  expect 0 < <(print_exec_help)
}

@test "exec alone, and its help, bring the help, also while the module is off" {
  expect_exec_help_for
  expect_exec_help_for -h
  expect_exec_help_for --help
  start_framework_with box
  expect_exec_help_for
  expect_exec_help_for -h
  expect_exec_help_for --help -x
}

@test "while the framework or the module is off everything else is refused" {
  for state in disabled off; do
    for arguments in -L --list '-A -f /missing' '-D -P none' -x '-A -h' 'on extra' 'script' 'script maybe' 'script -h'; do
      # shellcheck disable=SC2086
      expect_line_for '执行管控未开启!' $arguments
    done
    expect_line_for '请先开启执行控制, 再设置脚本管控状态!' script on
    if [[ $state == disabled ]]; then
      expect_line_for 'orvex未开启!' off
      expect_line_for 'orvex未开启!' script off
      start_framework_with box
    else
      expect_line_for '执行控制未开启!' script off
    fi
  done
}

@test "script control has a switch of its own, which off takes along" {
  start_framework_with exec
  expect_status enable exec
  do_silently 0 orvex_policy exec script on
  expect_status enable exec 'exec script'
  do_silently 0 orvex_policy exec script off
  expect_status enable exec
  do_silently 0 orvex_policy exec script on
  do_silently 0 orvex_policy exec off
  expect_status enable
  # It is carried out for a module that is off already, too.
  do_silently 0 orvex_policy exec off
  do_silently 0 orvex_policy exec on
  expect_status enable exec
}

@test "commands without an object, and bad ones, bring the help" {
  start_framework_with exec
  as 0 orvex_policy exec -A
  expect 0 < <(
    echo '设置执行管控可选文件、目录或者软件包, 请选择其中一种!'
    print_exec_help
  )
  as 0 orvex_policy exec -D --except -f /a
  expect 0 < <(
    echo '设置例外程序可选文件、目录或者软件包, 请选择其中一种!'
    print_exec_help
  )
  as 0 orvex_policy exec -A --except
  expect_with_errors 0 "orvex_policy: option '--except' requires an argument"$'\n' < <(
    echo '无效的参数'
    print_exec_help
  )
  expect_exec_help_for --tampered
  expect_exec_help_for -L -A
  expect_exec_help_for script maybe
  expect_exec_help_for off extra
  expect_no_exceptions
}

@test "a script is added, told when a byte of it changes, and deleted" {
  start_framework_with exec
  write_script run.sh
  expect_row run.sh 不可执行
  do_silently 0 orvex_policy exec -A -f run.sh
  expect_row run.sh 可执行
  expect_tampered
  sed -i 's/exit 0/exit 1/' run.sh
  expect_row run.sh 不可执行
  expect_tampered "$PWD/run.sh"
  # Adding it again takes it as it is now.
  do_silently 0 orvex_policy exec -A -f run.sh
  expect_row run.sh 可执行
  expect_tampered
  do_silently 0 orvex_policy exec -D -f run.sh
  expect_row run.sh 不可执行
  expect_line_for '文件[run.sh]不在白名单列表中, 无需删除!' -D -f run.sh
  expect_log </dev/null
}

@test "a whitelisted file that is gone is told, and is deleted by its directory" {
  start_framework_with exec
  mkdir d
  write_script d/run.sh
  do_silently 0 orvex_policy exec -A -f d/run.sh
  rm d/run.sh
  expect_tampered "$PWD/d/run.sh"
  expect_line_for '文件路径[d/run.sh]不存在!' -D -f d/run.sh
  do_silently 0 orvex_policy exec -D -d d
  expect_tampered
}

@test "the whitelist outlives the switch and the restart" {
  start_framework_with exec
  write_script run.sh
  do_silently 0 orvex_policy exec -A -f run.sh
  do_silently 0 orvex_policy exec off
  do_silently 0 orvex_policy exec on
  restart
  expect_row run.sh 可执行
}

@test "bad pieces do not keep good files out" {
  start_framework_with exec
  write_script a.sh
  write_script "$BATS_TEST_TMPDIR/home/b.sh"
  mkdir dir
  echo text >text
  # shellcheck disable=SC2088
  as 0 orvex_policy exec -A -f ':/missing:a.sh:dir:text::~/b.sh:'
  expect 0 <<'END'
文件路径[/missing]不存在!
路径[dir]是目录, 请输入文件路径
无需管控的文件类型, 无需添加或删除执行管控!
END
  # shellcheck disable=SC2088
  as 0 orvex_policy exec -L -f 'a.sh:/missing:~/b.sh:dir:text'
  expect 0 <<END
$PWD/a.sh       可执行
文件路径[/missing]不存在!
$BATS_TEST_TMPDIR/home/b.sh       可执行
路径[dir]是目录, 请输入文件路径
[$PWD/text]不受管控的文件类型!
END
  as 0 orvex_policy exec -A -f :::
  expect_silence
}

@test "a link is added, rated and deleted by its own path" {
  start_framework_with exec
  write_script target.sh
  echo text >text
  ln -s target.sh link
  ln -s text to_text
  ln -s nowhere dangling
  do_silently 0 orvex_policy exec -A -f link
  expect_row link 可执行
  expect_row target.sh 不可执行
  sed -i 's/exit 0/exit 1/' target.sh
  expect_tampered "$PWD/link"
  expect_line_for '无需管控的文件类型, 无需添加或删除执行管控!' -A -f to_text
  expect_line_for "[$PWD/to_text]不受管控的文件类型!" -L -f to_text
  do_silently 0 orvex_policy exec -A -f dangling
  expect_line_for "[$PWD/dangling]不受管控的文件类型!" -L -f dangling
  do_silently 0 orvex_policy exec -D -f link
  expect_tampered
}

@test "a program, a library and a kernel module are controlled too" {
  start_framework_with exec
  cp /bin/true program
  cp "$ORVEX_BIN_DIR"/../lib/liborvex.so.0 library
  make_kernel_module module.ko module
  printf '#!' >short
  do_silently 0 orvex_policy exec -A -f program:library:module.ko:short
  for file in program library module.ko short; do
    expect_row "$file" 可执行
  done
}

@test "a directory is added with all below it, listed and deleted" {
  start_framework_with exec
  mkdir -p d/sub/deep e
  write_script d/a.sh d/sub/deep/b.sh e/c.sh
  echo text >d/text
  ln -s a.sh d/link
  ln -s ../e d/to_dir
  do_silently 0 orvex_policy exec -A -d d/
  write_script d/new.sh
  as 0 orvex_policy exec -L -d d
  expect_sorted 0 <<END
$PWD/d/a.sh       可执行
$PWD/d/link       不可执行
$PWD/d/new.sh       不可执行
$PWD/d/sub/deep/b.sh       可执行
END
  expect_row e/c.sh 不可执行
  do_silently 0 orvex_policy exec -D -d d/sub
  expect_row d/a.sh 可执行
  expect_row d/sub/deep/b.sh 不可执行
  do_silently 0 orvex_policy exec -D -d d
  expect_row d/a.sh 不可执行
}

@test "a directory's name covers no other that begins with it" {
  start_framework_with exec
  mkdir app app-2 app.d
  write_script app/a.sh app-2/a.sh app.d/a.sh
  do_silently 0 orvex_policy exec -A -d app:app-2:app.d
  do_silently 0 orvex_policy exec -D -d app
  expect_row app/a.sh 不可执行
  expect_row app-2/a.sh 可执行
  expect_row app.d/a.sh 可执行
}

@test "directories in front of a bad one stay done" {
  start_framework_with exec
  mkdir a b
  write_script a/a.sh b/b.sh
  expect_line_for '目录路径[missing]不存在!' -A -d a:missing:b
  expect_row a/a.sh 可执行
  expect_row b/b.sh 不可执行
  expect_line_for '路径[a/a.sh]非目录, 请输入目录路径' -D -d a/a.sh:a
  expect_row a/a.sh 可执行
  as 0 orvex_policy exec -L -d a:missing:b
  expect 0 <<END
$PWD/a/a.sh       可执行
目录路径[missing]不存在!
END
}

@test "files and directories become exceptions, are listed and released" {
  start_framework_with exec
  mkdir -p dir/sub
  write_script a.sh dir/sub/b.sh
  echo text >text
  expect_no_exceptions
  do_silently 0 orvex_policy exec -A -e -f a.sh:text
  do_silently 0 orvex_policy exec -A -e -d dir/
  as 0 orvex_policy exec -L
  expect 0 <<END
放行   文件:$PWD/a.sh:$PWD/text
放行   目录:$PWD/dir/
END
  expect_line_for '文件[./a.sh]已存在例外程序列表中, 无需重复添加!' -A -e -f ./a.sh
  expect_line_for '目录[dir]已存在例外程序列表中, 无需重复添加!' -A -e -d dir
  expect_row a.sh 例外程序
  expect_row dir/sub/b.sh 例外程序
  expect_line_for '文件[dir/sub/b.sh]不在例外程序列表中, 无需删除!' -D -e -f dir/sub/b.sh
  expect_line_for '路径[dir]是目录, 请输入文件路径' -D -e -f dir
  expect_line_for '目录[dir/sub]不在例外程序列表中, 无需删除!' -D -e -d dir/sub
  do_silently 0 orvex_policy exec -D -e -f a.sh
  do_silently 0 orvex_policy exec -D -e -d "$PWD/dir"
  as 0 orvex_policy exec -L
  expect 0 <<<"放行   文件:$PWD/text"
  do_silently 0 orvex_policy exec -D -e -f text
  expect_no_exceptions
  expect_log </dev/null
}

@test "one bad directory keeps all of them from becoming exceptions, one bad file only itself" {
  start_framework_with exec
  mkdir a
  echo text >file
  expect_line_for '目录路径[missing]不存在!' -A -e -d a:missing
  expect_line_for '路径[file]非目录, 请输入目录路径' -A -e -d a:file
  expect_no_exceptions
  expect_line_for '文件路径[missing]不存在!' -A -e -f missing:file
  as 0 orvex_policy exec -L
  expect 0 <<<"放行   文件:$PWD/file"
}

@test "a walk knows an exception directory and single files, but no directory inside" {
  start_framework_with exec
  mkdir -p d/sub
  write_script d/a.sh d/b.sh d/sub/c.sh
  do_silently 0 orvex_policy exec -A -d d
  do_silently 0 orvex_policy exec -A -e -d d/sub
  do_silently 0 orvex_policy exec -A -e -f d/a.sh
  as 0 orvex_policy exec -L -d d
  expect_sorted 0 <<END
$PWD/d/a.sh       例外程序
$PWD/d/b.sh       可执行
$PWD/d/sub/c.sh       可执行
END
  expect_row d/sub/c.sh 例外程序
  as 0 orvex_policy exec -L -d ./d/sub/:d/sub
  expect 0 <<'END'
./d/sub/       例外程序
d/sub       例外程序
END
}

@test "an exception directory covers by the beginning of the text" {
  start_framework_with exec
  mkdir app application
  write_script app/a.sh application/b.sh
  do_silently 0 orvex_policy exec -A -e -d app
  expect_row app/a.sh 例外程序
  expect_row application/b.sh 例外程序
  rm -r app
  expect_row application/b.sh 不可执行
  # A directory that is gone is listed as a file.
  as 0 orvex_policy exec -L
  expect 0 <<<"放行   文件:$PWD/app/"
}

@test "the tilde of an exception directory is shown as it was typed" {
  start_framework_with exec
  mkdir "$BATS_TEST_TMPDIR/home/x"
  # shellcheck disable=SC2088
  do_silently 0 orvex_policy exec -A -e -d '~/x'
  # shellcheck disable=SC2088
  expect_line_for '~/x       例外程序' -L -d '~/x'
}

@test "listing needs no rights where it stands first, everything else does" {
  start_framework_with exec
  write_script a.sh
  as 1234 orvex_policy exec -L -f a.sh
  expect 0 <<<"$PWD/a.sh       不可执行"
  for arguments in '-A -f a.sh' '-f a.sh -L' 'script on' on '-D -e -d .'; do
    # shellcheck disable=SC2086
    as 1234 orvex_policy exec $arguments
    expect 0 <<<'当前用户无权限执行, 请切换root用户执行!'
  done
  separate_roles
  do_silently 600 orvex_policy exec -A -f a.sh
  as 0 orvex_policy exec -D -f a.sh
  expect 0 <<<'当前用户无权限执行, 请切换secadm用户执行!'
  as 0 orvex_policy exec --list -f a.sh
  expect 0 <<<"$PWD/a.sh       可执行"
}

@test "a sub-directory that cannot be read ends the walk, and the next piece is listed" {
  start_framework_with exec
  mkdir -p d/closed e
  write_script e/a.sh
  chmod 0 d/closed
  as 600 orvex_policy exec -L -d d:e
  chmod 700 d/closed
  # The words between are the standard library's.
  sed -i 's/filesystem error: .*: Permission denied.*/.../' "$BATS_TEST_TMPDIR/output"
  expect 0 <<END
文件系统错误: ...
$PWD/e/a.sh       不可执行
END
  expect_log <<'END'
18 exec get_whlist_status_by_dir recursive dir failed, path: d
END
}

@test "the secret scene does not stop execution control" {
  start_framework_with exec
  write_script a.sh
  as 0 orvex_local scene on
  do_silently 0 orvex_policy exec -A -f a.sh
  expect_row a.sh 可执行
  do_silently 0 orvex_policy exec off
}
