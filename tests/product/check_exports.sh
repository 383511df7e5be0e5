#!/bin/sh
# Compares the names that a shared library exports with the list of those that it must export, in
# both directions. Lines of the list that are empty or begin with # do not count.
#
#   check_exports.sh LIBRARY EXPORTS_TXT
set -eu
LC_ALL=C
export LC_ALL

if [ $# -ne 2 ]; then
  echo "usage: check_exports.sh LIBRARY EXPORTS_TXT" >&2
  exit 2
fi
library=$1
list=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# First the address, then a letter for the type, then the name, which may hold blanks.
nm -D --defined-only -C "$library" > "$work/symbols"
sed -E 's/^[0-9a-f]* *[A-Za-z] //' "$work/symbols" | sort > "$work/exported"
sed -E '/^(#|$)/d' "$list" | sort > "$work/expected"
if [ ! -s "$work/expected" ] || [ ! -s "$work/exported" ]; then
  echo "no names to compare" >&2
  exit 2
fi

status=0
complain() { # TEXT FILE: prints both if the file is not empty
  [ -s "$2" ] || return 0
  echo "$1" >&2
  sed 's/^/  /' "$2" >&2
  status=1
}
comm -23 "$work/expected" "$work/exported" > "$work/missing"
comm -13 "$work/expected" "$work/exported" > "$work/other"
# The dynamic loader never unloads an object that defines one of these.
sed -nE 's/^[0-9a-f]* *u //p' "$work/symbols" > "$work/unique"
complain "listed, but not exported:" "$work/missing"
complain "exported, but not listed:" "$work/other"
complain "unique global symbols:" "$work/unique"
[ "$status" -ne 0 ] || echo "$(wc -l < "$work/exported") names exported, all as listed"
exit "$status"
