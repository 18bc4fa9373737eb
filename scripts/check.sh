#!/usr/bin/env bash
# Installs what is missing and looks at the sources with other eyes than scripts/test.sh: all tests in an optimised build
# by clang, the house (scripts/house.sh), the format, and cppcheck and clang-tidy over library, tool and extension.
#   usage: scripts/check.sh [--quick]      (without that build, whose tests scripts/test.sh runs in one by clang, too, and
#                                           without clang-tidy's static analyser)
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" "${check_packages[@]}"

quick=false
case $* in
  '') ;;
  --quick) quick=true ;;
  *) sed -n 's/^#   //p' "$0" >&2; exit 2 ;;
esac

formatted() {
  find include src cli python tests bench examples fuzz -name '*.h' -o -name '*.c' -o -name '*.cpp' |
    xargs clang-format --dry-run --Werror
}
# The exceptions and their reasons are in scripts/cppcheck.txt.
cppchecked() {
  cppcheck --project=build/clang/compile_commands.json -i tests -i examples -j2 --quiet \
    --enable=warning,performance,portability,style --inline-suppr --suppressions-list=scripts/cppcheck.txt \
    --error-exitcode=1
}
# Silent but for findings; clang-tidy tells how many warnings it does not show.
tidy() {
  run-clang-tidy -quiet -j2 -p build/clang "$@" "$PWD/(src|cli|python/extension)/" 2>&1 |
    sed '/^clang-tidy/d; /warnings generated/d'
}

cmake --preset clang -DQV_BUILD_PYTHON=ON >/dev/null
if $quick; then
  build_programs
  stage "house" scripts/house.sh build/release/libQVLIB60.so
else
  stage "clang build" cmake --build --preset clang
  stage "clang tests" ctest --preset clang -j2
  stage "house" scripts/house.sh build/clang/libQVLIB60.so
fi
stage "clang-format" formatted
stage "cppcheck" cppchecked
if $quick; then stage "clang-tidy" tidy -checks=-clang-analyzer-*; else stage "clang-tidy" tidy; fi
