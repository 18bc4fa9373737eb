#!/usr/bin/env bash
# Installs what is missing and looks at the sources with other eyes than scripts/test.sh: all tests in a build by clang,
# the format, clang-tidy and cppcheck over library, tool and extension, and the house (scripts/house.sh).
source "$(dirname "$0")/prepare.sh"
prepare "${build_packages[@]}" "${test_packages[@]}" "${check_packages[@]}"

formatted() {
  find include src cli python tests bench examples -name '*.h' -o -name '*.c' -o -name '*.cpp' |
    xargs clang-format --dry-run --Werror
}
# Silent but for findings; clang-tidy tells how many warnings it does not show.
tidy() { run-clang-tidy -quiet -j2 -p build/clang "$PWD/(src|cli|python/extension)/" 2>&1 | sed '/^clang-tidy/d; /warnings generated/d'; }
# The exceptions and their reasons are in scripts/cppcheck.txt.
cppchecked() {
  cppcheck --project=build/clang/compile_commands.json -i tests -i examples -j2 --quiet \
    --enable=warning,performance,portability,style --inline-suppr --suppressions-list=scripts/cppcheck.txt \
    --error-exitcode=1
}

stage "clang build" build clang -DQV_BUILD_PYTHON=ON
stage "clang tests" ctest --preset clang -j2
stage "house" scripts/house.sh build/clang/libQVLIB60.so
stage "clang-format" formatted
stage "cppcheck" cppchecked
stage "clang-tidy" tidy
