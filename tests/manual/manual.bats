#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# The manuals, in both languages: their form, and that they are in step with the programs and with each other.
bats_require_minimum_version 1.5.0
load "$ORVEX_SOURCE_DIR/tests/support/help_words.bash"
load support/pages.bash

setup() {
  cd "$ORVEX_SOURCE_DIR" || return
  export LC_ALL=C.UTF-8
  pages=(man/*.8 man/zh_CN/*.8)
  # All that have manuals but orvex_policy, whose help is of another form.
  tools=(orvex_local orvex_state)
  # A line of Chinese has more than 80 bytes with less than 30 letters, and the name that mandoc has for a letter ends in a
  # bracket, which it then takes for punctuation.
  chinese_style='longer than 80 bytes|trailing delimiter: (Nd|Sh|Ss|Sx) .*\\[u[0-9A-F]+\]$'
}

# need TOOL...: the test is left out on a machine that lacks one.
need() {
  local tool
  for tool; do
    command -v "$tool" >/dev/null || skip "this machine has no $tool; scripts/bootstrap.sh --all installs it"
  done
}

# start_programs: the programs can be called by their names, on a store of their own.
start_programs() {
  PATH=$ORVEX_BIN_DIR:$PATH
  export ORVEX_LOCAL_STATE=$BATS_TEST_TMPDIR/state
  mkdir "$ORVEX_LOCAL_STATE"
}

# lint_page PAGE: what mandoc finds, but for manuals of other packages, which this machine may lack.
lint_page() {
  mandoc -T lint "$1" 2>/dev/null | grep -v 'referenced manual not found' |
    case $1 in
      */zh_CN/*) grep -vE "$chinese_style" ;;
      *) cat ;;
    esac
}

# play: types what stands on standard input.
play() {
  cat >"$BATS_TEST_TMPDIR/examples.md"
  tests/scripts/play_document.sh --programs "$ORVEX_BIN_DIR" "$BATS_TEST_TMPDIR/examples.md"
}

# add_framework: adds to the sessions on standard input what happens meanwhile: the machine restarts behind the first one, and
# the roles are separated before their labels are asked for.
add_framework() {
  # shellcheck disable=SC2016
  sed -e '0,/^```$/s//# orvex_local restart\nRestart simulated: what was set for after a restart is in force.\n```/' \
    -e 's/^# orvex_policy userid/# orvex_local roles on\n&/'
}

@test "mandoc has nothing to say about the manuals" {
  need mandoc
  [[ ${#pages[@]} -ge 4 ]]
  for page in "${pages[@]}"; do
    lint_page "$page" | diff -u /dev/null -
  done
}

@test "man shows the manuals without a warning" {
  need man
  for page in "${pages[@]}"; do
    MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>"$BATS_TEST_TMPDIR/warnings" >"$BATS_TEST_TMPDIR/text"
    diff -u /dev/null "$BATS_TEST_TMPDIR/warnings"
    grep -q '^SYNOPSIS' "$BATS_TEST_TMPDIR/text"
  done
}

@test "installed manuals are found in both languages" {
  need man localedef
  mkdir "$BATS_TEST_TMPDIR/locales"
  localedef --no-archive -i zh_CN -f UTF-8 "$BATS_TEST_TMPDIR/locales/zh_CN.UTF-8"
  export LOCPATH=$BATS_TEST_TMPDIR/locales MANPATH=$BATS_TEST_TMPDIR/usr/share/man
  DESTDIR=$BATS_TEST_TMPDIR cmake -DCMAKE_INSTALL_PREFIX=/usr -P "$ORVEX_BUILD_DIR/man/cmake_install.cmake"
  for page in orvex_policy "${tools[@]}"; do
    diff -u <(man -w "$page") <(echo "$MANPATH/man8/$page.8")
    diff -u <(LC_ALL=zh_CN.UTF-8 man -w "$page") <(echo "$MANPATH/zh_CN/man8/$page.8")
  done
}

@test "the manuals tell the words and options of orvex_policy's help texts, and what these leave out" {
  start_programs
  {
    print_policy_words | print_owners
    printf '%s\t%s\n' - -V - --version - import - export net --pakcage
  } | sort -u >"$BATS_TEST_TMPDIR/words"
  [[ $(wc -l <"$BATS_TEST_TMPDIR/words") -gt 100 ]]
  for page in man{,/zh_CN}/orvex_policy.8; do
    print_manual_words "$page" headings | sort | diff -u "$BATS_TEST_TMPDIR/words" -
  done
}

@test "the manuals of the tools tell the words and options of their help texts, and no others" {
  start_programs
  for tool in "${tools[@]}"; do
    # The help of a command is told once for all.
    print_tool_words "$tool" | print_owners | grep -vP '^[a-z]+\t(-h|--help)$' | sort -u >"$BATS_TEST_TMPDIR/words"
    [[ $(wc -l <"$BATS_TEST_TMPDIR/words") -gt 10 ]]
    for page in man{,/zh_CN}/"$tool.8"; do
      print_manual_words "$page" items | sort | diff -u "$BATS_TEST_TMPDIR/words" -
    done
  done
}

@test "what a person types or sees is the same in both languages" {
  for page in man/*.8; do
    diff -u <(grep '^\.It' "$page" | tr -d '"') <(grep '^\.It' "man/zh_CN/${page##*/}" | tr -d '"')
  done
}

@test "the examples of orvex_policy's manuals come out as they stand there" {
  for page in man{,/zh_CN}/orvex_policy.8; do
    print_examples "$page" | add_framework | play
  done
}

@test "the examples of the tools' manuals come out as they stand there" {
  for tool in "${tools[@]}"; do
    for page in man{,/zh_CN}/"$tool.8"; do
      print_examples "$page" | play
    done
  done
}

@test "the Chinese manuals are translated whole, and the rendered pages are in step" {
  need po4a mandoc msgfmt
  mkdir -p "$BATS_TEST_TMPDIR/tree/docs"
  cp -R man src "$BATS_TEST_TMPDIR/tree"
  cp docs/messages.* "$BATS_TEST_TMPDIR/tree/docs"
  scripts/render_docs.sh "$BATS_TEST_TMPDIR/tree"
  diff -ru docs/man "$BATS_TEST_TMPDIR/tree/docs/man"
  diff -ru --exclude='*.pot' --ignore-matching-lines='^"POT-Creation-Date:' man "$BATS_TEST_TMPDIR/tree/man"
  run --separate-stderr msgfmt --statistics --check -o /dev/null man/po/zh_CN.po
  [[ $stderr == *' translated messages.' && $stderr != *,* ]]
}
