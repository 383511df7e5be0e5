#!/bin/sh
# Runs the hygiene test below a folder of its own, in memory where the system has such a place: it
# writes tens of thousands of files, each flushed to the disk.
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
