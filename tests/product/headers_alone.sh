#!/bin/sh
# Compiles each of the C headers alone, copied into an empty folder, as C of 1989 and as C++20: a
# host may take nothing else of the library, and build with any compiler.
#
#   headers_alone.sh C_COMPILER CXX_COMPILER HEADER...
set -eu

if [ $# -lt 3 ]; then
  echo "usage: headers_alone.sh C_COMPILER CXX_COMPILER HEADER..." >&2
  exit 2
fi
c=$1
cxx=$2
shift 2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
compile() { # COMPILER STANDARD SOURCE: twice included, and nothing but it
  "$1" "-std=$2" -pedantic-errors -Wall -Wextra -Werror -fsyntax-only "$3" && return
  echo "$(basename "$header") does not compile alone as $2" >&2
  status=1
}
for header in "$@"; do
  rm -rf "$work/alone"
  mkdir "$work/alone"
  cp "$header" "$work/alone/"
  for source in host.c host.cpp; do
    name=$(basename "$header")
    printf '#include "%s"\n#include "%s"\nint host;\n' "$name" "$name" > "$work/alone/$source"
  done
  compile "$c" c89 "$work/alone/host.c"
  compile "$c" c17 "$work/alone/host.c"
  compile "$cxx" c++20 "$work/alone/host.cpp"
done
[ "$status" -ne 0 ] || echo "$# headers compile alone"
exit "$status"
