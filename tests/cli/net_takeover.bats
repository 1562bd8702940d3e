#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# A program that a package comes to own between two commands, or ceases to: its policy moves to the package.

load support/session.bash
load support/packages.bash
load support/net.bash

setup() {
  start_package_session
  player=$root/orvex-player/bin/player
  player_package="icon [player-icon] desktop [$root/orvex-player/usr/share/applications/player.desktop] tag 2"
  player_program="label [$player] text1 [] text2 [] tag 2"
  start_framework_with net
  # Nobody owns the program yet.
  do_silently 0 orvex_policy net -A -f "$player"
  do_silently 0 orvex_policy net -U -f "$player" -v allow
  expect_records <<<"program [$player] status 1 $player_program"
}

@test "the next add denies the package and removes the program" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -f "$player"
  expect_records <<<"package [orvex-player] status 2 $player_package"
  expect_line_for '软件包[orvex-player]的联网管控策略已存在, 无需重复添加!' -A -f "$player"
}

@test "the next update gives the package its own status and removes the program" {
  install_package orvex-player
  do_silently 0 orvex_policy net -U -f "$player" -v allow
  expect_records <<<"package [orvex-player] status 1 $player_package"
}

@test "the next update may deny the package as well" {
  install_package orvex-player
  do_silently 0 orvex_policy net -U -f "$player" -v deny
  expect_records <<<"package [orvex-player] status 2 $player_package"
}

@test "the next delete removes the program, and needs no policy of the package" {
  install_package orvex-player
  do_silently 0 orvex_policy net -D -f "$player"
  expect_nothing_listed
}

@test "until then both are listed side by side" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  expect_listed <<END
软件包:
   阻止: orvex-player

应用程序:
   允许: $player
END
}

@test "an add beside the package's policy only removes the program" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  do_silently 0 orvex_policy net -U -P orvex-player -v allow
  expect_line_for '软件包[orvex-player]的联网管控策略已存在, 无需重复添加!' -A -f "$player"
  expect_records <<<"package [orvex-player] status 1 $player_package"
}

@test "an update beside the package's policy changes that and removes the program" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  do_silently 0 orvex_policy net -U -f "$player" -v allow
  expect_records <<<"package [orvex-player] status 1 $player_package"
}

@test "a delete beside the package's policy removes both" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -P orvex-player
  do_silently 0 orvex_policy net -D -f "$player"
  expect_nothing_listed
  expect_log </dev/null
}

@test "the policy of a package does not follow its file when the package goes" {
  install_package orvex-player
  do_silently 0 orvex_policy net -A -f "$player"
  remove_package orvex-player
  expect_line_for "程序[$player]的联网管控策略不存在, 请先添加!" -U -f "$player" -v allow
  do_silently 0 orvex_policy net -A -f "$player"
  expect_records <<END
package [orvex-player] status 2 $player_package
program [$player] status 2 $player_program
END
  do_silently 0 orvex_policy net -D -f "$player"
  expect_records <<<"package [orvex-player] status 2 $player_package"
  do_silently 0 orvex_policy net -D -P orvex-player
  expect_nothing_listed
}
