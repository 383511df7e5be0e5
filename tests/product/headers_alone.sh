#!/bin/sh
# Compiles every public header by itself, included twice and with nothing before it, as C++20. The C
# headers are copied into an empty folder, and must also compile as C89: a host may take only these
# headers, and build with any compiler. The classes' headers are Objective-C, and need GNUstep.
#
#   headers_alone.sh C_COMPILER CXX_COMPILER INCLUDE_FOLDER C_HEADER...
set -eu

if [ $# -lt 4 ]; then
  echo "usage: headers_alone.sh C_COMPILER CXX_COMPILER INCLUDE_FOLDER C_HEADER..." >&2
  exit 2
fi
c=$1
cxx=$2
folder=$3
shift 3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
compile() { # COMPILER STANDARD SOURCE
  "$1" "-std=$2" -pedantic-errors -Wall -Wextra -Werror "-I$folder" -fsyntax-only "$3" && return
  echo "$(basename "$header") does not compile alone as $2" >&2
  status=1
}
for header in "$folder"/wenlolib/*.h; do
  name=wenlolib/$(basename "$header")
  printf '#include <%s>\n#include <%s>\nint host;\n' "$name" "$name" > "$work/host.cpp"
  compile "$cxx" c++20 "$work/host.cpp"
done
gnustep=/usr/include/GNUstep
for header in "$folder"/wenlolib/objc/*.h; do
  [ -d "$gnustep" ] || continue
  name=wenlolib/objc/$(basename "$header")
  printf '#include <%s>\n#include <%s>\nint host;\n' "$name" "$name" > "$work/host.m"
  gcc -fobjc-exceptions -D_NATIVE_OBJC_EXCEPTIONS -Wall -Wextra -Werror -isystem "$gnustep" \
    "-I$folder" -fsyntax-only "$work/host.m" || status=1
done
for header in "$@"; do
  header=$folder/wenlolib/$header
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
[ "$status" -ne 0 ] || echo "all headers compile alone"
exit "$status"
