# What the scripts in this folder share: messages, packages, building. They source this file.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
project=$PWD

# What building the library needs, on Debian 12.
build_packages=(g++ cmake ninja-build pkg-config libexpat1-dev libmbedtls-dev libcli11-dev
  nlohmann-json3-dev libdtl-dev libfmt-dev libutf8proc-dev libarchive-dev libsqlite3-dev
  python3-dev python3-cffi)

# What the tests also need: GoogleTest, and other programs that check results.
test_packages=(libgtest-dev python3 python3-jsonschema python3-distributed libxml2-utils libplist-utils tidy
  binutils git fish sqlite3 strace)

# What the torture needs: addr2line, time zones, namespaces.
torture_packages=(python3 binutils tzdata util-linux)

say() { printf '\n== %s\n' "$*"; }

# Installs the packages given that are missing; only that needs a network and root rights.
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

# The Objective-C classes are built only if GNUstep is available; the rest does not need it.
need_gnustep() {
  need gobjc gobjc++ libgnustep-base-dev ||
    say "Skipped: the Objective-C classes and their tests, because GNUstep cannot be installed here"
}

# The report is also looked at in a browser; without one, its other tests run.
need_browser() {
  need chromium poppler-utils ||
    say "Skipped: the tests in a browser, because Chromium cannot be installed here"
}

# Rows are also loaded into two databases. DuckDB comes as a package for Node.js.
need_databases() {
  command -v npm >/dev/null || need npm ||
    say "Skipped: the tests with DuckDB, because npm cannot be installed here"
  need postgresql ||
    say "Skipped: the tests with PostgreSQL, because it cannot be installed here"
}

# build PRESET TARGETS [CMAKE-OPTION...]: configures and builds in build/PRESET; shows the output if
# that fails.
build() {
  local preset=$1 targets=$2 folder=build/$1 log=build/$1/build.log
  shift 2
  mkdir -p "$folder"
  if ! { cmake --preset "$preset" "$@" && cmake --build "$folder" --target $targets; } \
    >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "The build failed; all of its output is in $log" >&2
    return 1
  fi
}

# Shows failures, skipped tests and the count; leaves out the tests that passed.
tail_of_tests() { grep -vE '^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed +|^ +Start +[0-9]+: |^$' || true; }
