# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Completes the command lines of orvex_policy. Where the package bash-completion is installed it loads this file at need;
# elsewhere ~/.bashrc can source it.

# _orvex_policy_join_words: fills $words with the words up to the cursor as the program will get them, quoted as they are
# typed. bash breaks them at ':' and '=' too; what stands together on the line is one word.
_orvex_policy_join_words() {
  local piece blanks rest=$COMP_LINE
  words=()
  for piece in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
    blanks=${rest%%[![:space:]]*}
    rest=${rest#"$blanks$piece"}
    if [[ -n $blanks || ${#words[@]} -eq 0 ]]; then
      words+=("$piece")
    else
      words[-1]+=$piece
    fi
  done
}

# _orvex_policy_is_among WORD OTHER...
_orvex_policy_is_among() {
  local other
  for other in "${@:2}"; do
    if [[ $other == "$1" ]]; then
      return 0
    fi
  done
  return 1
}

# _orvex_policy_describe_module MODULE: sets what the module takes. Only one of its commands can be given.
_orvex_policy_describe_module() {
  switches=(on off)
  commands=(-A --add -D --delete -L --list)
  values_are_lists=false
  case $1 in
    exec)
      switches+=(script)
      options=(-e --except -f --file -d --dir -P --package --tampered)
      values_are_lists=true
      ;;
    net)
      commands+=(-U --update)
      # The program knows the long form of -P by this spelling.
      options=(-f --file -P --pakcage -v --value)
      ;;
    file)
      options=(-e --except -f --file -d --dir -P --package)
      values_are_lists=true
      ;;
    proc)
      options=(-e --except -f --file -p --pid -d --dir -P --package)
      values_are_lists=true
      ;;
    kmod) options=(-f --file -n --name) ;;
    userid)
      switches=()
      commands=(-L --list)
      options=(-f --file -d --dir -P --package)
      ;;
    box) commands=() ;;
    *) return 1 ;;
  esac
}

# _orvex_policy_takes_value OPTION: -e takes none, --except does.
_orvex_policy_takes_value() {
  [[ $1 != @(-e|--tampered) ]] && _orvex_policy_is_among "$1" "${options[@]}"
}

# _orvex_policy_read_options WORD...: fills $given with the options in these words, and sets $open to the one whose value is
# still to come.
_orvex_policy_read_options() {
  local word at
  for word; do
    if [[ -n $open ]]; then
      open=
    elif [[ $word == --* ]]; then
      given+=("${word%%=*}")
      if [[ $word != *=* ]] && _orvex_policy_takes_value "$word"; then
        open=$word
      fi
    elif [[ $word == -* ]]; then
      # Letters may stand together, and a value right behind its letter.
      for ((at = 1; at < ${#word}; ++at)); do
        given+=("-${word:at:1}")
        if _orvex_policy_takes_value "-${word:at:1}"; then
          if ((at + 1 == ${#word})); then
            open=-${word:at:1}
          fi
          break
        fi
      done
    fi
  done
}

# _orvex_policy_offer TYPED WORD...: offers the words that begin with what is typed or, in a list, with its last piece.
_orvex_policy_offer() {
  local word piece=${1##*:}
  for word in "${@:2}"; do
    if [[ $word == "$piece"* ]]; then
      COMPREPLY+=("${1%"$piece"}$word")
    fi
  done
}

# _orvex_policy_unquote TEXT: sets $plain to the text without its quotes and backslashes.
_orvex_policy_unquote() {
  local at letter quote=
  plain=
  for ((at = 0; at < ${#1}; ++at)); do
    letter=${1:at:1}
    if [[ -z $quote && $letter == [\"\'] ]]; then
      quote=$letter
    elif [[ $letter == "$quote" ]]; then
      quote=
    else
      [[ $letter != \\ || $quote == \' ]] || letter=${1:++at:1}
      plain+=$letter
    fi
  done
}

# _orvex_policy_offer_paths TYPED KIND: KIND is file or directory.
_orvex_policy_offer_paths() {
  local plain piece
  if $values_are_lists && [[ $1 == *:* ]]; then
    _orvex_policy_unquote "$1"
    piece=${plain##*:}
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -A "$2" -P "${plain%"$piece"}" -- "$piece")
    # bash takes the whole list for one name, and so no directory for one.
    if [[ ${#COMPREPLY[@]} -eq 1 && -d ${COMPREPLY[0]##*:} ]]; then
      COMPREPLY[0]+=/
      compopt -o nospace
    fi
  elif [[ $2 == directory ]]; then
    compopt -o dirnames
  else
    # What bash does by itself is right: it completes what stands behind a ':' that is not quoted.
    compopt -o default
  fi
}

# _orvex_policy_print_packages PIECE: the installed packages whose names begin so.
_orvex_policy_print_packages() {
  # To rpm it is a pattern.
  if [[ $1 != *[^A-Za-z0-9._+-]* ]]; then
    rpm -qa --nodigest --nosignature --queryformat '%{NAME}\n' "$1*" 2>/dev/null
  fi
}

# _orvex_policy_print_processes: those that run a program. A thread of the kernel has no command line.
_orvex_policy_print_processes() {
  local directory
  for directory in /proc/[0-9]*; do
    if read -r -d '' _ <"$directory/cmdline"; then
      echo "${directory#/proc/}"
    fi
  done 2>/dev/null
}

# _orvex_policy_print_kernel_modules
_orvex_policy_print_kernel_modules() {
  local name
  while read -r name _; do
    echo "$name"
  done 2>/dev/null </proc/modules
}

# _orvex_policy_offer_values OPTION VALUE TYPED: TYPED is what bash replaces: VALUE, or its last piece.
_orvex_policy_offer_values() {
  local values=()
  if ! $values_are_lists && [[ $2 == *:* && $1 != @(-f|--file|-d|--dir) ]]; then
    return
  fi
  case $1 in
    -f | --file) _orvex_policy_offer_paths "$3" file ;;
    -d | --dir) _orvex_policy_offer_paths "$3" directory ;;
    -P | --package | --pakcage) mapfile -t values < <(_orvex_policy_print_packages "${3##*:}") ;;
    -p | --pid) mapfile -t values < <(_orvex_policy_print_processes) ;;
    -n | --name) mapfile -t values < <(_orvex_policy_print_kernel_modules) ;;
    -v | --value) values=(allow deny) ;;
  esac
  _orvex_policy_offer "$3" "${values[@]}"
}

# _orvex_policy_offer_options MODULE TYPED
_orvex_policy_offer_options() {
  local option excluded=() offered=()
  for option in "${commands[@]}"; do
    if _orvex_policy_is_among "$option" "${given[@]}"; then
      commands=()
    fi
  done
  if _orvex_policy_is_among -e "${given[@]}" || _orvex_policy_is_among --except "${given[@]}"; then
    excluded=(-e --except)
    # Only the object that file protects can be a directory, not the program that it excepts.
    [[ $1 != file ]] || excluded+=(-d --dir)
  fi
  for option in "${options[@]}"; do
    _orvex_policy_is_among "$option" "${excluded[@]}" || offered+=("$option")
  done
  _orvex_policy_offer "$2" "${commands[@]}" "${offered[@]}" -h --help
}

# _orvex_policy_offer_option_or_value MODULE TYPED
_orvex_policy_offer_option_or_value() {
  local word=${words[-1]} given=() open=
  _orvex_policy_read_options "${words[@]:2:${#words[@]}-3}"
  if [[ -n $open ]]; then
    _orvex_policy_offer_values "$open" "$word" "$2"
  elif [[ $word == --*=* ]] && _orvex_policy_takes_value "${word%%=*}"; then
    _orvex_policy_offer_values "${word%%=*}" "${word#*=}" "$2"
  else
    _orvex_policy_offer_options "$1" "$2"
  fi
}

# _orvex_policy PROGRAM TYPED
_orvex_policy() {
  local words switches commands options=() values_are_lists
  _orvex_policy_join_words
  local count=${#words[@]} module=${words[1]}
  if [[ $count -eq 2 && $module == -* ]]; then
    _orvex_policy_offer "$2" -h --help
  elif [[ $count -eq 2 ]]; then
    _orvex_policy_offer "$2" exec net file proc kmod userid box enable disable permissive status
  elif ! _orvex_policy_describe_module "$module"; then
    return 0
  elif [[ $count -eq 3 && ${words[2]} != -* && ${#switches[@]} -gt 0 ]]; then
    _orvex_policy_offer "$2" "${switches[@]}"
  elif [[ $count -eq 3 ]] || ! _orvex_policy_is_among "${words[2]}" "${switches[@]}"; then
    _orvex_policy_offer_option_or_value "$module" "$2"
  elif [[ $count -eq 4 && ${words[2]} == script ]]; then
    _orvex_policy_offer "$2" on off
  fi
}

complete -F _orvex_policy orvex_policy
