#!/usr/bin/env bash
# Installs what is missing and runs the tests of several threads under ThreadSanitizer.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}"
cmake --preset tsan >build/tsan.log
cmake --build --preset tsan --target qv_threads >>build/tsan.log || { tail -n 30 build/tsan.log; exit 1; }
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 stage "threads" build/tsan/tests/qv_threads data
