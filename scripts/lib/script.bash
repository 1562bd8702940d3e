# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What all the scripts have in common: their help, their refusals, what they say of themselves, and a scratch directory
# that goes with them.

script=${0##*/}

# print_help: the comment at the head of the script, which is its help.
print_help() {
  sed -n '3,/^[^#]/ { /^#/!d; s/^# \{0,1\}//; p }' "$0"
}

# answer_help ARGUMENT...: wherever -h or --help stands the script prints its help and does nothing else.
answer_help() {
  local argument
  for argument; do
    if [[ $argument == -h || $argument == --help ]]; then
      print_help
      exit 0
    fi
  done
}

# fail MESSAGE
fail() {
  printf '%s: %s\n' "$script" "$1" >&2
  exit 1
}

# refuse_call: ends a script that was called in a wrong way.
refuse_call() {
  printf 'try %s --help\n' "$script" >&2
  exit 2
}

# refuse_argument ARGUMENT: the same, because of one argument.
refuse_argument() {
  printf '%s: unknown argument, or one that lacks its value: %s\n' "$script" "$1" >&2
  refuse_call
}

# announce MESSAGE: tells what takes time now.
announce() {
  printf '%s: %s\n' "$script" "$1"
}

# make_scratch: makes the directory $scratch, where temporary files go, for the time of the script. Other users may enter
# it. Its name holds neither '.' nor '-', for which rpm's complaints about a path would be misread.
make_scratch() {
  scratch=$(mktemp -d "${TMPDIR:-/tmp}/orvexXXXXXXXX")
  chmod 755 "$scratch"
  remove_scratch_at_end
}

# remove_scratch_at_end: whatever ends the script removes $scratch, once clean_up, which a script may define, has ended what
# lives in it.
remove_scratch_at_end() {
  trap remove_scratch EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM HUP
}

remove_scratch() {
  if declare -F clean_up >/dev/null; then
    clean_up
  fi
  rm -rf --one-file-system "$scratch"
}
