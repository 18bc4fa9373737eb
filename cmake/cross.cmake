# What a cross build for tool and tests takes from the building machine, for no package gives it for the other one:
# CLI11, which is headers alone, and GoogleTest's sources, both from where Debian puts them.
if(QV_BUILD_TOOL)
  find_path(QV_CLI11_HEADERS CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH REQUIRED)
  # A folder of its own: /usr/include itself would bring the building machine's C library along.
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/borrowed)
  file(CREATE_LINK ${QV_CLI11_HEADERS}/CLI ${CMAKE_CURRENT_BINARY_DIR}/borrowed/CLI SYMBOLIC)
  add_library(CLI11::CLI11 INTERFACE IMPORTED)
  target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${CMAKE_CURRENT_BINARY_DIR}/borrowed)
endif()
if(QV_BUILD_TESTS)
  set(BUILD_GMOCK OFF CACHE INTERNAL "")
  set(INSTALL_GTEST OFF CACHE INTERNAL "")
  add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL)
endif()
