# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the demonstration and the tests need to play a session: another user, a place where both can work, and a kernel
# module.

# is_mapped UID: tells whether the id means anything here. In a user namespace most do not.
is_mapped() {
  local inside count
  while read -r inside _ count; do
    if (($1 >= inside && $1 < inside + count)); then
      return 0
    fi
  done </proc/self/uid_map
  return 1
}

# become UID: fills the array user_prefix with what stands in front of a command that is to run as a process with this user
# id. Root takes the id on for good and loses all other rights. Everybody else does so in a user namespace, where the files
# of the present user are those of the id.
become() {
  if [[ $1 -eq $EUID ]]; then
    user_prefix=()
  elif [[ $EUID -eq 0 ]] && is_mapped "$1"; then
    user_prefix=(setpriv "--reuid=$1" "--regid=$1" --clear-groups)
  else
    user_prefix=(unshare --user "--map-user=$1" "--map-group=$1")
  fi
}

# run_as UID COMMAND [ARGUMENT...]
run_as() {
  become "$1"
  "${user_prefix[@]}" "${@:2}"
}

# can_run_as UID: tells whether this machine allows that.
can_run_as() {
  run_as "$1" true 2>/dev/null
}

# make_state DIR: an empty state directory of the stand-in, in which root and user 600 both work: it belongs to the one who
# has fewer rights.
make_state() {
  mkdir "$1"
  become 600
  if [[ ${user_prefix[0]-} == setpriv ]]; then
    chown 600 "$1"
  fi
}

# reach_programs BIN DIR: prints where every user finds the programs of the directory BIN and, beside it, their libraries:
# there, or in copies in DIR where BIN lies in a directory that is closed to others, as root's home mostly is.
reach_programs() {
  local programs
  if run_as 600 test -x "$1/orvex_policy"; then
    programs=$1
  else
    programs=$2/bin
    mkdir -p "$2"
    cp -R "$1" "$1/../lib" "$2"
  fi
  echo "$programs"
}

# make_kernel_module FILE NAME: makes an object file that names itself as a kernel module does, in its .modinfo section.
make_kernel_module() {
  "${CXX:-c++}" -x c++ -c -o "$1" - <<END
__attribute__((section(".modinfo"), used, aligned(1))) static const char name_entry[] = "name=$2";
__attribute__((section(".modinfo"), used, aligned(1))) static const char license_entry[] = "license=GPL";
END
}
