#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The packages of the tree, for the tests in packages.bats.

@test "the same tree gives the same packages, wherever it lies" {
  rm -rf "$ORVEX_BUILT_PACKAGES"
  export HOME=$BATS_TEST_TMPDIR
  # A cache of the compiler's would hand the second build what the first one made, with paths of its own in it.
  unset CMAKE_CXX_COMPILER_LAUNCHER
  "$ORVEX_SOURCE_DIR/scripts/package.sh" "$ORVEX_BUILT_PACKAGES"
  mkdir "$BATS_TEST_TMPDIR/other tree"
  tar -C "$ORVEX_SOURCE_DIR" -c --exclude=./build --exclude=./.git . | tar -x -C "$BATS_TEST_TMPDIR/other tree"
  "$BATS_TEST_TMPDIR/other tree/scripts/package.sh" --without-tests "$BATS_TEST_TMPDIR/others"
  diff -r "$ORVEX_BUILT_PACKAGES" "$BATS_TEST_TMPDIR/others"
}
