#!/usr/bin/env bash
# Installs what is missing and changes sources, one operator or constant at a time, in copies: each change that the
# matching tests let pass is printed with its line. Builds below build/mutate.
#   usage: scripts/mutate.sh [--sample N] FILE...      (N changes of each file, chosen by its name; all)
# A header is tried through the sources of its own name, or else of its room, that include it.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}"
[ $# -gt 0 ] || { sed -n 's/^#   //p' "$0" >&2; exit 2; }
cmake --preset release -DQV_BUILD_TESTS=ON >/dev/null
cmake --build --preset release --target qvlib60_tests qv_digest >/dev/null
exec python3 scripts/mutate.py "$@"
