# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What is made of docs/messages.tsv, the table of all texts that orvex_policy prints: a section of its manual, and a page.

# The classes in the order in which they are told: class, heading, sense.
message_classes="\
refused|Refused|Nothing was done, because of what was asked, who asked, or the state of the framework.
failed|Failed|Something was tried and did not work.
nothing to do|Nothing to do|All is as it was asked for already.
notice|Notices|What happens now, or will.
question|Questions|What has to be answered before anything is done.
listing|Listings|Rows of answers."

# print_rows_of CLASS TABLE: the rows of the page's table.
print_rows_of() {
  awk -F '\t' -v class="$1" '$1 == class { printf "| `%s` | %s | %s |\n", $2, $3, $4 == "-" ? "" : $4 }' "$2"
}

# print_items_of CLASS TABLE: the items of the manual's list, which is for what a person sees. An option begins with a
# minus, which can be pasted, and not with a hyphen; a mark at the end of a message is a part of it; and each sentence has a
# line of its own.
print_items_of() {
  local text meaning advice
  while IFS=$'\t' read -r text meaning advice; do
    # shellcheck disable=SC2001
    printf '.It Li "%s"\n' "$(sed 's/[:!]$/\\\&&/' <<<"$text")"
    printf '%s\n' "$meaning" "${advice#-}" |
      sed -E 's/ -(-?)/ \\-\1/g; s/\\--/\\-\\-/g; s/([.!?]) ([A-Z])/\1\n\2/g; /^$/d' | fold_lines
  done < <(awk -F '\t' -v class="$1" '$1 == class && $4 !~ /^No command/ { print $2 "\t" $3 "\t" $4 }' "$2")
}

fold_lines() {
  fold -s -w 78 | sed 's/ $//'
}

# print_diagnostics TABLE: the section of the manual.
print_diagnostics() {
  local class heading sense
  while IFS='|' read -r class heading sense; do
    printf '.Ss %s\n' "$heading"
    fold_lines <<<"$sense"
    echo '.Bl -tag -width Ds'
    print_items_of "$class" "$1"
    echo '.El'
  done <<<"$message_classes"
}

# print_usage_lines FILE: the help text that is printed in a source file.
print_usage_lines() {
  sed -n '/^void .*usage() {$/,/^}$/s/^ *print_line("\(.*\)");$/\1/p' "$1"
}

# print_help_in_english TABLE FILE: the same, line by line as the table has it.
print_help_in_english() {
  print_usage_lines "$2" | LC_ALL=C awk -F '\t' '
    NR == FNR { if ($1 == "help") english[$2] = $3; next }
    $0 in english { print english[$0]; next }
    /[\200-\377]/ { print "no English for: " $0 >"/dev/stderr"; failed = 1 }
    { print }
    END { exit failed }' "$1" -
}

# print_message_page TABLE SOURCES: the page.
print_message_page() {
  local class heading sense source
  cat <<'PAGE'
<!-- Written by scripts/render_docs.sh, from messages.tsv and the help texts. -->
# What orvex_policy says

All texts of `orvex_policy`, what they mean, and what to do. Words in capital letters stand for what the program puts there.
The browser's search finds a message by any piece of it. `messages.tsv` is the same as a table, for tools.
PAGE
  while IFS='|' read -r class heading sense; do
    printf '\n## %s\n\n%s\n\n| Message | Meaning | What to do |\n|---|---|---|\n' "$heading" "$sense"
    print_rows_of "$class" "$1"
  done <<<"$message_classes"
  printf '\n## The help texts in English\n'
  for source in "$2"/front/global_usage.cpp "$2"/modules/{exec,net,file,proc,kmod,userid}/*_run.cpp "$2"/modules/box/box_module.cpp; do
    printf '\n```text\n'
    print_help_in_english "$1" "$source" || return
    printf '```\n'
  done
}
