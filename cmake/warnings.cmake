# The warnings that every part of the tree is built with.
add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
  $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:-Werror>
  # g++ cannot follow that a tile on the stack is filled by one loop before the next reads it.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
