# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the demonstration and the tests need to play a session: another user, and a kernel module.

# run_as UID COMMAND [ARGUMENT...]: runs the command as a process with this user id, on the files of the present user.
# Where the id is another one it is so in a user namespace only, which an ordinary user can make as well as root.
run_as() {
  local user=$1
  shift
  if [[ $user -eq $EUID ]]; then
    "$@"
  else
    unshare --user --map-user="$user" "$@"
  fi
}

# can_run_as UID: tells whether this machine allows that.
can_run_as() {
  run_as "$1" true 2>/dev/null
}

# make_kernel_module FILE NAME: makes an object file that names itself as a kernel module does, in its .modinfo section.
make_kernel_module() {
  "${CXX:-c++}" -x c++ -c -o "$1" - <<END
__attribute__((section(".modinfo"), used, aligned(1))) static const char name_entry[] = "name=$2";
__attribute__((section(".modinfo"), used, aligned(1))) static const char license_entry[] = "license=GPL";
END
}
