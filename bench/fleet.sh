#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures what Ansible with the collection costs for each host: on the control node, on the host and in between. Computes
# from that what fleets of other sizes cost. Prints tables, and ends with a failure where a figure is above its limit. Called
# by scripts/bench.sh.
#
# usage: bench/fleet.sh DIR
#
# DIR is an empty directory for the files. The programs have to be in PATH. The hosts are local connections, each with a state
# of the stand-in of its own, so that what ssh costs is in none of the figures.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib/script.bash"
source "$(dirname "${BASH_SOURCE[0]}")/lib/measure.bash"
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

objects=100
forks=5
# Of the control node's time for each host, 50 hosts to 5: what is there once for all of them makes it fall.
growth_limit=1.3

# name_hosts COUNT: the inventory.
name_hosts() {
  seq -f 'host%04g' "$1" >"$place/hosts"
}

# make_hosts: all of the inventory, fresh, with the framework enabled.
make_hosts() {
  local host
  rm -rf "$place/states"
  mkdir "$place/states"
  while read -r host; do
    ORVEX_LOCAL_STATE=$place/states/$host orvex_policy enable
    ORVEX_LOCAL_STATE=$place/states/$host orvex_local restart
  done <"$place/hosts" >"$scratch/log"
}

# write_interpreter: Python as the hosts have it, which writes down what each run of it costs: its time, the bytes that go
# in and come out, and the time with all of the measurement.
write_interpreter() {
  cat >"$place/python" <<END
#!/usr/bin/env bash
TIMEFORMAT='%3U %3S'
run=\$(mktemp "$place/run.XXXXXX")
cat >"\$run"
spent=\$({ time /usr/bin/python3 "\$@" <"\$run" >"\$run.out"; } 2>&1)
cat "\$run.out"
printf '%s %s %s\n' "\$spent" "\$(wc -c <"\$run")" "\$(wc -c <"\$run.out")" >"\$run"
rm "\$run.out"
times >>"\$run"
END
  chmod +x "$place/python"
}

print_document() {
  printf '{"version": 1, "modules": {"file": "on", "kmod": "on"}, "file": {"files": {%s}}, "kmod": {"modules": [%s]}}\n' \
    "$(seq -f "\"$place/%g\": {}" "$objects" | paste -sd,)" "$(seq -f '"module_%g"' "$objects" | paste -sd,)"
}

write_play() {
  cat >"$place/play.yml" <<END
- hosts: all
  gather_facts: false
  environment:
    ORVEX_LOCAL_STATE: "$place/states/{{ inventory_hostname }}"
  vars:
    ansible_connection: local
    ansible_python_interpreter: $place/python
    orvex_policy_document: $(print_document)
  roles: [orvex.policy.host]
END
}

# play: brings all hosts of the inventory to the document. Sets the milliseconds of processor time that the control node
# took for all of them; those that a host took, and the bytes that went there and came back, for each; and the seconds.
play() {
  local command="ansible-playbook -i $place/hosts --forks $forks $place/play.yml" start=$EPOCHREALTIME end
  rm -f "$place"/run.*
  measure 1 "$command"
  end=$EPOCHREALTIME
  count=$(wc -l <"$place/hosts")
  seconds=$(awk -v start="$start" -v end="$end" 'BEGIN { printf "%.1f", end - start }')
  read -r control host there back < <(cat "$place"/run.* | awk -v total="$(print_time "$command")" -v count="$count" '
    NF == 4 { host += $1 + $2; there += $3; back += $4; next }
    { gsub(/0m|s/, ""); measured += $1 + $2 }
    END { printf "%.0f %.0f %.0f %.0f\n", total - 1000 * measured, 1000 * host / count, there / count, back / count }')
}

print_play() {
  print_row "$count" "$1" "$(divide "$control" "$count" 0) ms" "$host ms" "$(divide "$there" 1024 1) KiB" \
    "$(divide "$back" 1024 1) KiB" "$seconds s"
}

# measure_push: sets the control node's milliseconds for 5 and for 50 hosts, in a run that changes nothing.
measure_push() {
  print_head 'Hosts' 'Run' 'Control node, for each' 'Host' 'Sent to each' 'Answer of each' "Whole run, forks $forks"
  local size
  for size in 5 20 50; do
    name_hosts "$size"
    make_hosts
    play
    print_play "first, $((2 * objects)) objects"
    play
    print_play 'nothing to do'
    controls[size]=$control
  done
}

# measure_pull: what a host costs that fetches its document and applies it.
measure_pull() {
  name_hosts 1
  play
  local pull=$((control + host))
  export ORVEX_LOCAL_STATE=$place/states/host0001
  print_document >"$place/document"
  measure 3 "orvex_state apply $place/document"
  apply=$(print_time "orvex_state apply $place/document")
  orvex_state dump >"$place/dump"
  document_bytes=$(wc -c <"$place/document")
  dump_bytes=$(wc -c <"$place/dump")
  printf '\n'
  print_head 'On each host that pulls, nothing to do' 'Figure'
  print_row 'Ansible on the host itself, processor time' "$pull ms"
  print_row "\`orvex_state apply\` alone, processor time" "$(divide "$apply" 1 0) ms"
  print_row 'the document that it fetches' "$(divide "$document_bytes" 1024 1) KiB"
  print_row 'the policy that it reports' "$(divide "$dump_bytes" 1024 1) KiB"
}

# compute SIZE...: what follows from the measured figures for fleets of these sizes.
compute() {
  local each once size
  each=$(divide "$((controls[50] - controls[5]))" 45 1)
  once=$(awk -v all="${controls[5]}" -v each="$each" 'BEGIN { print all - 5 * each }')
  printf '\n'
  print_head 'Hosts, computed' 'Push: processor time of the control node' 'Push: a run, on two cores at best' \
    'Push: sent' 'Pull: the control node serves' 'Pull: it collects'
  for size; do
    awk -v once="$once" -v each="$each" -v size="$size" -v sent="$there" -v served="$document_bytes" -v collected="$dump_bytes" '
      BEGIN {
        seconds = (once + each * size) / 1000
        mebi = size / 1048576
        printf "| %d | %.0f s | %.0f s | %.0f MiB | %.1f MiB | %.1f MiB |\n", size, seconds, seconds / 2, sent * mebi,
          served * mebi, collected * mebi
      }'
  done
}

answer_help "$@"
[[ $# -eq 1 && -d $1 ]] || refuse_call
[[ $1 != *[[:space:]]* ]] || fail "blanks in the name of the directory: $1"
place=$(cd "$1" && pwd)
make_scratch
mkdir -p "$place/ansible_collections/orvex"
ln -s "$top/fleet" "$place/ansible_collections/orvex/policy"
export ANSIBLE_HOME=$place/ansible ANSIBLE_LOCAL_TEMP=$place/ansible/local ANSIBLE_REMOTE_TEMP=$place/ansible/remote \
  ANSIBLE_COLLECTIONS_PATH=$place ANSIBLE_PIPELINING=1 PYTHONDONTWRITEBYTECODE=1
seq -f "$place/%g" "$objects" | xargs touch
write_interpreter
write_play
declare -a controls
measure_push
measure_pull
compute 100 1000 10000
check "the control node's time for each host, 50 hosts to 5" \
  "$(divide "$((controls[50] / 50))" "$((controls[5] / 5))")" "$growth_limit"
exit "$exit_value"
