# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Completes the command lines of orvex_state. Where the package bash-completion is installed it loads this file at need;
# elsewhere ~/.bashrc can source it.

# _orvex_state_offer TYPED WORD...: offers the words that begin with what is typed.
_orvex_state_offer() {
  local word
  for word in "${@:2}"; do
    if [[ $word == "$1"* ]]; then
      COMPREPLY+=("$word")
    fi
  done
}

# _orvex_state PROGRAM TYPED PREVIOUS
_orvex_state() {
  local help=()
  if [[ $2 == -* ]]; then
    help=(-h --help)
  fi
  case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*)
      if [[ $2 == -* ]]; then
        _orvex_state_offer "$2" "${help[@]}" --version
      else
        _orvex_state_offer "$2" dump diff plan apply
      fi
      ;;
    *:dump)
      if [[ $3 == @(-o|--output|=) ]]; then
        compopt -o default
      else
        _orvex_state_offer "$2" -o --output "${help[@]}"
      fi
      ;;
    *:diff | *:plan | *:apply)
      compopt -o default
      if [[ $2 == -* ]]; then
        _orvex_state_offer "$2" --keep-others "${help[@]}"
        [[ ${COMP_WORDS[1]} != diff ]] || _orvex_state_offer "$2" --json
      fi
      ;;
  esac
}

complete -F _orvex_state orvex_state
