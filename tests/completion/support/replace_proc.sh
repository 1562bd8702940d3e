#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs a command where /proc is a directory, in which the kernel's files are in the directory "kernel". To be started in a
# mount namespace of its own.
#
# usage: replace_proc.sh DIR COMMAND [ARGUMENT...]
set -euo pipefail

mount --rbind /proc "$1/kernel"
mount --rbind "$1" /proc
exec "${@:2}"
