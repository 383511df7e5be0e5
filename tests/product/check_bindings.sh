#!/bin/sh
# Checks how a shared library's calls are bound. The dynamic linker must not look up a name that the
# library exports, since a host's function of that name would come first. And the library may need
# no library except those listed.
#
#   check_bindings.sh LIBRARY NEEDED...
set -eu
LC_ALL=C
export LC_ALL

if [ $# -lt 2 ]; then
  echo "usage: check_bindings.sh LIBRARY NEEDED..." >&2
  exit 2
fi
library=$1
shift

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A relocation with a name has offset, information, type, value and name, which may have a version.
nm -D --defined-only "$library" | sed -E 's/.* //; s/@.*//' | sort -u > "$work/exported"
readelf -rW "$library" | awk '$3 ~ /^R_/ && $5 ~ /^[A-Za-z_]/ { print $5 }' |
  sed 's/@.*//' | sort -u > "$work/looked-up"
readelf -dW "$library" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort -u > "$work/needed"
printf '%s\n' "$@" | sort -u > "$work/permitted"
for list in exported looked-up needed; do
  if [ ! -s "$work/$list" ]; then
    echo "$list: no names" >&2
    exit 2
  fi
done

status=0
complain() { # TEXT FILE: prints both if the file is not empty
  [ -s "$2" ] || return 0
  echo "$1" >&2
  sed 's/^/  /' "$2" >&2
  status=1
}
comm -12 "$work/exported" "$work/looked-up" > "$work/borrowed"
comm -23 "$work/needed" "$work/permitted" > "$work/other"
complain "exported, and looked up by the library itself:" "$work/borrowed"
complain "needed, but not permitted:" "$work/other"
[ "$status" -ne 0 ] || echo "$(wc -l < "$work/looked-up") names looked up, none of them exported"
exit "$status"
