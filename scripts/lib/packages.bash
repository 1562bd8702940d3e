# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the demonstration, the tests and the measurements need to play with packages of their own.

# with_opt DIR COMMAND [ARGUMENT...]: runs the command as root of a user and mount namespace in which DIR lies over /opt.
# Nobody else sees it there.
with_opt() {
  # shellcheck disable=SC2016
  unshare --user --map-root-user --mount \
    bash -c 'mount --bind "$1" /opt && shift && exec "$@"' with_opt "$@"
}

# enter_package FILE, drop_package NAME: enter a package into the database that HOME leads to, and take it out. Its
# files are not touched.
enter_package() {
  run_rpm -i --justdb --nodeps --noscripts --nosignature "$1"
}

drop_package() {
  run_rpm -e --justdb --nodeps --noscripts "$1"
}

# run_rpm ARGUMENT...: what rpm says is of interest only if it fails.
run_rpm() {
  local said
  said=$(rpm "$@" 2>&1) || {
    printf '%s\n' "$said" >&2
    return 1
  }
}
