# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Sessions in which packages come and go.
load "$ORVEX_SOURCE_DIR/scripts/lib/packages.bash"

# start_package_session: a session with the files of all test packages in $root, which no package owns as yet. They are the
# session's own.
start_package_session() {
  start_session
  root=$BATS_TEST_TMPDIR/root
  cp -R --preserve=mode,links "$ORVEX_PACKAGES_DIR/root" "$root"
  echo "%_dbpath $BATS_TEST_TMPDIR/rpm" >"$BATS_TEST_TMPDIR/home/.rpmmacros"
  HOME="$BATS_TEST_TMPDIR/home" run_rpm --initdb
}

# install_package PACKAGE: from now on the package owns its files.
install_package() {
  HOME="$BATS_TEST_TMPDIR/home" \
    enter_package "$ORVEX_PACKAGES_DIR/rpms/home/$1-1.0.rpm" "$ORVEX_PACKAGES_DIR/root" "$root"
}

# remove_package PACKAGE: the files stay, owned by nobody.
remove_package() {
  HOME="$BATS_TEST_TMPDIR/home" drop_package "$1"
}
