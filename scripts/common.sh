# What the scripts of this folder share: messages, packages, building. To be sourced.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
project=$PWD

# What it takes to build the library, on Debian 12.
build_packages=(g++ cmake ninja-build pkg-config libexpat1-dev libmbedtls-dev libcli11-dev
  nlohmann-json3-dev libdtl-dev libfmt-dev libutf8proc-dev)

# What the tests need besides: GoogleTest, and second opinions from other programs.
test_packages=(libgtest-dev python3 libxml2-utils libplist-utils tidy binutils)

# What the torture needs: names of the places that it finds, zones to read, namespaces.
torture_packages=(python3 binutils tzdata util-linux)

# How the fuzzer and all that it runs is built; a test build of the same kind can share the folder.
fuzzer_options=(-DCMAKE_BUILD_TYPE=None -DCMAKE_C_FLAGS="-O1 -g1"
  -DCMAKE_CXX_FLAGS="-O1 -g1 -D_GLIBCXX_ASSERTIONS"
  -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 -DWENLOLIB_BUILD_FUZZERS=ON
  -DWENLOLIB_BUILD_OBJC=OFF -DWENLOLIB_WARNINGS_AS_ERRORS=ON)

say() { printf '\n== %s\n' "$*"; }

# Installs the packages named that are missing, and only then needs a network and root rights.
need() {
  local missing=() package as_root=()
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "Installing ${missing[*]}"
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -q=2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q=2 --no-install-recommends "${missing[@]}" >/dev/null
}

# The Objective-C classes are built where GNUstep is to be had, and everything else without it.
need_gnustep() {
  need gobjc gobjc++ libgnustep-base-dev ||
    say "Skipped: the Objective-C classes and their tests, since GNUstep cannot be installed here"
}

# build FOLDER TARGETS [CMAKE-OPTION...]: configures and builds; the output is shown when it fails.
build() {
  local folder=$1 targets=$2 log
  shift 2
  mkdir -p "$folder"
  log=$folder/build.log
  if ! { cmake -S . -B "$folder" -G Ninja "$@" && cmake --build "$folder" --target $targets; } \
    >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "The build failed; the whole of its output is in $log" >&2
    return 1
  fi
}

# Shows failures, skipped tests and the count; a line for each test that passed says nothing.
tail_of_tests() { grep -vE '^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed +|^ +Start +[0-9]+: |^$' || true; }
