#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The report's page in a browser.

setup() {
  local program
  for program in chromium chromedriver ansible; do
    PATH=/usr/bin:/bin command -v "$program" >/dev/null || skip "$program is not installed"
  done
  /usr/bin/python3 -c 'import selenium' 2>/dev/null || skip 'selenium is not installed'
  mkdir "$BATS_TEST_TMPDIR/home" "$BATS_TEST_TMPDIR/page"
}

# look_at CHECK: one of the checks in report_checks.py.
look_at() {
  env -i HOME="$BATS_TEST_TMPDIR/home" PATH=/usr/bin:/bin LC_ALL=C.UTF-8 \
    timeout 60 /usr/bin/python3 -B "$ORVEX_SOURCE_DIR/tests/fleet/support/report_checks.py" "$BATS_TEST_TMPDIR/page" "$1"
}

@test "no host, three hosts and a thousand load without a complaint" {
  look_at loading
}

@test "a thousand hosts are drawn in less than a second" {
  look_at speed
}

@test "the page asks for nothing, and nothing in it could" {
  look_at network
}

@test "the page counts the hosts by condition and by module, and shows the worst first" {
  look_at overview
}

@test "what differs on many hosts is told once, with their number" {
  look_at common_differences
}

@test "a host opens and closes by the keyboard, and shows what differs" {
  look_at details
}

@test "a host's reasons are told" {
  look_at reasons
}

@test "hosts are filtered by text and by condition" {
  look_at filter
}

@test "each column sorts, in both directions" {
  look_at sort
}

@test "the page speaks Chinese and English, and keeps its view when it changes" {
  look_at languages
}

@test "names that could do something do nothing, and hide nothing" {
  look_at hostile_names
}

@test "on paper is every host, opened, and no control" {
  look_at print
}

@test "on a phone nothing is cut off, and sorting works" {
  look_at phone
}

@test "texts stand out, light and dark, and every control has a name" {
  look_at accessibility
}
