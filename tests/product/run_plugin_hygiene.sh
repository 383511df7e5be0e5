#!/bin/sh
# Runs the hygiene test in a folder of its own, in memory if the system has such a place, since the
# test writes tens of thousands of files and flushes each to the disk.
#
#   run_plugin_hygiene.sh PLUGIN_HYGIENE SHARED_OBJECT [ROUNDS]
set -eu

program=$(realpath "$1")
shared_object=$(realpath "$2")
rounds=${3:-10000}

if [ -d /dev/shm ] && [ -w /dev/shm ]; then
  home=$(mktemp -d /dev/shm/plugin-hygiene.XXXXXX)
else
  home=$(mktemp -d)
fi
trap 'rm -rf "$home"' EXIT

"$program" "$shared_object" "$home" "$rounds"
