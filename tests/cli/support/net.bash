# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the sessions of network control share.

# expect_line_for LINE ARGUMENT...
expect_line_for() {
  as 0 orvex_policy net "${@:2}"
  expect 0 <<<"$1"
}

# expect_listed: the listing shows what stands on standard input.
expect_listed() {
  as 0 orvex_policy net -L
  expect 0
}

# expect_nothing_listed: there is no policy.
expect_nothing_listed() {
  do_silently 0 orvex_policy net -L
}

# expect_records: the records of user 0, field by field, are those on standard input, and no other user has any.
expect_records() {
  as 0 show_net 0
  expect 0
  for user in 1 600 1234; do
    do_silently 0 show_net "$user"
  done
}
