#!/usr/bin/env bash
# Installs what is missing, runs all tests over a library that counts, and tells how many of its lines and branches they
# reach, and which they don't.
#   usage: scripts/coverage.sh [--branches]      (every branch that was not taken, with its line)
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" gcovr

build coverage --log-level=ERROR >build/coverage.log 2>&1 || { tail -n 30 build/coverage.log; exit 1; }
find build/coverage -name '*.gcda' -delete
build/coverage/tests/qvlib60_tests --gtest_brief=1
report=(gcovr --root . --object-directory build/coverage --filter 'src/' --filter 'include/' --exclude 'src/runs/'
  --exclude 'src/core/guarded_heap.h' --exclude-throw-branches --exclude-unreachable-branches
  --exclude-directories '.*/qvlib60_heap.dir')  # the other heap, which no test is linked with
"${report[@]}" --branches --txt build/coverage/branches.txt --print-summary
[ "${1:-}" != --branches ] || cat build/coverage/branches.txt
