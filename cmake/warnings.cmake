# The warnings that every part of the tree is built with.
add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # What g++ understands by -Wconversion; a loop that stays scalar is no fault; formulas choose by `a | b ? x : y`.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
  $<$<CXX_COMPILER_ID:Clang>:-Wno-pass-failed>
  $<$<CXX_COMPILER_ID:Clang>:-Wno-bitwise-conditional-parentheses>
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
  $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:-Werror>
  # g++ cannot follow that a tile on the stack is filled by one loop before the next reads it.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
