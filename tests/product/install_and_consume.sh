#!/bin/sh
# Installs the library to a prefix. Builds programs in C89, in C++20, in Objective-C and against the
# receivers alone with what is installed there, with CMake and with pkg-config, and runs them and a
# Python program. Then moves the prefix elsewhere and does the same again. Installs each component, and removes all of it.
#
#   install_and_consume.sh BUILD_DIR WORK_DIR
set -eu

if [ $# -ne 2 ]; then
  echo "usage: install_and_consume.sh BUILD_DIR WORK_DIR" >&2
  exit 2
fi
here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
build=$(CDPATH='' cd -- "$1" && pwd)
mkdir -p "$2"
work=$(CDPATH='' cd -- "$2" && pwd)/consume
rm -rf "$work"
mkdir "$work"

contents='Usage of a month: Größe A4, 12 %'
printf '%s' "$contents" > "$work/contents"

fail() {
  echo "$1" >&2
  exit 1
}

# LAYOUT FILE...: the files must be sound documents with the contents above
verify() {
  layout=$1
  shift
  python3 "$here/../verifier/verify_document.py" \
    --contents-file "$work/contents" --layout "$layout" "$@"
}

# PROGRAM_IN_CXX HOME: runs it, verifies the three records, and checks the library's own version
run_cxx() {
  mkdir "$2"
  HOME=$2 "$1" "$contents"
  support="$2/Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
  verify application "$support"/ALM/Quillmere_Log_Consumer_*.ALM
  verify printer "$support/PLM/Consumer_1.PLM"
  verify printer-older "$support/PLM/Consumer_2.PLM"
  grep -q '<Version>1\.0</Version>' "$support"/ALM/*.ALM ||
    fail "The record does not carry the library's own version"
}

# PROGRAM_IN_C HOME: runs it; it must write nothing
run_c() {
  mkdir "$2"
  HOME=$2 "$1"
  [ -z "$(ls -A "$2")" ] || fail "Something was written where nothing should be"
}

# PROGRAM HOME: reads the records that run_cxx left there
run_receiver() {
  support="$2/Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
  "$1" "$support"/ALM/*.ALM "$support/PLM/Consumer_1.PLM" "$support/PLM/Consumer_2.PLM" \
    > "$2.received"
  for layout in OrvanQXApplication OrvanQX2Application OrvanQXPrinter; do
    grep -qxF "$layout: $contents" "$2.received" || fail "The receiver did not read $layout"
  done
  if ldd "$1" | grep -q WENLOLIB; then
    fail "The receiver is linked with the recording library"
  fi
}

# PREFIX PROGRAM_IN_C PROGRAM_IN_CXX HOME: the same through the shared receiver, and in Python
run_receiver_shared() {
  support="$4/Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
  package=$(dirname "$(find "$1" -path '*/wenlolib/__init__.py')")
  (
    LD_LIBRARY_PATH=$(dirname "$(find "$1" -name libwenlolib-receiver.so)")
    export LD_LIBRARY_PATH
    "$2" "$support"/ALM/*.ALM "$support/PLM/Consumer_1.PLM" "$support/PLM/Consumer_2.PLM" \
      > "$4.in-c"
    PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$(dirname "$package") /usr/bin/python3 -c 'import sys, wenlolib
for row in wenlolib.rows(sys.argv[1:]): print(row.layout, row.contents, sep=": ")' \
      "$support/ALM" "$support/PLM" > "$4.in-python"
    if [ -n "$3" ]; then run_receiver "$3" "$4"; fi
  )
  diff "$4.in-c" "$4.in-python" || fail "C and Python do not read the same"
  for layout in application printer printer_older_tag; do
    grep -qxF "$layout: $contents" "$4.in-c" || fail "The shared receiver did not read $layout"
  done
}

# PROGRAM_IN_OBJC HOME
run_objc() {
  support="$2/Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
  mkdir -p "$support/ALM"
  HOME=$2 "$1" "$contents"
  verify application "$support"/ALM/Quillmere_Log_Consumer_*.ALM
}

# PREFIX FOLDER: configures, builds and runs against the package at PREFIX
with_cmake() {
  for language in $languages; do
    cmake -S "$here/consumer/$language" -B "$2/$language" -G Ninja -DCMAKE_PREFIX_PATH="$1" \
      -DCMAKE_BUILD_TYPE=Release > "$2-$language.log" || { cat "$2-$language.log" >&2; exit 1; }
    cmake --build "$2/$language" > "$2-$language.log" || { cat "$2-$language.log" >&2; exit 1; }
    grep -q "^WENLOLIB_DIR:PATH=$1/" "$2/$language/CMakeCache.txt" ||
      fail "Another package than the one at $1 was found"
  done
  run_c "$2/c/consumer" "$2/home-c"
  run_cxx "$2/cxx/consumer" "$2/home-cxx"
  run_receiver "$2/receiver/consumer" "$2/home-cxx"
  run_receiver_shared "$1" "$2/receiver_c/consumer" "" "$2/home-cxx"
  if [ "$languages" != "${languages% objc}" ]; then run_objc "$2/objc/consumer" "$2/home-objc"; fi
  "$1/bin/wenlolib" verify --quiet "$2/home-cxx" ||
    fail "The installed command does not find the records sound"
}

# PREFIX FOLDER: the same with pkg-config alone
with_pkg_config() {
  mkdir -p "$2"
  PKG_CONFIG_PATH=$(dirname "$(find "$1" -name wenlolib.pc)")
  export PKG_CONFIG_PATH
  # The answer holds several options, so it must be split.
  # shellcheck disable=SC2046
  "${CC:-cc}" -std=c89 -pedantic "$here/consumer/c/main.c" -o "$2/c" $(pkg-config --cflags --libs wenlolib)
  # shellcheck disable=SC2046
  "${CXX:-c++}" -std=c++20 "$here/consumer/cxx/main.cpp" -o "$2/cxx" \
    $(pkg-config --cflags --libs wenlolib)
  # shellcheck disable=SC2046
  "${CXX:-c++}" -std=c++20 "$here/consumer/receiver/main.cpp" -o "$2/receiver" \
    $(pkg-config --cflags --libs wenlolib-receiver)
  # shellcheck disable=SC2046
  "${CC:-cc}" -std=c89 -pedantic "$here/consumer/receiver_c/main.c" -o "$2/receiver_c" \
    $(pkg-config --cflags --libs wenlolib-receiver-shared)
  # shellcheck disable=SC2046
  "${CXX:-c++}" -std=c++20 "$here/consumer/receiver/main.cpp" -o "$2/receiver_shared" \
    $(pkg-config --cflags --libs wenlolib-receiver-shared)
  ldd "$2/receiver_shared" | grep -q libwenlolib-receiver.so.1 ||
    fail "The receiver in C++ is not linked with the shared library"
  if [ "$languages" != "${languages% objc}" ]; then
    # shellcheck disable=SC2046
    gcc -fobjc-exceptions -fconstant-string-class=NSConstantString -isystem /usr/include/GNUstep \
      -DBUNDLE="\"$(pkg-config --variable=bundle wenlolib-objc)\"" \
      -DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -DGNU_RUNTIME=1 -D_NATIVE_OBJC_EXCEPTIONS \
      $(pkg-config --cflags wenlolib-objc) "$here/consumer/objc/main.m" -o "$2/objc" \
      -lgnustep-base -lobjc
    run_objc "$2/objc" "$2/home-objc"
  fi
  libraries=$(pkg-config --variable=libdir wenlolib)
  [ -d "$(pkg-config --variable=bundle wenlolib)" ] || fail "pkg-config does not know the bundle"
  (
    LD_LIBRARY_PATH=$libraries
    export LD_LIBRARY_PATH
    run_c "$2/c" "$2/home-c"
    run_cxx "$2/cxx" "$2/home-cxx"
    run_receiver "$2/receiver" "$2/home-cxx"
    run_receiver_shared "$1" "$2/receiver_c" "$2/receiver_shared" "$2/home-cxx"
  )
}

languages="c cxx receiver receiver_c"
if [ -d "$build/objc" ]; then languages="$languages objc"; fi

cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
with_cmake "$work/prefix" "$work/cmake"
with_pkg_config "$work/prefix" "$work/pkg-config"

mkdir "$work/elsewhere"
mv "$work/prefix" "$work/elsewhere/moved"
if HOME=$work "$work/cmake/c/consumer" 2> /dev/null; then
  fail "A program still runs with the library that was moved away"
fi
with_cmake "$work/elsewhere/moved" "$work/cmake-moved"
with_pkg_config "$work/elsewhere/moved" "$work/pkg-config-moved"

# Each file belongs to one component, and the runtime's are enough to run.
(cd "$work/elsewhere/moved" && find . ! -type d | sort) > "$work/all"
: > "$work/components"
for component in runtime development tools objc receiver python; do
  prefix=$work/component-$component
  cmake --install "$build" --prefix "$prefix" --component $component > "$work/install.log"
  if [ -d "$prefix" ]; then (cd "$prefix" && find . ! -type d) >> "$work/components"; fi
done
sort "$work/components" | diff - "$work/all" || fail "The components are not the whole"
[ "$(cd "$work/component-runtime" && find . ! -type d | wc -l)" -eq 3 ] ||
  fail "The runtime is more or less than the plug-in and the link to it"

# What was installed is removed, and nothing else; a folder with something else in it stays.
mkdir -p "$work/component-development/include/wenlolib/mine"
touch "$work/component-development/include/wenlolib/mine/file"
(cd "$build" && cmake -P "$here/../../product/Uninstall.cmake") > "$work/uninstall.log"
[ "$(find "$work"/component-* ! -type d)" = "$work/component-development/include/wenlolib/mine/file" ] ||
  fail "Files are left behind, or others' are gone"
[ -z "$(find "$work" -path '*component*' -name WENLOLIB.bundle)" ] ||
  fail "A folder of the library's is left behind"
echo "Installed, used, moved, used again and removed"
