#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Network control: its switch, its command line, and the policies of programs that no package owns.

load support/session.bash
load support/packages.bash
load support/net.bash

setup() {
  start_package_session
}

# expect_net_help_for ARGUMENT...
expect_net_help_for() {
  as 0 orvex_policy net "$@"
  expect 0 < <(print_net_help)
}

# expect_complaint_for LINE ARGUMENT...: the line stands in front of the help.
expect_complaint_for() {
  as 0 orvex_policy net "${@:2}"
  expect 0 < <(
    echo "$1"
    print_net_help
  )
}

# use_tools: there are two programs in $tools, and the module is on.
use_tools() {
  start_framework_with net
  tools=$root/tools
  mkdir "$tools"
  touch "$tools/one" "$tools/two"
}

# as_in_tools UID COMMAND...: the command runs in the directory of the programs.
as_in_tools() {
  cd "$tools" || return
  as "$@"
}

# expect_line_in_tools LINE ARGUMENT...
expect_line_in_tools() {
  as_in_tools 0 orvex_policy net "${@:2}"
  expect 0 <<<"$1"
}

@test "net alone, and its help, bring the help, also while the module is off" {
  expect_net_help_for
  expect_net_help_for -h
  expect_net_help_for --help
  start_framework_with box
  expect_net_help_for
  expect_net_help_for -h
  expect_net_help_for --help -x
}

@test "while the framework or the module is off everything else is refused" {
  for state in disabled off; do
    for arguments in -L --list '-A -f /missing' '-D -P none' '-U -v maybe' -x '-A -h' 'on extra' 'off extra'; do
      # shellcheck disable=SC2086
      expect_line_for '网络保护未开启!' $arguments
    done
    if [[ $state == disabled ]]; then
      start_framework_with box
    fi
  done
}

@test "net is switched on and off" {
  expect_line_for 'orvex未开启!' off
  start_framework_with net
  expect_status enable net
  do_silently 0 orvex_policy net off
  expect_line_for '网络保护未开启!' -L
  do_silently 0 orvex_policy net on
  expect_nothing_listed
}

@test "without a command there is the help, and bad options are told" {
  start_framework_with net
  expect_net_help_for on extra
  expect_net_help_for foo
  expect_net_help_for -P a -v nonsense
  expect_net_help_for -L -A
  expect_net_help_for -AA -P a
  as 0 orvex_policy net --package foo -A
  expect_with_errors 0 "orvex_policy: unrecognized option '--package'"$'\n' < <(
    echo '无效的参数'
    print_net_help
  )
  as 0 orvex_policy net -A -P
  expect_with_errors 0 "orvex_policy: option requires an argument -- 'P'"$'\n' < <(
    echo '无效的参数'
    print_net_help
  )
}

@test "what a command lacks is told, an update's value first" {
  start_framework_with net
  expect_complaint_for '请输入需要添加联网管控策略的应用程序路径或者软件包名称!' -A
  expect_complaint_for '请输入需要删除联网管控控策略的应用程序路径或者软件包名称!' -D
  expect_complaint_for '请输入更新的状态值!' -U -f /missing
  expect_complaint_for '请输入需要更新联网管控控策略的应用程序路径或者软件包名称!' -U -v allow
  expect_line_for '错误: 添加联网管控策略时, 无需设置-v选项, 默认拒绝!' -A -P bash -v allow
  as 0 orvex_policy net -U -v maybe -f /missing
  expect 0 < <(
    printf '请输入正确的管控状态值!'
    print_net_help
  )
  expect_nothing_listed
}

@test "a program of no package is added, updated, listed and deleted" {
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  do_silently 0 orvex_policy net "--file=$tools/two" --add
  expect_records <<END
program [$tools/one] status 2 label [$tools/one] text1 [] text2 [] tag 2
program [$tools/two] status 2 label [$tools/two] text1 [] text2 [] tag 2
END
  do_silently 0 orvex_policy net -U -f "$tools/one" -v allow
  expect_listed <<END
应用程序:
   允许: $tools/one
   阻止: $tools/two
END
  expect_records <<END
program [$tools/one] status 1 label [$tools/one] text1 [] text2 [] tag 2
program [$tools/two] status 2 label [$tools/two] text1 [] text2 [] tag 2
END
  do_silently 0 orvex_policy net -U -v deny -f "$tools/one"
  do_silently 0 orvex_policy net -D -f "$tools/two"
  expect_listed <<END
应用程序:
   阻止: $tools/one
END
  do_silently 0 orvex_policy net --delete --file "$tools/one"
  expect_nothing_listed
  expect_log </dev/null
}

@test "a second add, and an update or delete of nothing, are told" {
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  expect_line_for "程序[$tools/one]的联网管控策略已添加, 无需重复添加!" -A -f "$tools/one"
  expect_line_for "程序[$tools/two]的联网管控策略不存在, 请先添加!" -U -f "$tools/two" -v allow
  expect_line_for "程序[$tools/two]的联网管控策略不存在, 无需删除!" -D -f "$tools/two"
  expect_listed <<END
应用程序:
   阻止: $tools/one
END
  expect_log </dev/null
}

@test "an add does not undo an update" {
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  do_silently 0 orvex_policy net -U -f "$tools/one" -v allow
  expect_line_for "程序[$tools/one]的联网管控策略已添加, 无需重复添加!" -A -f "$tools/one"
  expect_listed <<END
应用程序:
   允许: $tools/one
END
}

@test "a relative path is stored in its absolute form, and lines show now the one and now the other" {
  use_tools
  expect_line_in_tools '程序[one]的联网管控策略不存在, 请先添加!' -U -f one -v allow
  expect_line_in_tools "程序[$tools/one]的联网管控策略不存在, 无需删除!" -D -f one
  as_in_tools 0 orvex_policy net -A -f one
  expect_silence
  expect_line_in_tools '程序[../tools/./one]的联网管控策略已添加, 无需重复添加!' -A -f ../tools/./one
  as_in_tools 0 orvex_policy net -U -f ./one -v allow
  expect_silence
  expect_listed <<END
应用程序:
   允许: $tools/one
END
  as_in_tools 0 orvex_policy net -D -f ../tools/one
  expect_silence
  expect_nothing_listed
}

@test "what is no file is told, and a delete takes an absolute path as it stands" {
  use_tools
  expect_line_for "文件路径[$tools/none]不存在!" -A -f "$tools/none"
  expect_line_for '文件路径[none]不存在!' -U -f none -v deny
  expect_line_for '文件[none]不存在, 请输入文件据对路径!' -D -f none
  expect_line_for "路径[$tools]是目录, 请输入文件路径" -A -f "$tools"
  expect_line_for "路径[$tools]是目录, 请输入文件路径" -U -f "$tools" -v allow
  expect_line_in_tools '路径[../tools]是目录, 请输入文件路径' -D -f ../tools
  expect_line_for "程序[$tools/none]的联网管控策略不存在, 无需删除!" -D -f "$tools/none"
  expect_line_for "程序[$tools/]的联网管控策略不存在, 无需删除!" -D -f "$tools/"
  expect_nothing_listed
}

@test "a program that is gone is deleted by its absolute path alone" {
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  rm "$tools/one"
  expect_line_for "文件路径[$tools/one]不存在!" -A -f "$tools/one"
  expect_line_for "文件路径[$tools/one]不存在!" -U -f "$tools/one" -v allow
  expect_line_in_tools '文件[one]不存在, 请输入文件据对路径!' -D -f one
  # A delete does not tidy an absolute path.
  expect_line_for "程序[$root/./tools/one]的联网管控策略不存在, 无需删除!" -D -f "$root/./tools/one"
  do_silently 0 orvex_policy net -D -f "$tools/one"
  expect_nothing_listed
}

@test "a link is a program of its own" {
  use_tools
  ln -s one "$tools/link"
  do_silently 0 orvex_policy net -A -f "$tools/link"
  do_silently 0 orvex_policy net -A -f "$tools/one"
  expect_listed <<END
应用程序:
   阻止: $tools/link
   阻止: $tools/one
END
  ln -s . "$tools/dir"
  expect_line_for "路径[$tools/dir]是目录, 请输入文件路径" -A -f "$tools/dir"
}

@test "all policies are those of user 0, and only the listing is open to everybody" {
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  separate_roles
  for user in 0 1234; do
    as "$user" orvex_policy net -U -f "$tools/one" -v allow
    expect 0 <<<'当前用户无权限执行, 请切换secadm用户执行!'
    as "$user" orvex_policy net -v allow -L
    expect 0 <<<'当前用户无权限执行, 请切换secadm用户执行!'
  done
  do_silently 600 orvex_policy net -U -f "$tools/one" -v allow
  do_silently 600 orvex_policy net -A -f "$tools/two"
  expect_records <<END
program [$tools/one] status 1 label [$tools/one] text1 [] text2 [] tag 2
program [$tools/two] status 2 label [$tools/two] text1 [] text2 [] tag 2
END
  for user in 0 600 1234; do
    as "$user" orvex_policy net --list
    expect 0 <<END
应用程序:
   允许: $tools/one
   阻止: $tools/two
END
  done
}

@test "a library that cannot store a change is told of" {
  local reason="local_service: $BATS_TEST_TMPDIR/state/orvex.db: attempt to write a readonly database"$'\n'
  use_tools
  do_silently 0 orvex_policy net -A -f "$tools/one"
  separate_roles
  chmod -R a-w "$BATS_TEST_TMPDIR/state"
  as_in_tools 600 orvex_policy net -A -f two
  expect_with_errors 0 "$reason" <<<'程序[two]添加网络管控失败!'
  as_in_tools 600 orvex_policy net -U -f one -v allow
  expect_with_errors 0 "$reason" <<<'更新程序[one]的联网管控状态失败!'
  as_in_tools 600 orvex_policy net -D -f one
  expect_with_errors 0 "$reason" <<<"删除程序[$tools/one]联网管控失败!"
  chmod -R u+w "$BATS_TEST_TMPDIR/state"
  expect_listed <<END
应用程序:
   阻止: $tools/one
END
}
