# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# A place to play in: the built programs, a state of the stand-in, and packages of its own that rpm finds instead of the
# machine's.

# check_users: ends the script where nobody can act as root or as user 600 here.
check_users() {
  if ! can_run_as 0 || ! can_run_as 600; then
    fail 'this needs root, or an ordinary user who may make user namespaces (unshare -r); nothing was built'
  fi
}

# read_arguments ARGUMENT...: the arguments of the scripts that play. Sets $programs, empty without the option, and $operands.
read_arguments() {
  answer_help "$@"
  programs=
  operands=()
  while [[ $# -gt 0 ]]; do
    case $1 in
      --programs)
        [[ $# -ge 2 ]] || refuse_argument "$1"
        [[ -x $2/orvex_policy ]] || fail "no orvex_policy in the directory $2"
        programs=$(cd "$2" && pwd)
        shift 2
        ;;
      -*) refuse_argument "$1" ;;
      *)
        operands+=("$1")
        shift
        ;;
    esac
  done
}

# build_programs: builds them where no option named any.
build_programs() {
  if [[ -z $programs ]]; then
    scripts/bootstrap.sh
    announce 'building the program and its stand-in'
    cmake --preset release
    cmake --build --preset release
    programs=$PWD/build/release/bin
  fi
}

# prepare_playground DIR: fills the directory and leads everything that is started from now on to it.
prepare_playground() {
  announce 'building packages to play with'
  tests/packages/make_packages.sh "$1"
  make_state "$1/state"
  PATH=$(reach_programs "$programs" "$1/programs"):$PATH
  export PATH HOME="$1/home" ORVEX_LOCAL_STATE="$1/state"
}
