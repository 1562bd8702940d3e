# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What manual pages need to read well: Chinese ones on a terminal, and all of them as Markdown where code is hosted.

# set_chinese PAGE...: Chinese has no blanks at which a line could be broken, so each place where it may be gets a mark: between
# two letters, but not in front of a closing punctuation mark. Nor is there a blank between such a mark and what follows.
set_chinese() {
  perl -Mutf8 -CSD -0 -i -pe '
    my ($closing, $opening) = ("，。、；：）！？”", "（“");
    my $is_literal = 0;
    s/ +$//mg;
    s/[$closing]\K\n(?=\.(Ar|Cm|Em|Fl|Nm)\b)/\\c\n/g;
    s{^.*}{
      my $line = $&;
      $is_literal = 0 if $line =~ /^\.Ed/;
      $line =~ s/(?<=[\p{Script=Han}$closing])(?=[\p{Script=Han}$opening])/\\:/g unless $is_literal || $line =~ /^\.(It|Nd|S[hsx])/;
      $is_literal = 1 if $line =~ /^\.Bd/;
      $line
    }mge' "$@"
}

# print_manual_page PAGE: mandoc's Markdown has no letters beyond ASCII, so they pass it as words.
print_manual_page() {
  printf '<!-- Written by scripts/render_docs.sh, from %s. -->\n\n' "$1"
  perl -CSD -pe 's/([^\x00-\x7F])/sprintf("Qu%04Xq", ord $1)/ge' "$1" |
    mandoc -T markdown |
    perl -CSD -pe '
      s/Qu([0-9A-F]{4,5})q/chr hex $1/ge;
      s/`([^`]*)`/my $text = $1; $text =~ s,\\_,_,g; "`$text`"/ge;
      s/(?<=.)&#45;/-/g;
      s/^> ?/\t/' |
    shape_page
}

# shape_page: mandoc indents the bodies of lists, some of which it quotes instead, and what a person types alike, by a tab,
# which Markdown takes for the latter. The first line, which is the page's name, and the last two, its date and the system, are left out.
shape_page() {
  awk '
    { line[NR] = $0 }
    END {
      for (number = 3; number <= NR - 2; ++number) print_line(line[number], line[number + 1])
    }
    function print_line(text, next_text) {
      if (text ~ /^\t# / && !in_session) {
        print "```console"
        in_session = 1
      }
      if (sub(/^\t/, "", text)) {
        print in_session || text == "" ? text : "  " text
      } else {
        sub(/^\*\t/, "- ", text)
        print is_head(number) ? "- " text : text
      }
      if (in_session && next_text !~ /^\t/) {
        print "```"
        in_session = 0
      }
    }
    # The head of a list item has a line of its own.
    function is_head(number) {
      return line[number] != "" && line[number - 1] == "" && line[number + 1] == "" && line[number + 2] ~ /^\t[^#]/
    }'
}
