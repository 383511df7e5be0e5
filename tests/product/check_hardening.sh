#!/bin/sh
# Looks at programs and shared objects: are they hardened as Debian hardens its packages?
#
#   check_hardening.sh FILE...
set -eu
if [ $# -eq 0 ]; then
  echo "usage: check_hardening.sh FILE..." >&2
  exit 2
fi
failed=0

# FILE WHAT TEXT PATTERN: the text has to have a line that fits
has() {
  printf '%s\n' "$3" | grep -qE "$4" && return
  echo "$1: $2" >&2
  failed=1
}

for file in "$@"; do
  headers=$(readelf -lW "$file")
  dynamic=$(readelf -dW "$file")
  imports=$(nm -D --undefined-only "$file")
  has "$file" "does not lie at any address" "$(readelf -hW "$file")" 'Type: +DYN'
  has "$file" "no read-only relocations" "$headers" 'GNU_RELRO'
  has "$file" "no immediate binding" "$dynamic" 'BIND_NOW|FLAGS.* NOW'
  has "$file" "an executable stack" "$headers" 'GNU_STACK.* RW '
  has "$file" "no stack protector" "$imports" '__stack_chk_fail'
  has "$file" "no checked functions of the C library" "$imports" ' __[a-z]+_chk'
  if printf '%s\n' "$dynamic" | grep -qE 'TEXTREL|RPATH|RUNPATH'; then
    echo "$file: relocated code, or a search path of its own" >&2
    failed=1
  fi
done
exit $failed
