#!/usr/bin/env bash
# Installs what is missing and changes sources, one operator or constant at a time: each change that the matching
# tests let pass is printed with its line, and then how many were found in each file and room. Builds below
# build/mutate.
#   usage: scripts/mutate.sh [--sample N] [--seed S] PATH...    (N changes of each file or folder by lot; all)
#          scripts/mutate.sh --again LOG...                     (those that survived, from its output)
# A change of a header is tried in the sources that have code of its line, one after the other, at most three, and in the tests.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" "${clang_packages[@]}"
[ $# -gt 0 ] || { sed -n 's/^#   //p' "$0" >&2; exit 2; }
cmake --preset release -DQV_BUILD_TESTS=ON >/dev/null
cmake --build --preset release --target qvlib60_tests qv_digest >/dev/null
exec python3 scripts/mutate.py "$@"
