#!/usr/bin/env bash
# Installs what is missing, builds the DLLs and qv.exe for 32-bit and 64-bit Windows, looks at what they export and
# import, and runs under Wine: a program that loads the DLL by name, `qv demo`, and the tests with the digests of all
# results (--quick leaves them out, --filter=PATTERN runs some). The 32-bit ones run only where a 32-bit Wine is
# installed or can be.
source "$(dirname "$0")/prepare.sh"
tests="*"
for argument in "$@"; do
  case $argument in
    --quick) tests= ;;
    --filter=*) tests=${argument#--filter=} ;;
    *) echo "usage: $0 [--quick] [--filter=PATTERN]" >&2; exit 2 ;;
  esac
done
prepare_or_skip "Windows builds" "${build_packages[@]}" g++-mingw-w64 googletest || exit 0

work=$PWD/build/test-windows
mkdir -p "$work"
export WINEPREFIX=$work/wine WINEDEBUG=-all

# tables TRIPLET DLL: exported are the listed names and nothing else, undecorated; imported is nothing of the compiler's;
# and the file tells its version.
tables() {
  local objdump=$1-objdump dll=$2
  "$objdump" -p "$dll" | sed -n '/Name Pointer\] Table/,/^$/p' | awk '/\[ *[0-9]+\]/ { print $NF }' |
    LC_ALL=C sort | diff scripts/exports.txt -
  "$objdump" -p "$dll" "$(dirname "$dll")/cli/qv.exe" | sed -n 's/.*DLL Name: //p' | sort -u >"$work/imports.txt"
  echo "imports: $(xargs <"$work/imports.txt")"
  if grep -iE 'gcc|stdc|pthread' "$work/imports.txt"; then return 1; fi
  strings -el "$dll" | grep -A1 -x FileVersion
}
# runs BITS TRIPLET: the built programs under Wine.
runs() {
  local bits=$1 triplet=$2 build=build/win$1
  "$triplet-gcc" -std=c99 -Wall -Iinclude packaging/windows/load_library.c -o "$build/load_library.exe"
  wine "$build/load_library.exe" scripts/exports.txt
  cp "$build/QVLIB60.dll" "$build/cli"
  wine "$build/cli/qv.exe" demo --data data | tr -d '\r' >"$work/demo$bits.txt"
  build/release/cli/qv demo --data data | diff - "$work/demo$bits.txt"
}
tests_run() {
  wine "build/win$1/tests/qv_digest.exe" data tests/digest/same_bits.txt
  wine "build/win$1/tests/qvlib60_tests.exe" --gtest_brief=1 --gtest_filter="$tests"
}

# windows BITS TRIPLET WINE-PACKAGE...: builds, looks at the tables, and runs what Wine can run. The tests are built
# where they can run. Warnings are judged by the native builds.
windows() {
  local bits=$1 triplet=$2 runnable=yes with_tests=OFF
  shift 2
  [ -e "/usr/lib/wine/wine${bits/32/}" ] || prepare_or_skip "$bits-bit programs under Wine" "$@" || runnable=
  if [ -n "$runnable" ] && ! timeout 120 wine cmd /c ver >"$work/wine.log" 2>&1; then
    echo "== $bits-bit programs under Wine: SKIPPED, Wine itself does not run here"
    runnable=
  fi
  [ -z "$runnable" ] || [ -z "$tests" ] || with_tests=ON
  stage "$bits-bit build" build_quietly "$work/win$bits.log" "win$bits" -DQV_BUILD_TESTS=$with_tests \
    -DQV_WARNINGS_AS_ERRORS=OFF
  stage "$bits-bit tables" tables "$triplet" "build/win$bits/QVLIB60.dll"
  [ -n "$runnable" ] || return 0
  stage "$bits-bit programs" runs "$bits" "$triplet"
  [ -z "$tests" ] || stage "$bits-bit tests" tests_run "$bits"
}

build_programs
windows 64 x86_64-w64-mingw32 wine wine64
windows 32 i686-w64-mingw32 wine32:i386
