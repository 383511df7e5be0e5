#!/bin/sh
# Configures, builds and runs a host that has the library's sources in its own build, and installs it:
# nothing of the library's comes along.
#
#   embed.sh sources|repository PROJECT WORK_DIR
set -eu
if [ $# -ne 3 ]; then
  echo "usage: embed.sh sources|repository PROJECT WORK_DIR" >&2
  exit 2
fi
here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
work=$3/embed-$1
rm -rf "$work"
mkdir -p "$work/home-c" "$work/home-cxx"

fail() {
  echo "$1" >&2
  exit 1
}

case $1 in
  sources) from="-DWENLOLIB_SOURCES=$2 -DWENLOLIB_BUILD_RECEIVER=ON" ;;
  repository)
    if ! git -C "$2" rev-parse --verify -q HEAD > "$work/commit"; then
      echo "SKIPPED: there is no repository to fetch from"
      exit 77
    fi
    from=-DWENLOLIB_REPOSITORY=$2
    ;;
esac
{
  # shellcheck disable=SC2086
  cmake -S "$here/consumer/embedding" -B "$work/build" -G Ninja $from &&
    cmake --build "$work/build" &&
    cmake --install "$work/build" --prefix "$work/prefix"
} > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }

HOME=$work/home-c "$work/build/host_in_c"
HOME=$work/home-cxx "$work/build/host_in_cxx" "contents"
find "$work/home-cxx" -name '*.ALM' -exec python3 "$here/../verifier/verify_document.py" {} +
if [ "$1" = sources ]; then
  [ "$(find "$work/home-cxx" -name '*.?LM' -exec "$work/build/reader" {} + | grep -c ': contents$')" -eq 3 ] ||
    fail "The receiver does not read what the host has recorded"
fi
[ "$(cd "$work/prefix" && find . ! -type d)" = "./bin/host_in_c" ] ||
  fail "More than the host was installed"
grep -q '^CMAKE_BUILD_TYPE:STRING=$' "$work/build/CMakeCache.txt" ||
  fail "The library has chosen the host's type of build"
if grep -qE '^(CLI11|nlohmann_json|fmt|GTest)_DIR' "$work/build/CMakeCache.txt"; then
  fail "The library alone looks for what the command needs"
fi
echo "Embedded, run and installed"
