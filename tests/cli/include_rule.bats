#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Who may include whom, as docs/architecture.md shows it.

setup() {
  cd "$BATS_TEST_TMPDIR" || return
}

# print_edges TREE: a line "room room" for each include of a file of TREE/src or TREE/state in a file of TREE; each module is
# a room of its own, and so are its owners of records.
print_edges() {
  (cd "$1" && find src local_service state \( -name '*.cpp' -o -name '*.h' \) -exec \
    sed -n 's|^#include "\([^"]*\)".*|\1|;T;F;p' {} +) |
    while read -r includer && read -r included; do
      if [[ -e $1/src/$included || $included == state/* ]]; then
        printf '%s %s\n' "$(get_room "${includer#src/}")" "$(get_room "$included")"
      fi
    done | sort -u
}

# get_room PATH: modules/NAME, records/NAME, or the first directory.
get_room() {
  case $1 in
    modules/*/*_records.h) cut -d / -f 2 <<<"$1" | sed 's|^|records/|' ;;
    modules/*) cut -d / -f 1-2 <<<"$1" ;;
    *) cut -d / -f 1 <<<"$1" ;;
  esac
}

# print_forbidden: those of the edges on standard input that the rule does not allow.
print_forbidden() {
  while read -r from to; do
    case "$from $to" in
      front\ front | front\ modules/* | front\ framework | front\ service) ;;
      modules/*\ framework | modules/*\ service) ;;
      on_demand\ on_demand | on_demand\ framework) ;;
      framework\ framework | framework\ service) ;;
      service\ service | local_service\ service) ;;
      records/*\ framework | records/*\ service) ;;
      state\ state | state\ records/* | state\ framework | state\ service) ;;
      *) [[ $from == modules/* && ($from == "$to" || $from == "${to/#records/modules}") ]] || echo "$from $to" ;;
    esac
  done
}

@test "each room includes the rooms below it and no other one" {
  print_edges "$ORVEX_SOURCE_DIR" >edges
  # The rule cannot pass on an empty list.
  grep -qx 'front modules/exec' edges
  grep -qx 'modules/exec framework' edges
  grep -qx 'on_demand framework' edges
  grep -qx 'framework service' edges
  grep -qx 'local_service service' edges
  grep -qx 'modules/exec records/exec' edges
  grep -qx 'state records/exec' edges
  diff -u /dev/null <(print_forbidden <edges)
}

@test "an include that goes up, across or around is seen" {
  mkdir -p tree/src/{front,framework,on_demand,service,modules/{exec,net}} tree/local_service tree/state
  touch tree/src/{front/a.h,framework/a.h,on_demand/a.h,service/a.h,modules/exec/{a,exec_records}.h,modules/net/a.h}
  echo '#include "modules/net/a.h"' >tree/src/modules/exec/b.cpp
  echo '#include "front/a.h"' >tree/src/framework/b.cpp
  echo '#include "on_demand/a.h"' >tree/src/framework/c.cpp
  echo '#include "framework/a.h"' >tree/src/service/b.h
  echo '#include "framework/a.h"  // for the tool' >tree/local_service/b.cpp
  echo '#include "framework/a.h"' >tree/src/front/b.cpp
  echo '#include "modules/exec/exec_records.h"' >tree/src/modules/net/b.cpp
  echo '#include "state/a.h"' >tree/src/front/c.cpp
  printf '#include "%s"\n' modules/exec/a.h modules/exec/exec_records.h >tree/state/b.cpp
  print_edges tree | print_forbidden >forbidden
  diff -u - forbidden <<'END'
framework front
framework on_demand
front state
local_service framework
modules/exec modules/net
modules/net records/exec
service framework
state modules/exec
END
}
