#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Network control of packages: real ones, with desktop entries and icons, named by themselves or by a file of theirs.

load support/session.bash
load support/packages.bash
load support/net.bash

setup() {
  start_package_session
  player=$root/orvex-player/bin/player
  player_desktop=$root/orvex-player/usr/share/applications/player.desktop
  install_package orvex-player
  start_framework_with net
}

@test "a package is added, updated, listed and deleted, with its desktop entry and its icon" {
  do_silently 0 orvex_policy net -A -P orvex-player
  expect_listed <<END
软件包:
   阻止: orvex-player

END
  expect_records <<END
package [orvex-player] status 2 icon [player-icon] desktop [$player_desktop] tag 2
END
  do_silently 0 orvex_policy net --update --pakcage orvex-player --value allow
  expect_listed <<END
软件包:
   允许: orvex-player

END
  do_silently 0 orvex_policy net -U -P orvex-player -v deny
  expect_records <<END
package [orvex-player] status 2 icon [player-icon] desktop [$player_desktop] tag 2
END
  do_silently 0 orvex_policy net -D -P orvex-player
  expect_nothing_listed
  expect_log </dev/null
}

@test "a second add, and an update or delete of nothing, are told" {
  expect_line_for '软件包[orvex-player]的联网管控策略不存在, 请先添加!' -U -P orvex-player -v allow
  expect_line_for '软件包[orvex-player]的联网管控策略不存在, 无需删除!' -D -P orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  do_silently 0 orvex_policy net -U -P orvex-player -v allow
  expect_line_for '软件包[orvex-player]的联网管控策略已存在, 无需重复添加!' -A -P orvex-player
  expect_listed <<END
软件包:
   允许: orvex-player

END
  expect_log </dev/null
}

@test "only an add asks whether the package is installed" {
  expect_line_for '软件包[orvex-missing]名称错误, 或者未安装!' -A -P orvex-missing
  expect_line_for '软件包[orvex-missing]的联网管控策略不存在, 请先添加!' -U -P orvex-missing -v allow
  expect_line_for '软件包[orvex-missing]的联网管控策略不存在, 无需删除!' -D -P orvex-missing
  do_silently 0 orvex_policy net -A -P orvex-player
  remove_package orvex-player
  expect_line_for '软件包[orvex-player]名称错误, 或者未安装!' -A -P orvex-player
  do_silently 0 orvex_policy net -U -P orvex-player -v allow
  expect_records <<END
package [orvex-player] status 1 icon [player-icon] desktop [$player_desktop] tag 2
END
  do_silently 0 orvex_policy net -D -P orvex-player
  expect_nothing_listed
}

@test "an update keeps the icon that the package had when it was added" {
  do_silently 0 orvex_policy net -A -P orvex-player
  sed -i 's/^Icon=.*/Icon=new-icon/' "$player_desktop"
  do_silently 0 orvex_policy net -U -P orvex-player -v allow
  do_silently 0 orvex_policy net -U -f "$player" -v deny
  expect_records <<END
package [orvex-player] status 2 icon [player-icon] desktop [$player_desktop] tag 2
END
  do_silently 0 orvex_policy net -D -P orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  expect_records <<END
package [orvex-player] status 2 icon [new-icon] desktop [$player_desktop] tag 2
END
}

@test "a file of a package stands for the package" {
  expect_line_for "程序[$player]的联网管控策略不存在, 请先添加!" -U -f "$player" -v allow
  expect_line_for "程序[$player]的联网管控策略不存在, 无需删除!" -D -f "$player"
  do_silently 0 orvex_policy net -A -f "$player"
  expect_records <<END
package [orvex-player] status 2 icon [player-icon] desktop [$player_desktop] tag 2
END
  expect_line_for '软件包[orvex-player]的联网管控策略已存在, 无需重复添加!' -A -f "$player"
  # Every file of the package will do.
  do_silently 0 orvex_policy net -U -f "$player_desktop" -v allow
  expect_listed <<END
软件包:
   允许: orvex-player

END
  do_silently 0 orvex_policy net -D -f "$player_desktop"
  expect_nothing_listed
  expect_log </dev/null
}

@test "lines about a package's file show it as typed, or in its absolute form" {
  cd "$root/orvex-player"
  as 0 orvex_policy net -U -f bin/player -v deny
  expect 0 <<<'程序[bin/player]的联网管控策略不存在, 请先添加!'
  as 0 orvex_policy net -D -f bin/player
  expect 0 <<<"程序[$player]的联网管控策略不存在, 无需删除!"
}

@test "a file that is gone still stands for its package, at a delete" {
  do_silently 0 orvex_policy net -A -f "$player"
  rm "$player"
  expect_line_for "文件路径[$player]不存在!" -A -f "$player"
  expect_line_for "文件路径[$player]不存在!" -U -f "$player" -v allow
  do_silently 0 orvex_policy net -D -f "$player"
  expect_nothing_listed
}

@test "packages with odd desktop entries are added with what there is" {
  for package in orvex-demo-tools orvex-empty orvex-desktop orvex-desktop-plain orvex-desktop-broken; do
    install_package $package
  done
  do_silently 0 orvex_policy net -A -P orvex-demo-tools
  do_silently 0 orvex_policy net -A -P orvex-empty
  do_silently 0 orvex_policy net -A -P orvex-desktop
  do_silently 0 orvex_policy net -A -P orvex-desktop-plain
  broken=$root/orvex-desktop-broken/usr/share/applications/broken.desktop
  expect_line_for "加载desktop文件失败: $broken" -A -P orvex-desktop-broken
  expect_records <<END
package [orvex-demo-tools] status 2 icon [] desktop [] tag 2
package [orvex-empty] status 2 icon [] desktop [] tag 2
package [orvex-desktop] status 2 icon [/opt/orvex-desktop/second.png] desktop [$root/orvex-desktop/usr/share/applications/sub/second.desktop] tag 2
package [orvex-desktop-plain] status 2 icon [] desktop [$root/orvex-desktop-plain/usr/share/applications/plain.desktop] tag 2
package [orvex-desktop-broken] status 2 icon [] desktop [$broken] tag 2
END
}

@test "a package is stored under the name that was given" {
  do_silently 0 orvex_policy net -A -P orvex-player-1.0
  do_silently 0 orvex_policy net -A -f "$player"
  expect_listed <<END
软件包:
   阻止: orvex-player-1.0
   阻止: orvex-player

END
}

# The owner query's answer is taken as it comes, whatever it says.
@test "a complaint of the owner query that looks like a package is taken for one" {
  mkdir "$root/a-b-c"
  touch "$root/a-b-c/run.sh"
  # The desktop entry is asked for twice, once for itself and once for its icon.
  as 0 orvex_policy net -A -f "$root/a-b-c/run.sh"
  expect 0 <<END
软件包[file $root/a]未安装!
软件包[file $root/a]未安装!
END
  expect_records <<<"package [file $root/a] status 2 icon [] desktop [] tag 2"
  do_silently 0 orvex_policy net -D -f "$root/a-b-c/run.sh"
  expect_nothing_listed
}
