#!/usr/bin/env bash
# Whoever knows the header of a function finds its source and its tests in one guess, and every function has a test.
# What include/qvlib60/ROOM/NAME.h declares stands in src/ROOM/NAME.cpp or NAME_TOPIC.cpp, and NAME_test.cpp or
# NAME_TOPIC_test.cpp are in tests/ROOM; of ROOM.h it stands anywhere in the room.
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob

tested=$(grep -rhoE '\bqv[A-Z]\w*' tests --include='*.cpp' --include='*.h' --include='*.c' | sort -u)
findings=0
finding() {
  echo "$1"
  findings=1
}
while read -r header; do
  functions=$(grep -ohE 'QVCALL +qv\w+\(' "$header" | grep -oE 'qv\w+' | sort -u) || continue
  stem=${header#include/qvlib60/}
  stem=${stem%.h}
  if [[ $stem == */* ]]; then
    sources=("src/$stem.cpp" src/"$stem"_*.cpp) tests=("tests/$stem"_test.cpp "tests/$stem"_*_test.cpp)
  else
    sources=(src/"$stem"/*.cpp) tests=("tests/$stem"/*_test.cpp)
  fi
  implemented=$(cat "${sources[@]}" 2>/dev/null | grep -ohE 'QVCALL +qv\w+\(' | grep -oE 'qv\w+' | sort -u) || true
  for name in $(comm -23 <(echo "$functions") <(echo "$implemented")); do
    finding "$name of $header is not in ${sources[*]:-a source of that name}"
  done
  for name in $(comm -23 <(echo "$functions") <(echo "$tested")); do
    finding "$name of $header is in no test"
  done
  [ -n "$(ls "${tests[@]}" 2>/dev/null)" ] || finding "$header has no tests of its name"
done < <(find include/qvlib60 -name '*.h' | sort)
exit $findings
