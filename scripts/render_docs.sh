#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Writes the documents that are made of others:
#
#   docs/messages.md          from docs/messages.tsv and the help texts in src
#   man/orvex_policy.8        its section DIAGNOSTICS, from docs/messages.tsv
#   man/zh_CN, man/po         the Chinese manuals, from the English ones and their translation
#   docs/man                  the manuals, for reading in a browser
#
# usage: scripts/render_docs.sh [TREE]
#
#   TREE   the tree to write to, in place of the one that the script lies in
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/messages.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/manual_page.bash"

# replace FILE COMMAND...: the file holds what the command prints.
replace() {
  local file=$1
  shift
  "$@" >"$scratch/new"
  cmp -s "$scratch/new" "$file" || cp "$scratch/new" "$file"
}

# put_diagnostics PAGE TABLE: the page with what is made of the table between its two comments.
put_diagnostics() {
  sed '/^\.\\" From here to the next comment/q' "$1"
  print_diagnostics "$2"
  sed -n '/^\.\\" From here on by hand/,$p' "$1"
}

translate_manuals() {
  (cd man && po4a --quiet po4a.cfg)
  replace man/po/zh_CN.po msgattrib --no-obsolete man/po/zh_CN.po
  set_chinese man/zh_CN/*.8
}

print_manuals() {
  local page
  mkdir -p docs/man/zh_CN
  for page in man/*.8 man/zh_CN/*.8; do
    replace "docs/$page.md" print_manual_page "$page"
  done
}

answer_help "$@"
[[ $# -le 1 ]] || refuse_argument "$2"
[[ ${1-} != -* && -d ${1-.} ]] || refuse_argument "$1"
cd "${1-$(dirname "${BASH_SOURCE[0]}")/..}"
for tool in mandoc msgattrib po4a; do
  command -v "$tool" >/dev/null || fail "there is no $tool here; scripts/bootstrap.sh --all installs it"
done
make_scratch
replace docs/messages.md print_message_page docs/messages.tsv src
replace man/orvex_policy.8 put_diagnostics man/orvex_policy.8 docs/messages.tsv
translate_manuals
print_manuals
