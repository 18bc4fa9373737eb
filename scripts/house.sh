#!/usr/bin/env bash
# Checks how the tree hangs together: no include climbs a floor, every header compiles alone, and the library exports
# what the headers declare and scripts/exports.txt lists.
#   usage: scripts/house.sh [LIBRARY]     (a built libQVLIB60.so; that of the release build unless given)
set -euo pipefail
library=$(realpath "${1:-$(dirname "$0")/../build/release/libQVLIB60.so}")
cd "$(dirname "$0")/.."

# The rooms, a line for each floor: those of the library, and above them what stands on it.
floors() {
  echo "abi codes version"
  sed -n '/^set(qv_rooms$/,/)$/p' cmake/library.cmake | sed 's/^set(qv_rooms$//; s/)$//' | grep .
  echo "qvlib60"
  echo "runs"
  echo "cli python"
}

# A header belongs to the room whose name its path begins with: core/memory.h and qvlib60/core.h to core.
includes_keep_their_floor() {
  grep -rHE '^ *# *include "' src include cli python | awk -F'[":]' '
    function roomOf(path) {
      sub(/^(src|include)\//, "", path)
      sub(/^qvlib60\//, "", path)
      sub(/[.\/].*/, "", path)
      if (!(path in floor)) { print "no such room: " path " (" $0 ")"; bad = 1; floor[path] = 0 }
      return path
    }
    NR == FNR { for (i = split($0, rooms, " "); i > 0; --i) floor[rooms[i]] = NR; next }
    floor[roomOf($3)] > floor[roomOf($1)] { print $1 " climbs to " $3; bad = 1 }
    END { exit bad }' <(floors) -
}

# Public headers as C99 and C++, those of the rooms as C++, with exceptions in the room that stands on qvlib60.hpp.
# (C wants a declaration in every file; stddef.h has one for headers that hold nothing but macros.)
headers_compile_alone() {
  local strict=(-fsyntax-only -Wall -Wextra -Wpedantic -Werror -Iinclude)
  find include -name '*.h' | xargs -P2 -I{} gcc -std=c99 "${strict[@]}" -include {} -include stddef.h -x c /dev/null
  find include src -path src/runs -prune -o -name '*.h' -print |
    xargs -P2 -I{} g++ -std=c++20 -fno-exceptions "${strict[@]}" -Isrc -include {} -x c++ /dev/null
  find include src/runs -name '*.hpp' -o -path 'src/runs/*.h' |
    xargs -P2 -I{} g++ -std=c++20 "${strict[@]}" -Isrc -include {} -x c++ /dev/null
}

exports_are_as_declared() {
  local declared exported
  declared=$(grep -rhoE '^QVAPI .*QVCALL +qv\w+\(' include | sed -E 's/.*QVCALL +(qv\w+)\($/\1/' | LC_ALL=C sort)
  exported=$(nm -D --defined-only "$library" | awk '{ print $3 }' | LC_ALL=C sort)
  diff <(echo "$declared") <(echo "$exported") || { echo "above: < declared only, > exported only"; return 1; }
  diff scripts/exports.txt <(echo "$exported") || { echo "above: < scripts/exports.txt only, > exported only"; return 1; }
}

includes_keep_their_floor
headers_compile_alone
exports_are_as_declared
