# SPDX-License-Identifier: Apache-2.0
# Lists single-point changes of C++ sources, one a line: FILE:LINE:NUMBER, the kind, and what stands in the place of that
# line. Behind each vertical tab follows what stands in the place of the next line.
#
# usage: LC_ALL=C awk -f mutants.awk FILE...

# The line with what is in its strings and comments made unrecognisable, byte for byte.
function mask(text,    at, byte, quote, masked) {
  quote = ""
  for (at = 1; at <= length(text); at++) {
    byte = substr(text, at, 1)
    if (quote == "" && substr(text, at, 2) == "//") break
    if (quote != "" && byte == "\\") { masked = masked "~~"; at++; continue }
    if (quote == "" && (byte == "\"" || byte == "'")) quote = byte
    else if (byte == quote) quote = ""
    else if (quote != "") byte = "~"
    masked = masked byte
  }
  sub(/ +$/, "", masked)
  return masked
}

function emit(kind, text) { printf "%s:%d:%d\t%s\t%s\n", file, number, ++emitted, kind, text }

# replace(KIND, START, LENGTH, OTHER): the line with another piece.
function replace(kind, start, size, other) {
  emit(kind, substr(lines[number], 1, start - 1) other substr(lines[number], start + size))
}

function replace_all(kind, piece, other,    from, at) {
  from = 1
  while ((at = index(substr(code[number], from), piece)) > 0) {
    from += at - 1
    if (piece !~ /!$/ || substr(code[number], from + length(piece), 1) != "=") {
      replace(kind, from, length(piece), other)
    }
    from += length(piece)
  }
}

function change_operators() {
  replace_all("comparison", " == ", " != "); replace_all("comparison", " != ", " == ")
  replace_all("comparison", " < ", " <= "); replace_all("comparison", " <= ", " < ")
  replace_all("comparison", " > ", " >= "); replace_all("comparison", " >= ", " > ")
  replace_all("logic", " && ", " || "); replace_all("logic", " || ", " && ")
  replace_all("logic", "(!", "("); replace_all("logic", " !", " ")
  replace_all("constant", "true", "false"); replace_all("constant", "false", "true")
  replace_all("constant", " + ", " - "); replace_all("constant", " - ", " + ")
}

function change_numbers(    from, start) {
  from = 1
  while (match(substr(code[number], from), /[ (=,{[<-][0-9]+[]; ),}:]/)) {
    start = from + RSTART
    replace("constant", start, RLENGTH - 2, substr(code[number], start, RLENGTH - 2) + 1)
    from = start + RLENGTH - 2
  }
}

# One byte of each string, in its middle, but none of an escape.
function change_texts(    from, start, at) {
  from = 1
  while (match(substr(code[number], from), /"[^"]+"/)) {
    start = from + RSTART
    at = start + int((RLENGTH - 2) / 2)
    if (substr(lines[number], at, 1) !~ /[\\#]/ && substr(lines[number], at - 1, 1) != "\\") {
      replace("text", at, 1, "#")
    }
    from = start + RLENGTH - 1
  }
}

# The two plain arguments of a call, or two that are neighbours.
function swap_arguments(    from, start, pair, comma, first, second) {
  from = 1
  while (match(substr(code[number], from), /[(,] ?[A-Za-z_][A-Za-z_0-9.]*, [A-Za-z_][A-Za-z_0-9.]*[,)]/)) {
    start = from + RSTART
    pair = substr(code[number], start, RLENGTH - 2)
    comma = index(pair, ", ")
    first = substr(pair, 1, comma - 1)
    second = substr(pair, comma + 2)
    if (first != second) replace("argument", start, RLENGTH - 2, (first ~ /^ / ? " " : "") second ", " without_blank(first))
    from = start + comma
  }
}

function without_blank(text) { sub(/^ /, "", text); return text }

function count_of(text, piece) { return gsub(piece, "", text) }

# end_of_statement(N): the last line of the statement that begins in this line, or 0 where there is none, or a declaration.
function end_of_statement(n,    text, last) {
  if (code[n] !~ /^ +[^ ]/ || before(n) !~ /[;{}:]$/ ||
    code[n] ~ /^ +(const|constexpr|static|static_assert\(|auto|int|bool|char|virtual|using|explicit|friend|struct|class|inline|std::[a-z_:<>]+ [a-z_]+ ?[;=({])/ ||
    code[n] ~ /(= default|= delete|override|noexcept|const);$/) return 0
  for (last = n; last < n + 4 && code[last] !~ /[;{}:]$/; last++) text = text code[last]
  text = text code[last]
  return text ~ /;$/ && count_of(text, "[(]") == count_of(text, "[)]") && count_of(text, "[{]") == count_of(text, "[}]") ? last : 0
}

# The code in front of line N.
function before(n) {
  for (n--; n > 0 && code[n] == ""; n--);
  return n > 0 ? code[n] : "{"
}

function indent_of(text) { match(text, /^ */); return RLENGTH }

# The lines from `first` to `last`, with vertical tabs between them.
function join_lines(first, last,    text) {
  for (text = lines[first++]; first <= last; first++) text = text "\v" lines[first]
  return text
}

function change_statements(    last, next_last, gap) {
  last = end_of_statement(number)
  if (!last) return
  gap = join_lines(number, last)
  gsub(/[^\v]/, "", gap)
  emit("dropped statement", gap)
  next_last = end_of_statement(last + 1)
  if (next_last && indent_of(code[number]) == indent_of(code[last + 1])) {
    emit("swapped statements", join_lines(last + 1, next_last) "\v" join_lines(number, last))
  }
}

function list_changes(    count) {
  delete lines
  delete code
  for (count = 0; (getline lines[count + 1] < file) > 0; count++) code[count + 1] = mask(lines[count + 1])
  close(file)
  for (number = 1; number <= count; number++) {
    emitted = 0
    if (code[number] ~ /^#|^ *$|static_assert/) continue
    change_operators()
    change_numbers()
    change_texts()
    swap_arguments()
    change_statements()
  }
}

BEGIN {
  for (argument = 1; argument < ARGC; argument++) {
    file = ARGV[argument]
    list_changes()
  }
}
