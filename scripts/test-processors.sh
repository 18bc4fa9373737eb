#!/usr/bin/env bash
# Installs what is missing, builds library, tool and tests for 32-bit Linux and for aarch64, and runs them: on 32 bits all
# tests, on aarch64, which is emulated and slow, a part of them. Arguments choose: linux32, aarch64.
source "$(dirname "$0")/prepare.sh"

# demo_is_the_same COMMAND...: the demo is that of this machine.
demo_is_the_same() {
  "$@" demo --data data | diff <(build/release/cli/qv demo --data data) -
}
# same_bits COMMAND...: all results are.
same_bits() {
  "$@" data tests/digest/same_bits.txt
}
linux32() {
  local root=/usr/i686-linux-gnu/lib
  build_quietly build/linux32.log linux32 -DQV_BUILD_TESTS=ON
  demo_is_the_same "$root/ld-linux.so.2" --library-path "$root:build/linux32" build/linux32/cli/qv
  same_bits "$root/ld-linux.so.2" --library-path "$root" build/linux32/tests/qv_digest
  "$root/ld-linux.so.2" --library-path "$root" build/linux32/tests/qvlib60_tests --gtest_brief=1
}
aarch64() {
  local emulator=(qemu-aarch64 -L /usr/aarch64-linux-gnu)
  build_quietly build/aarch64.log aarch64 -DQV_BUILD_TESTS=ON
  demo_is_the_same "${emulator[@]}" build/aarch64/cli/qv
  same_bits "${emulator[@]}" build/aarch64/tests/qv_digest
  "${emulator[@]}" build/aarch64/tests/qvlib60_tests --gtest_brief=1 \
    --gtest_filter='Record*:*Layout*:Bonds*:Power*:Options*:Stages*:Formula*:*Average*'
}

prepare "${build_packages[@]}"
build_programs
[ $# -gt 0 ] || set -- linux32 aarch64
for processor in "$@"; do
  case $processor in
    linux32) packages=(g++-i686-linux-gnu googletest) ;;
    aarch64) packages=(g++-aarch64-linux-gnu qemu-user googletest) ;;
    *) echo "usage: $0 [linux32] [aarch64]" >&2; exit 2 ;;
  esac
  if prepare_or_skip "$processor" "${packages[@]}"; then stage "$processor" "$processor"; fi
done
