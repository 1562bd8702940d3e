#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# Hosts are brought to what is declared for them.

load support/fleet.bash

@test "the first run changes the hosts to what all their groups declare, and the second changes nothing" {
  start_fleet a b c
  echo 'all: {children: {databases: {hosts: {b: }}}}' >groups.yml
  declare_for all <<<'{modules: {kmod: on}, kmod: {modules: [ext4]}}'
  declare_for databases <<<'{kmod: {modules: [dm_crypt, ext4]}}'
  play_role 0 --inventory groups.yml
  expect_results <<END
a | CHANGED => $(answer true '"orvex_policy kmod on", "orvex_policy kmod -A -n ext4"')
b | CHANGED => $(answer true '"orvex_policy kmod on", "orvex_policy kmod -A -n dm_crypt", "orvex_policy kmod -A -n ext4"')
c | CHANGED => $(answer true '"orvex_policy kmod on", "orvex_policy kmod -A -n ext4"')
END
  [[ $(on b orvex_policy kmod -L | wc -l) -eq 2 ]]
  play_role 0 --inventory groups.yml
  expect_unchanged a b c
}

@test "check mode changes nothing and tells what the run does, on each host another thing" {
  start_fleet empty filled disabled ready
  touch notes.txt server
  on filled orvex_policy kmod on
  on filled orvex_policy kmod -A -n xfs
  on disabled orvex_local reset
  declare_for all <<END
framework: enabled
modules: {kmod: on, file: on, proc: off}
kmod: {modules: [ext4]}
file: {files: {$PWD/notes.txt: {excepted_files: [$PWD/server]}}}
proc: {programs: {$PWD/server: {}}}
END
  play_role 0 --limit ready
  dump_hosts before empty filled disabled ready
  play_role 0 --check -e orvex_policy_purge=true
  print_results >predicted
  dump_hosts behind empty filled disabled ready
  diff -r before behind
  play_role 0 -e orvex_policy_purge=true
  grep -F '"messages": ["' "$BATS_TEST_TMPDIR/output"
  print_results | sed 's/"messages": \[[^]]*\]/"messages": []/' | diff -u predicted -
  # A prediction that says nothing would be easy.
  grep -qF '"orvex_policy kmod -D -n xfs"' predicted
  grep -qF '"orvex_policy proc off"' predicted
  grep -q '^disabled | .*"reboot_required": true' predicted
  grep -q '^ready | SUCCESS' predicted
}

@test "a refusal is predicted as well" {
  start_fleet a
  declare_for all <<<'{modules: {file: on}, file: {files: {/gone: {}}}}'
  for options in --check --diff --limit=a; do
    play_role 2 "$options"
    expect_results <<<'a | FAILED! => {"changed": false, "msg": "standard input: /file/files/~1gone: does not exist"}'
  done
}

@test "a host on which a call fails fails alone, with what it said" {
  start_fleet a b c
  on b orvex_local fail orvex_scene_kmodctl_add_by_name -5 --times 1
  declare_for all <<<'{modules: {kmod: on}, kmod: {modules: [ext4]}}'
  play_role 2
  commands='"orvex_policy kmod on", "orvex_policy kmod -A -n ext4"'
  expect_results <<END
a | CHANGED => $(answer true "$commands")
b | FAILED! => {"changed": true, "commands": [$commands], "messages": ["添加内核模块[ext4]防卸载失败!"], "msg": "this did not come about: + kmod modules: ext4\n添加内核模块[ext4]防卸载失败!", "reboot_required": false, "remaining": ["+ kmod modules: ext4"]}
c | CHANGED => $(answer true "$commands")
END
  play_role 0
  expect_results <<END
a | SUCCESS => $(answer false '')
b | CHANGED => $(answer true '"orvex_policy kmod -A -n ext4"')
c | SUCCESS => $(answer false '')
END
}

@test "a host whose framework is disabled asks for a restart, and has one where it is allowed" {
  start_fleet a b
  on b orvex_local reset
  declare_for all <<<'{framework: enabled, modules: {kmod: on}, kmod: {modules: [ext4]}}'
  enabling="b | CHANGED => $(answer true '"orvex_policy enable"' '"orvex开启成功, 重启后生效!"' true)"
  changing=$(answer true '"orvex_policy kmod on", "orvex_policy kmod -A -n ext4"')
  play_role 0
  expect_results <<<"a | CHANGED => $changing"$'\n'"$enabling"
  grep -q '"msg": "b needs a restart, and the role once more behind it"' "$BATS_TEST_TMPDIR/output"
  on b orvex_local show | grep 'Restarts: *0 simulated'
  play_role 0 -e orvex_policy_allow_restart=true
  expect_results <<END
a | SUCCESS => $(answer false '')
$enabling
b | CHANGED => $changing
END
  run -1 grep -q 'needs a restart' "$BATS_TEST_TMPDIR/output"
  on a orvex_local show | grep 'Restarts: *1 simulated'
  on b orvex_local show | grep 'Restarts: *1 simulated'
  play_role 0 -e orvex_policy_allow_restart=true
  expect_unchanged a b
}

@test "check mode restarts nothing, even where that is allowed" {
  start_fleet a
  on a orvex_local reset
  declare_for all <<<'{framework: enabled}'
  play_role 0 --check -e orvex_policy_allow_restart=true
  expect_results <<<"a | CHANGED => $(answer true '"orvex_policy enable"' '' true)"
  on a orvex_local show | grep 'Restarts: *0 simulated'
}

@test "what was changed by hand is found, and undone where others are not kept" {
  start_fleet a b
  printf '#!/bin/sh\n' | tee start.sh >stop.sh
  declare_for all <<END
modules: {exec: on, kmod: on}
kmod: {modules: [ext4]}
exec: {whitelist: {$PWD/start.sh: intact, $PWD/stop.sh: intact}}
END
  play_role 0
  on b orvex_policy kmod -D -n ext4
  on b orvex_policy kmod -A -n xfs
  dump_hosts kept a
  echo '# changed' >>start.sh
  play 0 <<'END'
tasks:
  - orvex.policy.state_info:
      document: "{{ lookup('orvex.policy.document') }}"
      purge: true
    register: found
  - copy:
      content: "{{ [found.drift, found.tampered, found.reboot_required, found.changed] | to_json }}"
      dest: "{{ playbook_dir }}/{{ inventory_hostname }}.found"
      mode: "0600"
END
  tampered="{\"change\": \"update\", \"place\": \"/exec/whitelist\", \"name\": \"$PWD/start.sh\", \"host\": \"tampered\", \"document\": \"intact\"}"
  diff -u - a.found < <(printf '[[%s], ["%s"], false, false]' "$tampered" "$PWD/start.sh")
  diff -u - b.found < <(printf '[[%s, %s, %s], ["%s"], false, false]' "$tampered" \
    '{"change": "add", "place": "/kmod/modules", "name": "ext4"}' \
    '{"change": "remove", "place": "/kmod/modules", "name": "xfs"}' "$PWD/start.sh")
  play_role 0
  [[ $(on b orvex_policy kmod -L | wc -l) -eq 2 ]]
  play_role 0 -e orvex_policy_purge=true
  expect_results <<END
a | SUCCESS => $(answer false '')
b | CHANGED => $(answer true '"orvex_policy kmod -D -n xfs"')
END
  dump_hosts undone b
  diff kept/a undone/b
}

@test "diff mode shows what differs, as it is and as it is to be" {
  start_fleet a
  on a orvex_policy kmod on
  on a orvex_policy kmod -A -n xfs
  session_environment+=(ANSIBLE_STDOUT_CALLBACK=default)
  play 0 --check --diff <<'END'
tasks:
  - orvex.policy.state: {purge: true, modules: {box: on}, kmod: {modules: [ext4]}}
END
  grep -A7 '^---' "$BATS_TEST_TMPDIR/output" | diff -u - <(printf '%s\n' '--- before: host' '+++ after: document' \
    '@@ -1,2 +1,2 @@' '-/modules box: off' '-/kmod/modules xfs' '+/modules box: on' '+/kmod/modules ext4' '')
}

@test "20 hosts are brought to one policy at the same time" {
  hosts=(host{01..20})
  start_fleet "${hosts[@]}"
  touch notes.txt
  declare_for all <<END
modules: {file: on, kmod: on, box: on}
file: {files: {$PWD/notes.txt: {}}}
kmod: {modules: [ext4, xfs]}
END
  play_role 0 --forks 20
  [[ $(print_results | grep -c ' | CHANGED => ') -eq 20 ]]
  dump_hosts dumps "${hosts[@]}"
  [[ $(sha256sum dumps/* | cut -d ' ' -f 1 | uniq -c) == *' 20 '* ]]
  play_role 0 --forks 20
  expect_unchanged "${hosts[@]}"
}

# print_objects WORD: a list of 500 files, each with the word behind its name.
print_objects() {
  printf "$PWD/files/%s: $1, " {001..500}
}

@test "500 objects a section are one task" {
  start_fleet a
  mkdir files
  touch files/{001..500}
  chmod +x files/*
  on a orvex_policy exec on
  cat >declared.yml <<END
orvex_policy_document:
  modules: {exec: on, net: on, file: on, proc: on, kmod: on}
  exec: {excepted_files: [$(printf "$PWD/files/%s, " {001..500})]}
  net: {programs: {$(print_objects deny)}}
  file: {files: {$(print_objects '{}')}}
  proc: {programs: {$(print_objects '{}')}}
  kmod: {modules: [$(printf 'module_%s, ' {001..500})]}
END
  play_role 0 --extra-vars @declared.yml
  dump_hosts dumps a
  [[ $(grep -c "$PWD/files/" dumps/a) -eq 2000 && $(grep -c module_ dumps/a) -eq 500 ]]
  play_role 0 --extra-vars @declared.yml
  expect_unchanged a
}

@test "a host without the program, and one where the caller may not act, say so" {
  start_fleet a b
  on b orvex_local roles on
  echo 'all: {hosts: {a: {orvex_policy_executable: gone}}}' >programs.yml
  declare_for all <<<'{modules: {kmod: on}}'
  play_role 2 --inventory programs.yml
  expect_results <<'END'
a | FAILED! => {"changed": false, "msg": "gone is not on this host: install the package orvex-policy, or name the program with 'executable'"}
b | FAILED! => {"changed": false, "msg": "当前用户无权限执行, 请切换secadm用户执行!\nbecome root (become: true), or user 600 where the roles are separated"}
END
}

@test "the package is installed only where that is asked" {
  start_fleet a b
  echo 'all: {hosts: {a: {orvex_policy_install: true}}}' >packages.yml
  # What installs packages on these hosts.
  mkdir library
  cat >library/dnf.sh <<'END'
#!/bin/sh
grep -ow 'name=[a-z-]*' "$1" >>"$ORVEX_LOCAL_STATE/installed"
echo '{"changed": true}'
END
  play 0 --inventory packages.yml <<'END'
tasks:
  - set_fact: {pkg_mgr: dnf, cacheable: true}
  - import_role: {name: orvex.policy.host}
END
  [[ $(cat hosts/a/installed) == name=orvex-policy && ! -e hosts/b/installed ]]
}

@test "a variable of the role that is of another kind is refused before anything is done" {
  start_fleet a
  play_role 2 -e '{"orvex_policy_allow_restart": "perhaps", "orvex_policy_document": ["kmod"]}'
  grep -q 'orvex_policy_allow_restart.*perhaps' "$BATS_TEST_TMPDIR/output"
  grep -q 'orvex_policy_document' "$BATS_TEST_TMPDIR/output"
}

@test "the manual of each piece can be read with ansible-doc, and its examples are playbooks" {
  start_fleet a
  for piece in state state_info 'document --type lookup' 'host --type role'; do
    read -ra words <<<"orvex.policy.$piece"
    as 0 ansible-doc "${words[@]}"
    [[ $exit_value -eq 0 && ! -s $BATS_TEST_TMPDIR/errors && $(wc -l <"$BATS_TEST_TMPDIR/output") -gt 20 ]]
  done
  for piece in modules/state modules/state_info lookup/document; do
    sed -n '/^EXAMPLES = /,/^"""/ { /"""/d; p }' ansible_collections/orvex/policy/plugins/"$piece".py >tasks.yml
    play 0 --syntax-check <<<'tasks: [{import_tasks: tasks.yml}]'
  done
}
