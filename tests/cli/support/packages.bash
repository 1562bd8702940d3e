# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Sessions in which packages come and go. Their files lie in /opt for the commands of the session alone.
load "$ORVEX_SOURCE_DIR/scripts/lib/packages.bash"

# start_package_session: a session with the files of all test packages in /opt, which no package owns as yet. The
# files in $session_opt are the session's own.
start_package_session() {
  session_opt=$BATS_TEST_TMPDIR/opt
  cp -R --preserve=mode,links "$ORVEX_PACKAGES_DIR/root/opt" "$session_opt"
  start_session
  echo "%_dbpath $BATS_TEST_TMPDIR/rpm" >"$BATS_TEST_TMPDIR/home/.rpmmacros"
  HOME="$BATS_TEST_TMPDIR/home" run_rpm --initdb
}

# install_package PACKAGE: from now on the package owns its files.
install_package() {
  HOME="$BATS_TEST_TMPDIR/home" enter_package "$ORVEX_PACKAGES_DIR/rpms/home/$1-1.0.rpm"
}

# remove_package PACKAGE: the files stay, owned by nobody.
remove_package() {
  HOME="$BATS_TEST_TMPDIR/home" drop_package "$1"
}

# run_as UID COMMAND...: every command of the session finds the files of the packages.
run_as() {
  with_opt "$session_opt" unshare --user --map-user="$1" "${@:2}"
}
