# SPDX-License-Identifier: Apache-2.0
# Completes the command lines of orvex_state. The descriptions are those of its help.

function __orvex_state_is_first --description 'Behind the program'
    test (count (commandline -opc)) -eq 1
end

function __orvex_state_is_in --description 'Behind one of these commands'
    set -l words (commandline -opc)
    contains -- "$words[2]" $argv
end

complete -c orvex_state -f
complete -c orvex_state -s h -l help -d 'Print this help message and exit'
complete -c orvex_state -n __orvex_state_is_first -l version -d 'Display program version information and exit'
complete -c orvex_state -n __orvex_state_is_first -a dump -d 'Print the policy of this host'
complete -c orvex_state -n __orvex_state_is_first -a diff -d 'Tell what differs between this host and a document'
complete -c orvex_state -n __orvex_state_is_first -a plan \
    -d 'Print the commands that make this host what a document says'
complete -c orvex_state -n __orvex_state_is_first -a apply -d 'Run these commands and look what came of it'

complete -c orvex_state -n '__orvex_state_is_in dump' -s o -l output -r -F -d 'Write it to FILE'
complete -c orvex_state -n '__orvex_state_is_in diff plan apply' -F
complete -c orvex_state -n '__orvex_state_is_in diff plan apply' -l keep-others -d 'Take nothing off the lists'
complete -c orvex_state -n '__orvex_state_is_in diff' -l json -d 'Tell it as a JSON list'
