#!/usr/bin/env bash
# Whether compilers and levels of optimisation give the same bits: builds the program of digests (tests/digest) with
# g++ and clang at -O1 and -O3, and for AVX2 alone, and compares what it tells of every function with
# tests/digest/same_bits.txt, with wide loops and without. Builds are kept below build/same_bits.
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" clang

compare() {
  local folder=build/same_bits/$1 c=$2 cxx=$3 flags=$4
  cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=None -DQV_BUILD_TESTS=ON -DQV_BUILD_TOOL=OFF \
    -DQV_WARNINGS_AS_ERRORS=OFF -DCMAKE_C_COMPILER="$c" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="-DNDEBUG $flags" \
    >"$folder.log" && cmake --build "$folder" -j2 --target qv_digest >>"$folder.log" 2>&1 || { tail "$folder.log"; return 1; }
  local digest=$folder/tests/qv_digest list=tests/digest/same_bits.txt
  "$digest" data "$list" && "$digest" --narrow data "$list"
}

mkdir -p build/same_bits
failed=0
stage "g++ -O1" compare gcc-O1 gcc g++ -O1 || failed=1
stage "g++ -O3" compare gcc-O3 gcc g++ -O3 || failed=1
stage "clang -O1" compare clang-O1 clang clang++ -O1 || failed=1
stage "clang -O3" compare clang-O3 clang clang++ -O3 || failed=1
stage "g++ for AVX2 alone" compare gcc-avx2 gcc g++ "-O3 -march=haswell" || failed=1
exit $failed
