#!/usr/bin/env bash
# Installs what is missing, then builds and runs all tests: in the release build with the Python package over it, and
# again with clang, under AddressSanitizer and UndefinedBehaviorSanitizer.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" "${clang_packages[@]}"
# Out-of-memory answers are part of the interface: an absurd request must come back, not abort.
export ASAN_OPTIONS=allocator_may_return_null=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1
for preset in release asan; do
  stage "$preset build" build "$preset"
  stage "$preset tests" ctest --preset "$preset" -j2
  if [ "$preset" = release ]; then scripts/python.sh; fi
done
