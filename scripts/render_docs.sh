#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Writes the documents that are made of others, and leaves alone those that come out the same:
#
#   docs/messages.md          from docs/messages.tsv and the help texts in src
#
# usage: scripts/render_docs.sh [TREE]
#
#   TREE   the tree to write to, in place of the one that the script lies in
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/messages.bash"

# replace FILE COMMAND...: the file holds what the command prints.
replace() {
  local file=$1
  shift
  "$@" >"$scratch/new"
  cmp -s "$scratch/new" "$file" || cp "$scratch/new" "$file"
}

answer_help "$@"
[[ $# -le 1 ]] || refuse_argument "$2"
[[ ${1-} != -* && -d ${1-.} ]] || refuse_argument "$1"
cd "${1-$(dirname "${BASH_SOURCE[0]}")/..}"
make_scratch
replace docs/messages.md print_message_page docs/messages.tsv src
