# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the manual pages say, in either language.

# print_owners: for each word of the rows on standard input, which are those of help_words.bash, the module or command that it
# belongs to, or "-" for the program itself; a tab; the word or option.
print_owners() {
  awk -F '\t' '{
    owner = $1 == "" ? "-" : $1
    sub(/ .*/, "", owner)
    count = split($2, words, " ")
    for (at = 1; at <= count; ++at) print owner "\t" words[at]
  }'
}

# print_manual_words PAGE OWNERS: the words and options that the page tells, in the form of print_owners. OWNERS says what they
# belong to: "headings", the word with a colon that begins the heading above them, or "items", the command that begins the
# list item. What stands under no such heading or item belongs to the program itself.
print_manual_words() {
  sed -n '/^\.Sh DESCRIPTION$/,/^\.Sh [^D]/p' "$1" | awk -v owners="$2" '
    BEGIN { owner = "-" }
    /^\.Ss / {
      owner = "-"
      if (owners == "headings" && $2 ~ /^[a-z]+:$/) {
        owner = substr($2, 1, length($2) - 1)
        tell("-", owner)
      }
      # The words of other headings are told where they belong.
      is_told = owner != "-" || owners == "items" || $0 ~ /^\.Ss (Global commands|全局命令)$/
    }
    owners == "items" && /^\.It / {
      owner = "-"
      if ($2 == "Cm") {
        owner = $3
        tell("-", owner)
      }
    }
    is_told && /^\.(It|Cm|Fl)( |$)/ { tell_words() }
    function tell_words(  field, prefix) {
      prefix = "none"
      for (field = 1; field <= NF; ++field) {
        if ($field ~ /^\.?Fl$/) prefix = $(field - 1) ~ /^\.?Fl$/ && field > 1 ? "--" : "-"
        else if ($field ~ /^\.?Cm$/) prefix = ""
        else if ($field ~ /^\.?[A-Z][a-z]$/) prefix = "none"
        else if (prefix != "none" && $field ~ /^[A-Za-z][A-Za-z-]*$/ && prefix $field != owner) tell(owner, prefix $field)
      }
    }
    function tell(owner, word) { if (!seen[owner, word]++) print owner "\t" word }'
}

# print_examples PAGE: what the page tells its reader to type, with what comes out, as a document whose sessions can be
# played. Root's home stands for the home that plays, and a package that every host has for one that is there to play with.
print_examples() {
  awk '
    /^\.Bd -literal/ { inside = 1; print "```console"; next }
    /^\.Ed/ { if (inside) print "```"; inside = 0; next }
    inside { gsub(/\\-/, "-"); gsub(/\\e/, "\\"); print }' "$1" |
    sed 's|/root/|/tmp/demo/home/|g; s/\<rsync\>/orvex-demo-tools/g'
}
